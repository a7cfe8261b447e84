// Loading the built plug-in through the headless host.
#include <gtest/gtest.h>

#include <string>

#include "drilldown/automation/TypeLibrary.h"
#include "drilldown/dialogs/StartupPanel.h"
#include "workbench/automation/AutomationRuntime.h"
#include "workbench/data/DataFile.h"
#include "workbench/dialogs/HeadlessDialogs.h"
#include "workbench/headless/HeadlessHost.h"
#include "workbench/services/KeywordStore.h"
#include "workbench/session/ModuleLoader.h"

namespace {

wb::DataFile smallFile() {
    wb::DataFile file;
    file.addVariable({"X", "", -99999999.0, {}, wb::DisplayFormat::Plain});
    file.addVariable(
        {"GROUPE", "", -99999999.0, {{1.0, "A"}, {2.0, "B"}}, wb::DisplayFormat::Plain});
    for (int i = 0; i < 20; ++i)
        file.appendCase({i * 0.5, double(1 + i % 2)});
    return file;
}

TEST(ModuleLoader, LoadsTheModuleAndStartsAnAnalysis) {
    const wb::DataFile file = smallFile();
    wb::HeadlessHost host;
    wb::AutomationRuntime automation;
    wb::KeywordStore keywords{std::filesystem::path(), nullptr};
    wb::HeadlessDialogs dialogs(keywords, &file);
    host.messages().setEcho(nullptr);
    host.setDataFile(&file);
    host.setAutomation(&automation);
    host.setDialogs(&dialogs);
    {
        wb::ModuleLoader loader(host.services());
        loader.load(DD_MODULE_PATH);
        ASSERT_TRUE(loader.isLoaded());
        CAnalysisSupport& analysis = loader.openAnalysis();
        // The module registered the type library of its automation object.
        wb::RegisteredLibrary library;
        ASSERT_TRUE(automation.registeredLibrary(LIBID_QRXDrillDown, &library));
        EXPECT_EQ(library.name, "QRXDrillDown");
        EXPECT_EQ(library.interfaces.size(), 2u);
        EXPECT_EQ(analysis.GetAnalysisID(), 4811);
        EXPECT_EQ(analysis.GetAnalysisName(), "Analyse Drill-Down ");
        EXPECT_EQ(loader.analysisCount(), 1u);
        // The start opened the analysis's panel, which closing the analysis closes.
        auto* panel = static_cast<CDDNStartupDlg*>(analysis.GetDialogAutomationInterface());
        ASSERT_NE(panel, nullptr);
        const HWND window = panel->GetSafeHwnd();
        EXPECT_TRUE(dialogs.isOpen(window));
        loader.closeAnalysis(analysis);
        EXPECT_FALSE(dialogs.isOpen(window));
        EXPECT_EQ(loader.analysisCount(), 0u);
        // A second analysis is left for the loader's destructor to close.
        loader.openAnalysis();
    }
    EXPECT_EQ(host.memory().outstandingBlocks(), 0u);
}

struct FailureRow {
    std::string path;
    std::string mentions; // a part of the message
    const char* comment;
};

TEST(ModuleLoader, FailuresNameThePathAndTheCause) {
    wb::HeadlessHost host;
    const FailureRow rows[] = {
        {"/nonexistent/libdrilldown.so", "/nonexistent/libdrilldown.so", "no such file"},
        {"libm.so.6", "has no Vmk6AnalysisContext", "a library that is no module"},
    };
    for (const FailureRow& row : rows) {
        SCOPED_TRACE(row.comment);
        wb::ModuleLoader loader(host.services());
        try {
            loader.load(row.path);
            ADD_FAILURE() << "loaded";
        } catch (const wb::ModuleError& error) {
            const std::string message = error.what();
            EXPECT_NE(message.find(row.path), std::string::npos) << message;
            EXPECT_NE(message.find(row.mentions), std::string::npos) << message;
        }
        EXPECT_FALSE(loader.isLoaded());
        EXPECT_THROW(loader.openAnalysis(), wb::ModuleError);
    }
}

TEST(ModuleLoader, RefusesIncompleteServices) {
    wb::HeadlessHost host;
    HostServices services = host.services();
    services.Text = nullptr;
    wb::ModuleLoader loader(services);
    EXPECT_THROW(loader.load(DD_MODULE_PATH), wb::ModuleError);
    EXPECT_FALSE(loader.isLoaded());
}

TEST(ModuleLoader, DefaultPathIsBesideTheExecutable) {
    const std::string path = wb::ModuleLoader::defaultModulePath();
    EXPECT_EQ(path.substr(path.size() - std::string("/lib/libdrilldown.so").size()),
              "/lib/libdrilldown.so");
    EXPECT_EQ(path.find("/bin/../"), std::string::npos) << "not normalised: " << path;
}

} // namespace
