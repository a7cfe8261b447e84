#pragma once
// The four data blocks that the host keeps current for the open data file.
//
// They are static storage of the module (one set per loaded library, shared by every
// analysis of the process). The analysis hands their addresses to the host once with
// InitCommons; from then on the host rewrites them whenever the file, the case being
// read or the weight changes, and the module only reads them (ReadCase writes the case
// name and the weight fields on the host's behalf).

#include <cstdint>

// File description. NCases follows NVars with no padding: the layout is the host's.
#pragma pack(push, 1)
struct VmkTag {
    int16_t NVars;        // number of variables of the open file
    int32_t NCases;       // number of cases of the open file
    char HeaderText[80];  // header text of the file, blank padded, no terminator
    char RowHeading[64];  // text above the row names of the table being built
};
#pragma pack(pop)

// Case-name layout.
struct Vmk88Tag {
    int16_t CaseNameLen;  // width of a case name in bytes; 0 when the file has none
};

// The case just read.
struct b1_com {
    char CaseName[220];   // blank padded to CaseNameLen at CaseNamePos, no terminator
    int16_t CaseNamePos;  // 1-based position at which ReadCase writes the name
};

// The weight of the case just read.
struct Wght_com {
    uint16_t WeightOn;    // non-zero while a case weight is in force
    uint16_t WeightVar;   // the host's word naming the weight variable
    float WeightSingle;   // the weight, single precision
    double WeightValue;   // the weight; the field DealWithWeights reads
};

// The host's menu block; the module has none and passes null.
struct _AddMenu;

// The module's one set of blocks.
struct HostBlocks {
    VmkTag Vmk{};
    Vmk88Tag Vmk88{};
    b1_com B1{};
    Wght_com Wght{};
};

HostBlocks& ModuleBlocks();
