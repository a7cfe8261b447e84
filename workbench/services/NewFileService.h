#pragma once
// The workbench's new-file service: the module's new data files, written as native
// files (workbench/data/NativeFile.h) into an output folder.
//
// The life of one file:
//   1. SubsetAndAddEx builds the dictionary from its arguments (names, header, case-name
//      width, categorical variables) and from the data file open in the data service (the
//      missing code, text labels and display format of each chosen variable), writes it to
//      a temporary file beside the target, and gives a handle and the position of the data
//      area. The declared number of rows is the room the data area has;
//   2. PutDataF writes inside that data area and nowhere else;
//   3. MatClo checks that the data area holds whole rows written from its start, sets the
//      file's row count to the rows written (fewer than declared is fine: the module
//      declares more rows than may qualify), and renames the file into place atomically.
//      AbortOutput removes the temporary file instead.
//
// Names. An empty name gets the first free subset-NNN.ddf of the folder: never the name
// of an existing file nor one that another open file will take, checked again when the
// file is put in place. A name given is taken inside the folder (an absolute one as it is)
// and replaces a file of that name: the host asked for it, as "save as" does.
//
// Failures. SubsetAndAddEx and MatClo give 0, PutDataF non-zero, and lastError() tells
// why, for the command line to report: the module shows only its memory message. A failed
// MatClo leaves no file. Files still open when the service goes are given up.
//
// Handles are independent: several files may be open at once. `mode` and `reserved` of
// SubsetAndAddEx are not used.

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "drilldown/host/HostNewFile.h"
#include "workbench/services/DataService.h"
#include "workbench/text/TokenTable.h"

namespace wb {

class NewFileService : public HostNewFile {
public:
    // The open data file is the one `data` serves at the time of SubsetAndAddEx. The folder
    // is made when the first file is.
    explicit NewFileService(const DataService& data,
                             std::filesystem::path folder = "drilldown-out",
                             TokenTable& tokens = TokenTable::shared());
    ~NewFileService() override;
    NewFileService(const NewFileService&) = delete;
    NewFileService& operator=(const NewFileService&) = delete;

    // Refuses (gives 0) a file of no variables, a variable the open file does not have, a
    // categorical list that does not match `vars`, and a file whose data area would end past
    // byte 2^31 - 1, which the module's 32-bit positions cannot reach.
    short SubsetAndAddEx(unsigned short mode, const char* name, short nVars, short reserved,
                         const short* vars, int nCases, const char* shortNames,
                         const char* longNames, short longNameWidth, const char* header,
                         short caseNameLen, int* position, const int* catPositions,
                         const int* catVars, int nCat) override;
    // Non-zero for an unknown handle, a write that starts before the data area or reaches
    // past its declared end (nothing is written then), and a failing write.
    short PutDataF(short handle, const char* data, int position, int length) override;
    int MatClo(short handle) override;
    // An unknown handle (0 after a failed SubsetAndAddEx) is ignored.
    void AbortOutput(short handle) override;

    const std::filesystem::path& folder() const { return m_folder; }
    // The files completed, in the order of completion.
    const std::vector<std::string>& finishedFiles() const { return m_finished; }
    // The last file completed; empty when none.
    std::string lastFinishedPath() const;
    // Why the most recent failing call failed, as "PATH: reason" where a file is concerned;
    // empty until a call fails. A success does not clear it.
    const std::string& lastError() const { return m_lastError; }
    void clearError() { m_lastError.clear(); }
    // Files begun and neither completed nor given up.
    int openCount() const { return static_cast<int>(m_files.size()); }

private:
    struct OpenFile;

    short fail(const std::string& reason);
    // The first subset-NNN.ddf of the folder that no file has and no open file will take.
    std::filesystem::path freshName() const;
    bool putInPlace(OpenFile& file);
    short nextHandle();

    const DataService& m_data;
    std::filesystem::path m_folder;
    TokenTable& m_tokens;
    std::map<short, std::unique_ptr<OpenFile>> m_files;
    short m_lastHandle = 0;
    unsigned m_temporaryCount = 0;
    std::vector<std::string> m_finished;
    std::string m_lastError;
};

} // namespace wb
