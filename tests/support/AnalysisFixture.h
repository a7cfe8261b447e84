#pragma once
// A drill-down analysis on a data file, served by the headless host, for tests of the module.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "drilldown/core/CDrillDown.h"
#include "workbench/data/DataFile.h"
#include "workbench/dialogs/HeadlessDialogs.h"
#include "workbench/headless/HeadlessHost.h"
#include "workbench/services/OutputService.h"
#include "workbench/services/KeywordStore.h"

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

class AnalysisFixture : public ::testing::Test {
protected:
    AnalysisFixture();
    ~AnalysisFixture() override;

    // Makes `file` the open file and starts a fresh analysis on it (step 100 of its start).
    void open(wb::DataFile file);
    // Chooses the variables as the variable dialog would and gives SetDDNVariable's result.
    int chooseDrillVariables(std::vector<short> categorical, std::vector<short> continuous);
    int chooseReviewVariables(std::vector<short> categorical, std::vector<short> continuous);

    // Messages the module showed since the last call, and forgets them.
    std::vector<std::string> takeMessages();

    const Drill& downRecord(short variable) const;
    const Drill& upRecord(short variable) const;
    const Drill& reviewRecord(short variable) const;

    wb::HeadlessHost host;
    wb::KeywordStore keywords;
    wb::HeadlessDialogs dialogs{keywords};
    wb::OutputService output;  // the tables the module made, in order
    wb::DataFile file;
    std::unique_ptr<CDrillDown> analysis;
    HWND panel = nullptr;
};

} // namespace test
