#pragma once
// A directory of its own for one test, removed with everything in it afterwards.

#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

namespace wb::testing {

class TempDir {
public:
    TempDir() {
        static int counter = 0;
        m_path = std::filesystem::temp_directory_path() /
                 ("wb-test-" + std::to_string(::getpid()) + "-" + std::to_string(++counter));
        std::filesystem::create_directories(m_path);
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    // Writes `content` to the file `name` in the directory and gives its path.
    std::string write(const std::string& name, const std::string& content) const {
        const std::filesystem::path file = m_path / name;
        std::ofstream(file, std::ios::binary) << content;
        return file.string();
    }
    std::string path(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

} // namespace wb::testing
