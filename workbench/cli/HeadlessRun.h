#pragma once
// One analysis of a command: the headless front end (messages echoed to standard error,
// progress on the terminal, documents written into an output folder, no dialog a command
// could answer) and the analysis session on the data file, started with its panel.

#include <optional>
#include <ostream>
#include <string>

#include "workbench/headless/HeadlessFrontEnd.h"
#include "workbench/render/OutputFolder.h"
#include "workbench/session/AnalysisSession.h"

namespace wb::cli {

struct RunSetup {
    std::string file;
    std::string out = "drilldown-out";
    std::optional<std::string> weight;    // a variable, by name or number
    std::optional<std::string> selection; // a selection condition
    bool parentShares = true;             // frequency tables show the level above
};

class HeadlessRun {
public:
    // Throws DataError for a file, weight or selection that cannot be used, ModuleError when
    // the analysis cannot start.
    explicit HeadlessRun(const RunSetup& setup);

    AnalysisSession& session() { return m_session; }
    CDrillDown& analysis() { return m_session.analysis(); }
    const OutputFolder& folder() const { return m_folder; }
    // Tells what stands in the output folder, file by file. Throws DataError naming the
    // first write that failed, so that no run that lost a document ends as a success.
    void reportWritten(std::ostream& out) const;
    // Throws that DataError when a write failed.
    void throwIfWriteFailed() const;

private:
    HeadlessFrontEnd m_frontEnd{stderr, HeadlessProgress::terminalOf(stderr)};
    OutputFolder m_folder;
    AnalysisSession m_session;
};

} // namespace wb::cli
