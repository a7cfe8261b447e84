#include "ReadCase.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "CAnalysisSupport.h"

namespace {
constexpr int CaseNameField = sizeof(b1_com::CaseName);
}

void PutCaseName(CAnalysisSupport& analysis, int caseNo) {
    HostBlocks& blocks = ModuleBlocks();
    const int width = blocks.Vmk88.CaseNameLen;
    if (width == 0)
        return;

    std::string name;
    analysis.GetCaseName(caseNo - 1, name);
    if (static_cast<int>(name.size()) > width)
        analysis.Get8CharHash(name);
    b1_com& b1 = blocks.B1;
    if (b1.CaseNamePos < 1 || b1.CaseNamePos + static_cast<int>(name.size()) >= CaseNameField + 1)
        b1.CaseNamePos = 1;
    char* field = b1.CaseName + (b1.CaseNamePos - 1);
    const int room = CaseNameField - (b1.CaseNamePos - 1);
    std::memset(field, ' ', std::min(width, room));
    if (!name.empty() && static_cast<int>(name.size()) + 1 < CaseNameField)
        std::memcpy(field, name.data(), std::min<std::size_t>(name.size(), room));
}

void KeepCaseBlocks(CAnalysisSupport& analysis, const CaseRows& rows, int last) {
    // cstrtw leaves the weight block alone when it gives 2, which only the last case can.
    const int weighed = rows.results[last] == 2 ? last - 1 : last;
    if (weighed >= 0) {
        Wght_com& block = ModuleBlocks().Wght;
        block.WeightValue = rows.weights[weighed];
        block.WeightSingle = static_cast<float>(rows.weights[weighed]);
        block.WeightOn = rows.hasWeight != 0 ? 1 : 0;
        block.WeightVar = static_cast<uint16_t>(rows.weightVar);
    }
    if (ModuleBlocks().Vmk88.CaseNameLen != 0) {
        b1_com& b1 = ModuleBlocks().B1;
        std::memset(b1.CaseName, 0, sizeof b1.CaseName);
        b1.CaseNamePos = 1;
        PutCaseName(analysis, rows.first + last);
    }
}
