#include "workbench/cli/HeadlessRun.h"

#include <iostream>

#include "workbench/data/DataFileLoader.h"
#include "workbench/data/VariableList.h"

namespace wb::cli {

namespace {

DataFile loadForRun(const RunSetup& setup, HeadlessProgress& progress) {
    constexpr unsigned long Steps = 1000;
    progress.d_pbar(("Chargement de " + setup.file + " ").c_str());
    progress.dstart(Steps);
    struct Stop {
        HeadlessProgress& progress;
        ~Stop() { progress.dstop(); }
    } stop{progress};
    DataFile file = loadDataFile(setup.file, [&](double share) {
        progress.advanceTo(static_cast<unsigned long>(share * Steps));
    });
    if (setup.weight) {
        const short weight = parseVariable(*setup.weight, file);
        file.setWeightVariable(weight);
        // Codes with labels are categories, seldom case weights.
        if (!file.variable(weight).labels.empty())
            std::cerr << "warning: the weight variable " << file.variable(weight).name
                      << " has value labels; its codes weigh the cases as they stand\n";
    }
    if (setup.selection)
        file.setSelection(*setup.selection);
    return file;
}

} // namespace

HeadlessRun::HeadlessRun(const RunSetup& setup)
    : m_folder(setup.out),
      m_session(m_frontEnd.bundle(&m_folder),
                SessionOptions{.outputFolder = setup.out, .parentShares = setup.parentShares}) {
    m_session.open(loadForRun(setup, m_frontEnd.progress()));
    // The command drives the analysis to its end: its documents outlive it in the folder.
    m_session.analysisDocument().setAutomated(true);
    m_session.startAnalysis();
}

void HeadlessRun::throwIfWriteFailed() const {
    if (!m_folder.firstFailure().empty())
        throw DataError(m_folder.firstFailure() + "\nOnly " + m_folder.writtenCount() +
                        " were written, listed in " + m_folder.folder().string() +
                        "/index.html");
}

void HeadlessRun::reportWritten(std::ostream& out) const {
    throwIfWriteFailed();
    if (m_folder.stems().empty())
        return;
    out << "\nWrote " << m_folder.writtenCount() << " to " << m_folder.folder().string()
        << "/index.html:\n";
    for (const std::string& file : m_folder.shownFiles())
        out << "  " << file << '\n';
}

} // namespace wb::cli
