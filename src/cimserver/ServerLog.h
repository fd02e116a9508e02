// The server's own log, apart from the array library's: lines about clients that were turned
// away, under the server's name. It goes where the library's log goes (stderr, syslog, a file or
// nowhere) and keeps to the same level.
#ifndef KSV_CIMSERVER_SERVERLOG_H
#define KSV_CIMSERVER_SERVERLOG_H

#include "cimserver/Caller.h"

#include <optional>
#include <string>

namespace ksv::server {

// Unset level or sink: as the environment says (KSV_LOG_LEVEL, KSV_LOG_SINK).
void configureServerLog(std::optional<int> level, std::optional<std::string> sink);

// A Basic-authentication login that failed; the password is never logged.
void logFailedLogin(const std::string& user, const std::string& clientAddress);
// A request that the array refused to its user.
void logAccessDenied(const Caller& caller, const std::string& operation);
// A connection closed because its request did not arrive whole within the deadline.
void logRequestOverdue(const std::string& clientAddress, unsigned deadlineSeconds);

} // namespace ksv::server

#endif
