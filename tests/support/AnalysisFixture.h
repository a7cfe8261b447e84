#pragma once
// A drill-down analysis on a data file, made by the analysis session as every front end
// makes one, with the module linked in so that tests reach its internals.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "drilldown/core/CDrillDown.h"
#include "support/TempDir.h"
#include "workbench/data/DataFile.h"
#include "workbench/headless/HeadlessFrontEnd.h"
#include "workbench/session/AnalysisSession.h"

namespace test {

// A variable for makeFile: name, missing code, text labels.
struct VariableInfo {
    std::string name;
    double missingCode = -999;
    std::map<double, std::string> labels = {};
    wb::DisplayFormat format = wb::DisplayFormat::Plain;
};

// A data file with those variables and cases (one row of values per case, in variable order).
wb::DataFile makeFile(const std::vector<VariableInfo>& variables,
                      const std::vector<std::vector<double>>& cases);

// Session options for tests: the module linked into the test program, keywords in memory,
// saved files into `outputFolder`.
wb::SessionOptions linkedModule(std::filesystem::path outputFolder);

class AnalysisFixture : public ::testing::Test {
protected:
    AnalysisFixture();
    ~AnalysisFixture() override;

    // Makes `file` the open file and starts a fresh analysis on it (steps 100 and 101: its
    // panel is open).
    void open(wb::DataFile file);
    // Chooses the variables as the variable dialog would and gives SetDDNVariable's result.
    int chooseDrillVariables(std::vector<short> categorical, std::vector<short> continuous);
    int chooseReviewVariables(std::vector<short> categorical, std::vector<short> continuous);

    // Messages the module showed since the last call, and forgets them.
    std::vector<std::string> takeMessages();

    const Drill& downRecord(short variable) const;
    const Drill& upRecord(short variable) const;
    const Drill& reviewRecord(short variable) const;

    wb::testing::TempDir outputFolder;               // where saved subsets go
    wb::HeadlessFrontEnd headless{nullptr, nullptr}; // plays the user; silent
    wb::HeadlessMessages& messages = headless.messages();
    wb::HeadlessProgress& progress = headless.progress();
    wb::AnalysisSession session{headless.bundle(), linkedModule(outputFolder.path("out"))};
    wb::DialogHost& dialogs = session.dialogs();
    wb::OutputService& output = session.output(); // the documents the module made, in order
    const wb::DataFile& file = session.file();
    CDrillDown* analysis = nullptr;
    HWND panel = nullptr;
    // When set, analyses opened from now on send their tables and charts here instead of to
    // the session's output service (a recorder of the module's requests).
    HostOutput* outputDouble = nullptr;
};

} // namespace test
