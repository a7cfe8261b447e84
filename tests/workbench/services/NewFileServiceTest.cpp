// The new-file service: files written as the module writes them, read back by the loader;
// writes outside the declared data area, incomplete rows and given-up files leave nothing.

#include <algorithm>
#include <climits>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "workbench/data/DataFileLoader.h"
#include "workbench/data/NativeFile.h"
#include "support/TempDir.h"
#include "workbench/services/DataService.h"
#include "workbench/services/NewFileService.h"

namespace {

namespace fs = std::filesystem;
using wb::DataFile;
using wb::DisplayFormat;

DataFile sourceFile() {
    DataFile file;
    file.setHeaderText("Enquête 2024");
    file.addVariable({"AGE", "Âge en années", -1, {}, DisplayFormat::Plain});
    file.addVariable({"REVENU_ANNUEL", "Revenu", -99999999, {}, DisplayFormat::Plain});
    file.addVariable(
        {"REGION", "", -9, {{11, "Paris"}, {93, "Côte d'Azur"}}, DisplayFormat::Plain});
    file.addVariable({"ACHAT", "", -2, {}, DisplayFormat::Date});
    file.appendCase({34, 1000, 11, 45000}, "Dupont");
    return file;
}

class NewFileServiceTest : public testing::Test {
protected:
    void SetUp() override { m_data.setDataFile(&m_source); }

    // Declares a file of the source's variables `vars` as the module does: short names from
    // getvn5 (REVENU_ANNUEL as a token), long names at a stride of 128, REGION categorical.
    // The dictionary of variables {1, 2} ends at byte 201.
    short declare(const std::vector<short>& vars, int rows, short caseNameLen, int& position,
                  wb::NewFileService* service = nullptr) {
        std::vector<char> shortNames(vars.size() * 8 + 1);
        std::vector<char> longNames(vars.size() * 128);
        std::vector<int> catPositions;
        for (std::size_t i = 0; i < vars.size() && vars[i] <= m_source.variableCount(); ++i) {
            m_data.getvn5(vars[i], shortNames.data() + i * 8);
            m_data.WriteVarLongName(longNames.data() + i * 128, vars[i]);
            if (vars[i] == 3)
                catPositions.push_back(int(i));
        }
        const int catVars[] = {2};
        std::string header = m_source.headerText();
        header.resize(80, ' ');
        const int nCat = int(catPositions.size());
        return (service != nullptr ? *service : m_service)
            .SubsetAndAddEx(25, "", short(vars.size()), 0, vars.data(), rows, shortNames.data(),
                            longNames.data(), 128, header.data(), caseNameLen, &position,
                            nCat ? catPositions.data() : nullptr, nCat ? catVars : nullptr, nCat);
    }
    // One row as the module writes it: the case name in one call, then each double.
    void putRow(short handle, int& position, std::string name, const std::vector<double>& values) {
        if (!name.empty()) {
            ASSERT_EQ(m_service.PutDataF(handle, name.data(), position, int(name.size())), 0);
            position += int(name.size());
        }
        for (const double value : values) {
            ASSERT_EQ(
                m_service.PutDataF(handle, reinterpret_cast<const char*>(&value), position, 8), 0);
            position += 8;
        }
    }
    std::vector<std::string> folderEntries() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_folder))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    std::string output(const char* name) const { return (m_folder / name).string(); }

    wb::testing::TempDir m_dir;
    fs::path m_folder = m_dir.path("out");
    DataFile m_source = sourceFile();
    wb::TokenTable m_tokens;
    wb::DataService m_data{m_tokens};
    wb::NewFileService m_service{m_data, m_folder, m_tokens};
};

TEST_F(NewFileServiceTest, RowsWrittenLoadBackWithTheSourceDictionary) {
    int position = 0;
    const short handle = declare({2, 3, 4}, 5, 8, position); // more rows than will come
    ASSERT_GT(handle, 0) << m_service.lastError();
    putRow(handle, position, std::string("Dupont\0\0", 8), {1000, 11, 45000});
    putRow(handle, position, "Martin-L", {-99999999, 93, -2});
    putRow(handle, position, std::string(8, '\0'), {0, 11, 1});
    EXPECT_EQ(m_service.MatClo(handle), 1);
    EXPECT_EQ(m_service.lastFinishedPath(), output("subset-001.ddf"));
    EXPECT_EQ(folderEntries(), std::vector<std::string>{"subset-001.ddf"});

    const wb::NativeContents read = wb::readNativeFile(output("subset-001.ddf"));
    EXPECT_EQ(read.categorical, (std::vector<bool>{false, true, false}));
    const DataFile& file = read.data;
    EXPECT_EQ(file.headerText(), "Enquête 2024");
    ASSERT_EQ(file.variableCount(), 3);
    EXPECT_EQ(file.variable(1).name, "REVENU_ANNUEL"); // the token expanded
    EXPECT_EQ(file.variable(1).longName, "Revenu");
    EXPECT_EQ(file.variable(1).missingCode, -99999999);
    EXPECT_EQ(file.variable(2).labels, m_source.variable(3).labels);
    EXPECT_EQ(file.variable(3).format, DisplayFormat::Date);
    ASSERT_EQ(file.caseCount(), 3);
    EXPECT_EQ(file.caseName(1), "Dupont"); // trailing zeros go
    EXPECT_EQ(file.caseName(3), "");
    EXPECT_EQ(file.value(2, 2), 93);
    EXPECT_EQ(file.value(3, 3), 1);
}

// A file whose rows all come is TwoFilesAtOnceAndNamesNeverOverwrite's first.
TEST_F(NewFileServiceTest, NoRowsMakeAnEmptyFile) {
    int position = 0;
    const short handle = declare({1}, 3, 0, position);
    ASSERT_EQ(m_service.MatClo(handle), 1) << m_service.lastError();
    EXPECT_EQ(wb::loadDataFile(m_service.lastFinishedPath()).caseCount(), 0);
}

TEST_F(NewFileServiceTest, WritesOutsideTheDataAreaFailAndWriteNothing) {
    int position = 0;
    const short handle = declare({1, 2}, 2, 4, position); // rows of 20 bytes from 201 to 241
    putRow(handle, position, std::string("Ann\0", 4), {1, 2});
    const std::string name = output("subset-001.ddf");
    const struct {
        const char* comment;
        short handle;
        int position;
        int length;
        std::string message;
    } cases[] = {
        {"into the dictionary", handle, 200, 8,
         name + ": a write at byte 200 lies before the data area, which starts at byte 201"},
        {"one byte past the declared end", handle, 234, 8,
         name + ": a write of 8 bytes at byte 234 passes the end of the data area at byte 241"},
        {"unknown handle", short(handle + 1), 221, 8, "no new file has handle 2"},
    };
    const char bytes[8] = {};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.comment);
        EXPECT_NE(m_service.PutDataF(c.handle, bytes, c.position, c.length), 0);
        EXPECT_EQ(m_service.lastError(), c.message);
    }
    ASSERT_EQ(m_service.MatClo(handle), 1);
    const DataFile file = wb::loadDataFile(name);
    ASSERT_EQ(file.caseCount(), 1);
    EXPECT_EQ(file.caseName(1), "Ann");
    EXPECT_EQ(file.value(1, 2), 2);
}

TEST_F(NewFileServiceTest, IncompleteDataAreaLeavesNoFile) {
    const struct {
        const char* comment;
        std::vector<std::pair<int, int>> writes; // position, length; rows of 16 bytes from 201
        std::string reason;
    } cases[] = {
        {"half a row", {{201, 16}, {217, 4}}, "the data area ends inside row 2, at byte 221"},
        {"first row left out", {{217, 16}},
         "the data area was not written from its start at byte 201"},
        {"a hole", {{201, 16}, {225, 8}}, "bytes 217 to 224 of the data area were never written"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.comment);
        int position = 0;
        const short handle = declare({1, 2}, 4, 0, position);
        const char bytes[16] = {};
        for (const auto& [at, length] : c.writes)
            ASSERT_EQ(m_service.PutDataF(handle, bytes, at, length), 0);
        EXPECT_EQ(m_service.MatClo(handle), 0);
        EXPECT_EQ(m_service.lastError(), output("subset-001.ddf") + ": " + c.reason);
        EXPECT_EQ(folderEntries(), std::vector<std::string>{});
    }
}

TEST_F(NewFileServiceTest, AbortOutputLeavesNothing) {
    int position = 0;
    const short handle = declare({1}, 3, 0, position);
    putRow(handle, position, "", {7});
    EXPECT_EQ(folderEntries().size(), 1u); // the temporary
    m_service.AbortOutput(handle);
    EXPECT_EQ(folderEntries(), std::vector<std::string>{});
    EXPECT_NE(m_service.PutDataF(handle, "12345678", position, 8), 0);
    EXPECT_EQ(m_service.MatClo(handle), 0);
    {
        wb::NewFileService leaving(m_data, m_folder, m_tokens);
        ASSERT_GT(declare({1}, 1, 0, position, &leaving), 0);
    } // a service that goes gives up its open files
    EXPECT_EQ(folderEntries(), std::vector<std::string>{});
    EXPECT_EQ(m_service.finishedFiles(), std::vector<std::string>{});
}

TEST_F(NewFileServiceTest, TwoFilesAtOnceAndNamesNeverOverwrite) {
    fs::create_directories(m_folder);
    std::ofstream(output("subset-001.ddf")) << "someone's";
    std::ofstream(output("subset-003.ddf")) << "someone else's";
    int firstAt = 0;
    int secondAt = 0;
    const short first = declare({1}, 2, 0, firstAt);      // takes subset-002
    const short second = declare({3, 4}, 2, 2, secondAt); // takes subset-004
    // A file takes the second's name while it is open: it moves on to the next name that
    // no file has and the first will not take.
    std::ofstream(output("subset-004.ddf")) << "a latecomer's";
    putRow(first, firstAt, "", {1});
    putRow(second, secondAt, "ab", {93, 3});
    putRow(first, firstAt, "", {2});
    ASSERT_EQ(m_service.MatClo(second), 1);
    ASSERT_EQ(m_service.MatClo(first), 1);
    EXPECT_EQ(m_service.finishedFiles(),
              (std::vector<std::string>{output("subset-005.ddf"), output("subset-002.ddf")}));
    EXPECT_EQ(wb::loadDataFile(output("subset-005.ddf")).caseName(1), "ab");
    EXPECT_EQ(wb::loadDataFile(output("subset-002.ddf")).value(2, 1), 2);
    std::ifstream kept(output("subset-004.ddf"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), "a latecomer's");
}

TEST_F(NewFileServiceTest, RefusedDeclarationsMakeNoFile) {
    std::ofstream(m_dir.path("file")) << "not a folder";
    wb::NewFileService blocked(m_data, fs::path(m_dir.path("file")) / "out", m_tokens);
    const struct {
        const char* comment;
        wb::NewFileService& service;
        std::vector<short> vars;
        int rows;
        std::string message;
    } cases[] = {
        {"a variable the open file does not have", m_service, {1, 5}, 1,
         "variable 5 of the new file is not in the open data file"},
        {"no variables", m_service, {}, 1, "the new file has no variables"},
        {"past the module's 32-bit positions", m_service, {1, 2}, INT_MAX / 16,
         "the new file would end at byte 2147483833, past the module's reach of 2147483647"},
        {"a folder that cannot be made", blocked, {1}, 1,
         m_dir.path("file") + "/out: cannot create the folder: Not a directory"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.comment);
        int position = -1;
        EXPECT_EQ(declare(c.vars, c.rows, 0, position, &c.service), 0);
        EXPECT_EQ(c.service.lastError(), c.message);
        EXPECT_EQ(position, -1);
    }
    EXPECT_FALSE(fs::exists(m_folder));
}

} // namespace
