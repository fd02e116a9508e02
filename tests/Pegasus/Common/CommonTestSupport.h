// Helpers the common-library tests share.
#ifndef KSV_TESTS_PEGASUS_COMMON_COMMONTESTSUPPORT_H
#define KSV_TESTS_PEGASUS_COMMON_COMMONTESTSUPPORT_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMInstance.h>
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

// A disk instance with its DeviceID alone.
inline Pegasus::CIMInstance diskWithDeviceId(const char* deviceId) {
    Pegasus::CIMInstance disk(Pegasus::CIMName("KSV_DiskDrive"));
    disk.addProperty(Pegasus::CIMProperty(Pegasus::CIMName("DeviceID"),
                                          Pegasus::CIMValue(Pegasus::String(deviceId))));
    return disk;
}

inline std::string deviceIdOf(const Pegasus::CIMInstance& disk) {
    Pegasus::String deviceId;
    disk.getProperty(0).getValue().get(deviceId);
    return utf8(deviceId);
}

#endif
