// Who a CIM operation runs for. The request that runs on a thread is remembered so that the
// nested calls its provider makes into the server, which carry no identity of their own, run
// for the same user.
#ifndef KSV_CIMSERVER_CALLER_H
#define KSV_CIMSERVER_CALLER_H

#include <sys/types.h>

#include <string>

namespace ksv::server {

struct Caller {
    std::string userName;
};

// Makes `caller` the current caller of this thread until the scope ends; scopes nest.
class CallerScope {
public:
    explicit CallerScope(const Caller& caller);
    ~CallerScope();
    CallerScope(const CallerScope&) = delete;
    CallerScope& operator=(const CallerScope&) = delete;

    // The caller of the innermost scope of this thread; null outside any scope.
    static const Caller* current();

private:
    const Caller* _previous;
};

// The login name of a user id; its decimal text when the system knows no name for it.
std::string userNameOf(uid_t uid);

// The user this process runs as: the identity of in-process calls made outside any request.
std::string processUserName();

} // namespace ksv::server

#endif
