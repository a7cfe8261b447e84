#pragma once
// Writing a new data file: the host creates it with its dictionary, the module writes the
// data area row by row, and the host either completes the file or gives it up.
//
//   1. SubsetAndAddEx declares the variables and the number of rows, and gives a handle and
//      the byte position of the first row;
//   2. PutDataF writes bytes at a position of the data area, row after row: for each case
//      caseNameLen bytes of case name (when caseNameLen is not 0), then one 8-byte double
//      per variable in the declared order;
//   3. MatClo completes the file, or AbortOutput gives it up and leaves no file behind.

class HostNewFile {
public:
    virtual ~HostNewFile() = default;
    // Creates a file of nVars variables (their 1-based numbers in the open file in vars)
    // and nCases rows. shortNames holds 8 bytes per variable, longNames longNameWidth bytes
    // per variable, header 80 bytes. The categorical variables are listed by their place in
    // vars (catPositions) and their 0-based number in the open file (catVars), nCat of them;
    // the lists may be null when nCat is 0. Gives the handle, or 0 when the file cannot be
    // made, and the byte position of the first row in *position.
    virtual short SubsetAndAddEx(unsigned short mode, const char* name, short nVars,
                                 short reserved, const short* vars, int nCases,
                                 const char* shortNames, const char* longNames,
                                 short longNameWidth, const char* header, short caseNameLen,
                                 int* position, const int* catPositions, const int* catVars,
                                 int nCat) = 0;
    // Writes `length` bytes at byte `position`; 0 on success. A write outside the data area
    // that SubsetAndAddEx declared fails.
    virtual short PutDataF(short handle, const char* data, int position, int length) = 0;
    // Completes the file; gives 1 when it was written.
    virtual int MatClo(short handle) = 0;
    // Gives the file up: nothing of it stays.
    virtual void AbortOutput(short handle) = 0;
};
