// sblim-wbemcli, a CIM client no one here wrote, run by the server and end-to-end tests.
#ifndef KSV_TESTS_SUPPORT_WBEMCLI_H
#define KSV_TESTS_SUPPORT_WBEMCLI_H

#include <string>
#include <vector>

namespace ksv::test {

struct CommandResult {
    int exitCode = -1;
    std::string output; // standard output and error together

    // The result lines: each instance or object path on a line of its own; wbemcli's own
    // messages (lines starting with "*") and blank lines left out.
    std::vector<std::string> results() const;
};

bool wbemcliInstalled();

// "wbemcli <arguments>", stopped after a minute at the latest.
CommandResult wbemcli(const std::string& arguments);

} // namespace ksv::test

#endif
