// docs/macros.md lists what a macro can reach as the registered type libraries describe it.
// Run the test with DD_UPDATE_DOCS=1 to write the section anew after changing a library.

#include "workbench/automation/MemberReference.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "support/AnalysisFixture.h"

namespace {

constexpr std::string_view Begin = "<!-- members: made from the type libraries -->\n";
constexpr std::string_view End = "<!-- end of members -->";

class MemberReference : public test::AnalysisFixture {
protected:
    // An analysis has registered the module's library, the documents' and the application's.
    MemberReference() { open(test::makeFile({{"X"}}, {{1}})); }
};

TEST_F(MemberReference, TheMacroDocumentationListsEveryRegisteredMember) {
    const std::string reference = wb::memberReference(session.automation());
    EXPECT_EQ(reference.find("(no description)"), std::string::npos) << reference;
    for (const char* member : {"`UserDefinedBoundaries` | text; written from any value | read, write",
                               "`DrillDown` |  | run", "`Item` | takes integer; gives object | run",
                               "### DocumentWindow"})
        EXPECT_NE(reference.find(member), std::string::npos) << member;

    const std::string path = DD_SOURCE_DIR "/docs/macros.md";
    std::ifstream input(path);
    std::stringstream text;
    text << input.rdbuf();
    std::string doc = text.str();
    const std::size_t begin = doc.find(Begin);
    const std::size_t end = doc.find(End);
    ASSERT_NE(begin, std::string::npos) << path << " lacks " << Begin;
    ASSERT_NE(end, std::string::npos) << path << " lacks " << End;
    const std::size_t from = begin + Begin.size();
    if (std::getenv("DD_UPDATE_DOCS") != nullptr) {
        doc.replace(from, end - from, reference);
        std::ofstream(path) << doc;
        return;
    }
    EXPECT_EQ(doc.substr(from, end - from), reference)
        << path << " differs from the registered libraries; run this test with DD_UPDATE_DOCS=1";
}

} // namespace
