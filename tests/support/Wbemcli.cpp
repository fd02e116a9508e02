#include "Wbemcli.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <sstream>

namespace ksv::test {

namespace {

CommandResult run(const std::string& command) {
    CommandResult result;
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr)
        return result;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe))
        result.output.append(buffer.data(), count);
    const int status = pclose(pipe);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

} // namespace

std::vector<std::string> CommandResult::results() const {
    std::vector<std::string> lines;
    std::istringstream in(output);
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line[0] != '*')
            lines.push_back(line);
    }
    return lines;
}

bool wbemcliInstalled() {
    return run("command -v wbemcli").exitCode == 0;
}

CommandResult wbemcli(const std::string& arguments) {
    return run("timeout 60 wbemcli " + arguments);
}

} // namespace ksv::test
