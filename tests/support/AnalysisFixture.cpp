#include "AnalysisFixture.h"

#include <algorithm>

#include "drilldown/core/ModuleEntry.h"
#include "drilldown/host/framework/CAnalysisSupport.h"

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

wb::SessionOptions linkedModule(std::filesystem::path outputFolder) {
    return wb::SessionOptions{.module =
                                  wb::ModuleEntryPoints{&Vmk6AnalysisContext, &Vmk6NewAnalysis},
                              .outputFolder = std::move(outputFolder),
                              .keywordFile = {}};
}

AnalysisFixture::AnalysisFixture() = default;

AnalysisFixture::~AnalysisFixture() {
    session.closeAnalysis();
    EXPECT_EQ(session.memory().outstandingBlocks(), 0u) << "the module left host memory behind";
}

void AnalysisFixture::open(wb::DataFile newFile) {
    session.open(std::move(newFile));
    analysis = &session.startAnalysis();
    panel = session.panel();
    if (outputDouble != nullptr)
        ModuleContext()->Host.Output = outputDouble;
}

int AnalysisFixture::chooseDrillVariables(std::vector<short> categorical,
                                          std::vector<short> continuous) {
    headless.presetVariableChoice(std::move(categorical), std::move(continuous));
    const int nv = file.variableCount();
    return analysis->SetDDNVariable(panel, 1, 0, nv, 0, nv, nv);
}

int AnalysisFixture::chooseReviewVariables(std::vector<short> categorical,
                                           std::vector<short> continuous) {
    headless.presetVariableChoice(std::move(categorical), std::move(continuous));
    return analysis->SetRVVariable(panel, 1, 0, file.variableCount());
}

std::vector<std::string> AnalysisFixture::takeMessages() {
    std::vector<std::string> taken = messages.messages();
    messages.clear();
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
