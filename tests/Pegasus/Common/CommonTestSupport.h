// Helpers the common-library tests share.
#ifndef KSV_TESTS_PEGASUS_COMMON_COMMONTESTSUPPORT_H
#define KSV_TESTS_PEGASUS_COMMON_COMMONTESTSUPPORT_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>

#include "OnThreads.h"

#include <functional>
#include <string>

inline std::string utf8(const Pegasus::String& s) {
    return std::string(static_cast<const char*>(s.getCString()));
}

// The message of what the operation throws; texts are compared whole so that a changed word
// shows.
inline std::string messageOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const Pegasus::Exception& e) {
        return utf8(e.getMessage());
    }
    return "no exception";
}

#endif
