#pragma once
// The workbench's headless host: one service of each family but dialogs, for the command
// line and for tests, with no window anywhere.
//
// To drive the module with it:
//   1. make a HeadlessHost and give it the data file with setDataFile (the caller keeps
//      the file alive and calls setDataFile again after changing it);
//   2. hand services() to a ModuleLoader, which installs them into the module;
//   3. read what the module said through messages(); use the test hooks of each service
//      to inject failures.
// The host must outlive every analysis that uses its services.

#include "drilldown/host/HostServices.h"
#include "workbench/data/DataFile.h"
#include "workbench/services/DataService.h"
#include "workbench/services/MemoryService.h"
#include "workbench/headless/HeadlessMessages.h"
#include "workbench/headless/HeadlessProgress.h"
#include "workbench/services/TextService.h"
#include "workbench/text/TokenTable.h"

namespace wb {

class HeadlessHost {
public:
    // Data and text services share `tokens`, by default the process-wide table.
    explicit HeadlessHost(TokenTable& tokens = TokenTable::shared())
        : m_data(tokens), m_text(tokens) {}
    // The services point into the host: it stays where it is.
    HeadlessHost(const HeadlessHost&) = delete;
    HeadlessHost& operator=(const HeadlessHost&) = delete;

    // Pointers to this host's services.
    HostServices services() {
        HostServices all{&m_memory, &m_messages, &m_progress, &m_data, &m_text, m_dialogs};
        all.Output = m_output;
        all.NewFile = m_newFile;
        all.Automation = m_automation;
        return all;
    }
    void setDataFile(const DataFile* file) { m_data.setDataFile(file); }
    // The dialog service is not the headless host's own: whoever drives the panel supplies
    // it and keeps it alive. Null (the default) leaves it out of services().
    void setDialogs(HostDialogs* dialogs) { m_dialogs = dialogs; }
    // The table output is supplied the same way (a OutputService, or a window's); null
    // (the default) leaves it out of services().
    void setOutput(HostOutput* output) { m_output = output; }
    // The new-file service too (a NewFileService over data(), writing into a folder of the
    // caller's choice); null (the default) leaves it out of services().
    void setNewFile(HostNewFile* newFile) { m_newFile = newFile; }
    // The automation runtime too (a AutomationRuntime); null (the default) leaves it out
    // of services().
    void setAutomation(HostAutomation* automation) { m_automation = automation; }

    MemoryService& memory() { return m_memory; }
    HeadlessMessages& messages() { return m_messages; }
    HeadlessProgress& progress() { return m_progress; }
    DataService& data() { return m_data; }
    TextService& text() { return m_text; }

private:
    MemoryService m_memory;
    HeadlessMessages m_messages;
    HeadlessProgress m_progress;
    DataService m_data;
    TextService m_text;
    HostDialogs* m_dialogs = nullptr;
    HostOutput* m_output = nullptr;
    HostNewFile* m_newFile = nullptr;
    HostAutomation* m_automation = nullptr;
};

} // namespace wb
