#pragma once
// The module's layer over the host's cstrtw: reads one case into a value buffer and keeps
// the weight and case-name blocks up to date.

// Written in the header: every scan calls it once per case.

#include "CAnalysisSupport.h"

// Writes the case's name into the case-name block at its position, blank padded to the
// file's case-name width; a name longer than that goes as its token. Nothing without names.
void PutCaseName(CAnalysisSupport& analysis, int caseNo);

// Gives what cstrtw gives: 0 the case is delivered, 1 it is left out, 2 reading is broken off.
inline short ReadCase(CAnalysisSupport& analysis, int* caseNo, double* values) {
    HostBlocks& blocks = ModuleBlocks();
    int hasWeight = 0;
    double weight = 0;
    int weightVar = 0;
    const short result = analysis.cstrtw(*caseNo, values, &hasWeight, &weight, &weightVar);
    if (result == 0 || result == 1) {
        blocks.Wght.WeightValue = weight;
        blocks.Wght.WeightSingle = static_cast<float>(weight);
        blocks.Wght.WeightOn = hasWeight != 0 ? 1 : 0;
        blocks.Wght.WeightVar = static_cast<uint16_t>(weightVar);
    }
    if (blocks.Vmk88.CaseNameLen != 0)
        PutCaseName(analysis, *caseNo);
    return result;
}
