// The test control of the simulated array.
#include "call_registry.h"
#include "logging.h"
#include "model_store.h"
#include "refused_users.h"
#include "semaphore.h"

#include "ksvapi_sim.h"

namespace ksvsim {

using detail::CallRegistry;
using detail::GlobalSemaphore;
using detail::ModelStore;

std::optional<ModelError> loadModelFile(const std::string& path) {
    return ModelStore::instance().loadFile(path);
}

std::optional<ModelError> loadModelText(const std::string& json, const std::string& sourceName) {
    return ModelStore::instance().loadText(json, sourceName);
}

void useBuiltInModel() {
    ModelStore::instance().useBuiltIn();
}

std::string activeModelSource() {
    return ModelStore::instance().read([](const detail::Model& model) { return model.source; });
}

void forceResult(const std::string& function, int result, int times) {
    CallRegistry::instance().force(function, result, times);
}

void clearForcedResults() {
    CallRegistry::instance().clearForced();
}

void refuseUser(const std::string& name) {
    detail::RefusedUsers::instance().refuse(name);
}

void clearRefusedUsers() {
    detail::RefusedUsers::instance().clear();
}

std::vector<CallRecord> calls() {
    return CallRegistry::instance().calls();
}

void clearCalls() {
    CallRegistry::instance().clearCalls();
}

void setLogCapture(bool enabled) {
    detail::setCapture(enabled);
}

std::vector<LogLine> capturedLog() {
    return detail::captured();
}

void clearCapturedLog() {
    detail::clearCaptured();
}

void setLogLevel(int maxLevel) {
    detail::setMaxLevel(maxLevel);
}

std::optional<std::string> setLogSink(const std::string& sink) {
    return detail::setSink(sink);
}

void setSemaphoreTimeout(std::chrono::milliseconds timeout) {
    GlobalSemaphore::instance().setTimeout(timeout);
}

unsigned semaphoreMisuseCount() {
    return GlobalSemaphore::instance().misuseCount();
}

bool semaphoreHeld() {
    return GlobalSemaphore::instance().held();
}

void reset() {
    useBuiltInModel();
    clearForcedResults();
    clearRefusedUsers();
    clearCalls();
    setLogCapture(false);
    clearCapturedLog();
    detail::configureLoggingFromEnvironment();
    GlobalSemaphore::instance().reset();
}

} // namespace ksvsim
