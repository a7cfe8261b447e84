#pragma once
// Runs the built `drilldown` command as a user would.

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include <sys/wait.h>

#include "support/TempDir.h"

namespace {

struct CliRun {
    int status = -1;
    std::string out;
    std::string err;
};

inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Runs a shell command line, its output and errors caught.
inline CliRun runShell(const std::string& commandLine) {
    const wb::testing::TempDir dir;
    const std::string out = dir.path("out");
    const std::string err = dir.path("err");
    const std::string command = commandLine + " >" + out + " 2>" + err;
    const int raw = std::system(command.c_str());
    CliRun run;
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    run.out = readFile(out);
    run.err = readFile(err);
    return run;
}

// `arguments` are given to the shell as they are; the tests pass no special characters.
inline CliRun runCli(const std::string& arguments) {
    return runShell(std::string(DD_CLI_PATH) + " " + arguments);
}

} // namespace
