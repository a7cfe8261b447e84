#pragma once
// The module's layer over the host's cstrtw: reads one case into a value buffer and keeps
// the weight and case-name blocks up to date.

class CAnalysisSupport;

// Gives what cstrtw gives: 0 the case is delivered, 1 it is left out, 2 reading is broken off.
short ReadCase(CAnalysisSupport& analysis, int* caseNo, double* values);

// Writes the case's name into the case-name block at its position, blank padded to the
// file's case-name width; a name longer than that goes as its token. Nothing without names.
void PutCaseName(CAnalysisSupport& analysis, int caseNo);
