// The document store: stable ids, output numbers counted afresh for each run of a command,
// and observers told of every change in order.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "workbench/automation/Dispatcher.h"
#include "workbench/documents/DocumentStore.h"
#include "workbench/services/OutputService.h"

namespace {

wb::Document titled(const std::string& title) {
    wb::TableDocument table;
    table.title = title;
    return wb::Document{table};
}

// Writes down each change as "added 3", "replaced 3", ...
struct Recorder : wb::DocumentObserver {
    void added(const wb::Document& d) override {
        events.push_back("added " + std::to_string(d.id));
    }
    void replaced(const wb::Document& d) override {
        events.push_back("replaced " + std::to_string(d.id) + " " + d.name());
    }
    void closed(const wb::Document& d) override {
        events.push_back("closed " + std::to_string(d.id));
    }
    void stateChanged(const wb::Document& d) override {
        events.push_back("state " + std::to_string(d.id));
    }
    std::vector<std::string> events;
};

TEST(DocumentStore, IdsStayAndOutputsCountAfreshForEachRunOfACommand) {
    wb::DocumentStore store;
    Recorder recorder;
    store.addObserver(recorder);
    store.add(titled("outside any command"));
    store.beginCommand(9059);
    store.add(titled("a"));
    store.beginCommand(9077); // posted inside the first, with a run of its own
    store.add(titled("b"));
    store.endCommand();
    store.add(titled("c"));
    store.endCommand();
    store.beginCommand(9059); // the same command again starts again at 1
    store.add(titled("d"));
    store.endCommand();

    const struct {
        int id, command, output;
    } expected[] = {{1, 0, 0}, {2, 9059, 1}, {3, 9077, 1}, {4, 9059, 2}, {5, 9059, 1}};
    ASSERT_EQ(store.documents().size(), std::size(expected));
    for (std::size_t k = 0; k < std::size(expected); ++k) {
        const wb::Document& d = store.documents()[k];
        EXPECT_EQ(d.id, expected[k].id) << k;
        EXPECT_EQ(d.command, expected[k].command) << k;
        EXPECT_EQ(d.output, expected[k].output) << k;
        EXPECT_EQ(d.table().number, d.id) << "the content carries its id";
    }
    EXPECT_EQ(store.find(9059, 1)->name(), "a") << "the first live document of the key";

    store.replace(2, titled("a again"));
    store.close(3);
    store.add(titled("e"));
    EXPECT_EQ(store.find(2)->name(), "a again");
    EXPECT_EQ(store.find(2)->output, 1) << "a replaced document keeps its key";
    EXPECT_EQ(store.documents()[1].id, 2) << "and its place";
    EXPECT_EQ(store.find(3), nullptr);
    EXPECT_EQ(store.documents().back().id, 6) << "ids are never reused";
    EXPECT_EQ(recorder.events,
              (std::vector<std::string>{"added 1", "added 2", "added 3", "added 4", "added 5",
                                        "replaced 2 a again", "closed 3", "added 6"}));
}

// A macro that moves a document's window or hides it, through the document's automation
// object, is told to the observers (a desktop moves the real window); closing the document
// raises its close event.
TEST(DocumentStore, AMacroMovingAWindowAndClosingADocumentAreTold) {
    wb::DocumentStore store;
    wb::OutputService output(store);
    wb::AutomationRuntime automation;
    output.setAutomation(&automation);
    wb::Dispatcher macro(automation);
    Recorder recorder;
    store.addObserver(recorder);
    const int id = store.add(titled("a"));
    IDispatch* document = output.documentObject(output.documents()[0].id);
    ASSERT_NE(document, nullptr);
    COleVariant window = macro.get(document, "Window");
    macro.put(window.pdispVal, "Left", COleVariant(static_cast<LONG>(40)));
    macro.put(document, "Visible", COleVariant(false));
    EXPECT_EQ(store.state(id)->window.left, 40);
    const std::shared_ptr<wb::DocumentState> state = store.state(id);
    store.close(id);
    EXPECT_TRUE(state->closed);
    EXPECT_EQ(recorder.events,
              (std::vector<std::string>{"added 1", "state 1", "state 1", "closed 1"}));
    document->Release();
}

} // namespace
