#include "workbench/cli/HeadlessRun.h"

#include "drilldown/dialogs/StartupPanel.h"
#include "workbench/data/DataFileLoader.h"
#include "workbench/data/VariableList.h"

namespace wb::cli {

HeadlessRun::HeadlessRun(const RunSetup& setup)
    : m_file(loadDataFile(setup.file)), m_dialogs(m_keywords, &m_file),
      m_newFile(m_host.data(), setup.out), m_folder(setup.out) {
    if (setup.weight)
        m_file.setWeightVariable(parseVariable(*setup.weight, m_file));
    if (setup.selection)
        m_file.setSelection(*setup.selection);
    m_host.messages().setEcho(stderr);
    m_host.setDataFile(&m_file);
    m_host.setDialogs(&m_dialogs);
    m_host.setNewFile(&m_newFile);
    m_host.setOutput(&m_output);
    m_host.setAutomation(&m_automation);
    m_dialogs.setAutomation(&m_automation);
    m_dialogs.setOutput(&m_output);
    m_dialogs.setNewFile(&m_newFile);
    m_output.setAutomation(&m_automation);
    m_output.setSink(&m_folder);
    m_output.setDataFile(&m_file);
    // The loader takes the services as they stand, so it comes after all are set.
    m_loader = std::make_unique<ModuleLoader>(m_host.services());
    m_loader->load(ModuleLoader::defaultModulePath());
    m_analysis = &dynamic_cast<CDrillDown&>(m_loader->openAnalysis());
    m_output.setFileBlock(m_host.data().fileBlock());
}

// The analysis goes before the services it uses.
HeadlessRun::~HeadlessRun() { m_loader.reset(); }

HWND HeadlessRun::panel() const {
    auto* startup = static_cast<CDDNStartupDlg*>(m_analysis->GetDialogAutomationInterface());
    return startup != nullptr ? startup->GetSafeHwnd() : nullptr;
}

} // namespace wb::cli
