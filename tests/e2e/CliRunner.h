#pragma once
// Runs the qvroofload tool as a user would and captures what it prints.

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

namespace qvrl::test {

struct CliResult {
    int status = -1;
    std::string out;
};

// args are passed through the shell; stderr is folded into the output when
// withStderr is set.
inline CliResult RunCli(const std::string& args, bool withStderr = false, const std::string& input = {}) {
    std::string cmd = std::string("'") + QVRL_CLI_PATH + "' " + args;
    if (!input.empty()) cmd = "printf '%s' '" + input + "' | " + cmd;
    if (withStderr) cmd += " 2>&1";
    else cmd += " 2>/dev/null";
    CliResult r;
    FILE* p = popen(cmd.c_str(), "r");
    if (!p) return r;
    std::array<char, 4096> buf;
    size_t n;
    while ((n = fread(buf.data(), 1, buf.size(), p)) > 0) r.out.append(buf.data(), n);
    const int st = pclose(p);
    r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    return r;
}

}  // namespace qvrl::test
