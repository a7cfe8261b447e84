#include "AnalysisFixture.h"

#include <algorithm>

#include "workbench/dialogs/DialogTemplates.h"

namespace test {

wb::DataFile makeFile(const std::vector<VariableInfo>& variables,
                      const std::vector<std::vector<double>>& cases) {
    wb::DataFile file;
    for (const VariableInfo& info : variables) {
        wb::Variable v;
        v.name = info.name;
        v.missingCode = info.missingCode;
        v.labels = info.labels;
        v.format = info.format;
        file.addVariable(std::move(v));
    }
    for (const std::vector<double>& row : cases)
        file.appendCase(row);
    return file;
}

AnalysisFixture::AnalysisFixture() : keywords(std::filesystem::path(), nullptr) {
    host.messages().setEcho(nullptr);
    host.setDialogs(&dialogs);
    host.setOutput(&output);
    ModuleContext()->Host = host.services();
    panel = wb::createDialogFromTemplate(dialogs.model(), 4813);
}

AnalysisFixture::~AnalysisFixture() {
    analysis.reset();
    EXPECT_EQ(host.memory().outstandingBlocks(), 0u) << "the module left host memory behind";
    ModuleContext()->Host = HostServices{};
}

void AnalysisFixture::open(wb::DataFile newFile) {
    analysis.reset();
    file = std::move(newFile);
    host.setDataFile(&file);
    dialogs.setDataFile(&file);
    analysis = std::make_unique<CDrillDown>();
    ASSERT_EQ(analysis->Init(), 1);
    output.setFileBlock(host.data().fileBlock());
}

int AnalysisFixture::chooseDrillVariables(std::vector<short> categorical,
                                          std::vector<short> continuous) {
    dialogs.presetVariableChoice(std::move(categorical), std::move(continuous));
    const int nv = file.variableCount();
    return analysis->SetDDNVariable(panel, 1, 0, nv, 0, nv, nv);
}

int AnalysisFixture::chooseReviewVariables(std::vector<short> categorical,
                                           std::vector<short> continuous) {
    dialogs.presetVariableChoice(std::move(categorical), std::move(continuous));
    return analysis->SetRVVariable(panel, 1, 0, file.variableCount());
}

std::vector<std::string> AnalysisFixture::takeMessages() {
    std::vector<std::string> taken = host.messages().messages();
    host.messages().clear();
    return taken;
}

namespace {
const Drill& recordOf(const DrillSet* records, short variable, const char* set) {
    const auto it = std::find_if(records->begin(), records->end(),
                                 [&](const Drill& d) { return d.Variable == variable; });
    if (it == records->end())
        throw std::logic_error(std::string("no record of variable ") + std::to_string(variable) +
                               " in " + set);
    return *it;
}
} // namespace

const Drill& AnalysisFixture::downRecord(short variable) const {
    return recordOf(analysis->GetDrillDowns(), variable, "DrillDowns");
}
const Drill& AnalysisFixture::upRecord(short variable) const {
    return recordOf(analysis->GetDrillUps(), variable, "DrillUps");
}
const Drill& AnalysisFixture::reviewRecord(short variable) const {
    return recordOf(analysis->GetReviews(), variable, "Reviews");
}

} // namespace test
