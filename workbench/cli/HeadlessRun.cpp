#include "workbench/cli/HeadlessRun.h"

#include "workbench/data/DataFileLoader.h"
#include "workbench/data/VariableList.h"

namespace wb::cli {

namespace {

DataFile loadForRun(const RunSetup& setup) {
    DataFile file = loadDataFile(setup.file);
    if (setup.weight)
        file.setWeightVariable(parseVariable(*setup.weight, file));
    if (setup.selection)
        file.setSelection(*setup.selection);
    return file;
}

} // namespace

HeadlessRun::HeadlessRun(const RunSetup& setup)
    : m_folder(setup.out),
      m_session(m_frontEnd.bundle(&m_folder), SessionOptions{.outputFolder = setup.out}) {
    m_session.open(loadForRun(setup));
    // The command drives the analysis to its end: its documents outlive it in the folder.
    m_session.analysisDocument().setAutomated(true);
    m_session.startAnalysis();
}

} // namespace wb::cli
