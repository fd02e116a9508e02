// The server is built with the simulated libksvapi but runs on the array's own library where that
// is installed instead. The simulator's controls are therefore referenced weakly: on the array's
// library they are null, and what needs them is refused or skipped.
#ifndef KSV_CIMSERVER_SIMULATEDARRAY_H
#define KSV_CIMSERVER_SIMULATEDARRAY_H

#include <ksvapi_sim.h>

#include <string>

namespace ksvsim {
std::optional<ModelError> loadModelFile(const std::string& path) __attribute__((weak));
std::string activeModelSource() __attribute__((weak));
void setLogLevel(int maxLevel) __attribute__((weak));
std::optional<std::string> setLogSink(const std::string& sink) __attribute__((weak));
} // namespace ksvsim

namespace ksv::server {

inline bool arrayIsSimulated() {
    return ksvsim::activeModelSource != nullptr;
}

// The model the simulator answers from, or that the array's own library is in use.
inline std::string arrayInUse() {
    return arrayIsSimulated() ? "simulated, model " + ksvsim::activeModelSource()
                              : "the array's own libksvapi";
}

} // namespace ksv::server

#endif
