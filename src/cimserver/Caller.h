// Who a CIM operation runs for: the authenticated user of a client request, the user at the
// other end of a local connection, or the empty name for a provider's call through its
// CIMOMHandle without an identity of its own, as OpenPegasus's internal handle sends it.
#ifndef KSV_CIMSERVER_CALLER_H
#define KSV_CIMSERVER_CALLER_H

#include <sys/types.h>

#include <string>

namespace ksv::server {

struct Caller {
    std::string userName;
    // Where the request came from, for the log: an IP address, or "local" for the Unix socket
    // and in-process calls.
    std::string address = "local";
};

// The login name of a user id; its decimal text when the system knows no name for it.
std::string userNameOf(uid_t uid);

// The user this process runs as: the peer of a local connection opened inside the server.
std::string processUserName();

} // namespace ksv::server

#endif
