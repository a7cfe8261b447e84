// The analysis session on the built plug-in, and the loader's failures.
#include <gtest/gtest.h>

#include <string>

#include "drilldown/automation/TypeLibrary.h"
#include "workbench/data/DataFile.h"
#include "workbench/headless/HeadlessFrontEnd.h"
#include "workbench/session/AnalysisSession.h"

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

// A session on the built plug-in, with its keywords in memory.
class PluginSession : public ::testing::Test {
protected:
    wb::HeadlessFrontEnd headless{nullptr, nullptr};
    wb::AnalysisSession session{headless.bundle(),
                                wb::SessionOptions{.module = DD_MODULE_PATH, .keywordFile = {}}};
};

TEST_F(PluginSession, LoadsTheModuleAndStartsAnAnalysis) {
    session.open(smallFile());
    session.startAnalysis();
    // The module registered the type library of its automation object.
    wb::RegisteredLibrary library;
    ASSERT_TRUE(session.automation().registeredLibrary(LIBID_QRXDrillDown, &library));
    EXPECT_EQ(library.name, "QRXDrillDown");
    // The start opened the analysis's panel, which closing the analysis closes.
    const HWND window = session.panel();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(session.dialogs().isOpen(window));
    session.closeAnalysis();
    EXPECT_FALSE(session.dialogs().isOpen(window));
    EXPECT_EQ(session.memory().outstandingBlocks(), 0u);
    // A second analysis on a new file is left for the session's end to close.
    session.open(smallFile());
    session.startAnalysis();
    EXPECT_TRUE(session.dialogs().isOpen(session.panel()));
}

struct FailureRow {
    std::string path;
    std::string mentions; // a part of the message
    const char* comment;
};

TEST_F(PluginSession, FailuresNameThePathAndTheCause) {
    const FailureRow rows[] = {
        {"/nonexistent/libdrilldown.so", "/nonexistent/libdrilldown.so", "no such file"},
        {"libm.so.6", "has no Vmk6AnalysisContext", "a library that is no module"},
    };
    for (const FailureRow& row : rows) {
        SCOPED_TRACE(row.comment);
        wb::ModuleLoader loader(session.services());
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

TEST_F(PluginSession, RefusesIncompleteServices) {
    HostServices services = session.services();
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
