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
