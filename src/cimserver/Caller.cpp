#include "cimserver/Caller.h"

#include <pwd.h>
#include <unistd.h>

#include <vector>

namespace ksv::server {

std::string userNameOf(uid_t uid) {
    long suggested = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(suggested > 0 ? static_cast<std::size_t>(suggested) : 16384);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
        return found->pw_name;
    return std::to_string(uid);
}

std::string processUserName() {
    return userNameOf(geteuid());
}

} // namespace ksv::server
