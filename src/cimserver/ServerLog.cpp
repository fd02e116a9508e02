#include "cimserver/ServerLog.h"

#include <ksvapi.h>

#include <syslog.h>

#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace ksv::server {

namespace {

constexpr const char kName[] = "ksv-cimserver";

struct LogSettings {
    std::mutex mutex;
    int level = KSV_LOG_WARNING;
    std::string sink = "stderr";
};

LogSettings& settings() {
    // Never destroyed: requests may still be turned away while the process exits.
    static auto* instance = new LogSettings;
    return *instance;
}

std::string fromEnvironment(const char* name, const std::string& fallback) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : fallback;
}

// A quoted name, cut short: user names come from the client.
std::string quotedName(const std::string& name) {
    constexpr std::size_t kShown = 64;
    std::string shown = name.substr(0, kShown);
    for (char& c : shown) {
        if (static_cast<unsigned char>(c) < 0x20 || c == '"')
            c = '?';
    }
    return "\"" + shown + (name.size() > kShown ? "...\"" : "\"");
}

void write(int level, const std::string& text) {
    LogSettings& log = settings();
    std::lock_guard<std::mutex> lock(log.mutex);
    if (level > log.level || log.sink == "none")
        return;
    if (log.sink == "syslog") {
        syslog(LOG_AUTH | LOG_WARNING, "%s: %s", kName, text.c_str());
    } else if (log.sink.rfind("file:", 0) == 0) {
        if (std::FILE* file = std::fopen(log.sink.c_str() + 5, "a")) {
            std::fprintf(file, "%s[%d] %s\n", kName, level, text.c_str());
            std::fclose(file);
        }
    } else {
        std::fprintf(stderr, "%s[%d] %s\n", kName, level, text.c_str());
    }
}

} // namespace

void configureServerLog(std::optional<int> level, std::optional<std::string> sink) {
    LogSettings& log = settings();
    std::lock_guard<std::mutex> lock(log.mutex);
    log.level = level.value_or(
        std::atoi(fromEnvironment("KSV_LOG_LEVEL", std::to_string(KSV_LOG_WARNING)).c_str()));
    log.sink = sink.value_or(fromEnvironment("KSV_LOG_SINK", "stderr"));
}

void logFailedLogin(const std::string& user, const std::string& clientAddress) {
    write(KSV_LOG_WARNING, "login failed: user " + quotedName(user) + " from " + clientAddress);
}

void logAccessDenied(const Caller& caller, const std::string& operation) {
    write(KSV_LOG_WARNING, "access denied: user " + quotedName(caller.userName) + " from " +
                               caller.address + ", operation " + operation);
}

void logRequestOverdue(const std::string& clientAddress, unsigned deadlineSeconds) {
    write(KSV_LOG_WARNING, "request from " + clientAddress + " not received whole within " +
                               std::to_string(deadlineSeconds) + " s: connection closed");
}

} // namespace ksv::server
