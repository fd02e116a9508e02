// How the running server is, as its status page tells local users and `ksv-cimserver --status`
// prints it.
#ifndef KSV_CIMSERVER_SERVERSTATUS_H
#define KSV_CIMSERVER_SERVERSTATUS_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

namespace ksv::server {

struct StatusFigures {
    std::chrono::seconds uptime{0};
    std::uint64_t requestsServed = 0;
    unsigned openConnections = 0;
    // Unset where the system does not tell.
    std::optional<std::uint64_t> residentKilobytes;
    std::string arrayInUse;
};

// "name: value" lines.
std::string statusPage(const StatusFigures& figures);

// This process's resident memory.
std::optional<std::uint64_t> residentKilobytes();

// Asks the server listening on the Unix socket for its status page and prints it; the exit code
// of the status command (non-zero when no server answers).
int printStatus(const std::string& socketPath, std::ostream& out, std::ostream& err);

} // namespace ksv::server

#endif
