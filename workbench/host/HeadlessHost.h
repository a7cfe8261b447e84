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
#include "workbench/host/HeadlessData.h"
#include "workbench/host/HeadlessMemory.h"
#include "workbench/host/HeadlessMessages.h"
#include "workbench/host/HeadlessProgress.h"
#include "workbench/host/HeadlessText.h"
#include "workbench/host/TokenTable.h"

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
        return {&m_memory, &m_messages, &m_progress, &m_data, &m_text, m_dialogs};
    }
    void setDataFile(const DataFile* file) { m_data.setDataFile(file); }
    // The dialog service is not the headless host's own: whoever drives the panel supplies
    // it and keeps it alive. Null (the default) leaves it out of services().
    void setDialogs(HostDialogs* dialogs) { m_dialogs = dialogs; }

    HeadlessMemory& memory() { return m_memory; }
    HeadlessMessages& messages() { return m_messages; }
    HeadlessProgress& progress() { return m_progress; }
    HeadlessData& data() { return m_data; }
    HeadlessText& text() { return m_text; }

private:
    HeadlessMemory m_memory;
    HeadlessMessages m_messages;
    HeadlessProgress m_progress;
    HeadlessData m_data;
    HeadlessText m_text;
    HostDialogs* m_dialogs = nullptr;
};

} // namespace wb
