// Forced results and the log of library calls.
#ifndef KSVSIM_CALL_REGISTRY_H
#define KSVSIM_CALL_REGISTRY_H

#include "ksvapi_sim.h"

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ksvsim::detail {

class CallRegistry {
public:
    static CallRegistry& instance();

    // Throws std::invalid_argument for a function that cannot be forced.
    void force(const std::string& function, int result, int times);
    void clearForced();
    // The forced result of this call, if any; consumes one of its calls.
    std::optional<int> takeForced(const char* function);

    void record(const char* function, std::string_view argument, int result);
    std::vector<CallRecord> calls() const;
    void clearCalls();

private:
    struct Forced {
        int result;
        int remaining; // kUntilCleared: no limit
    };

    std::mutex forcedMutex_;
    std::map<std::string, Forced, std::less<>> forced_;
    std::atomic<bool> anyForced_{false};

    // The log is a ring of the most recent calls. Function names are the library's own literals,
    // kept as pointers, and an argument is copied into the text of the call it replaces, so that
    // once the ring is full recording a call allocates nothing.
    struct Call {
        const char* function;
        std::string argument;
        int result;
        std::thread::id thread;
    };
    mutable std::mutex callsMutex_;
    std::vector<Call> calls_;
    std::size_t oldestCall_ = 0;
};

// Runs 'body' unless a result is forced for 'function', and records the call
// with its result.
template <typename Body>
int tracedCall(const char* function, std::string_view argument, Body&& body) {
    CallRegistry& registry = CallRegistry::instance();
    const std::optional<int> forced = registry.takeForced(function);
    const int result = forced ? *forced : body();
    registry.record(function, argument, result);
    return result;
}

// Records a call of a function that returns no result.
inline void recordCall(const char* function, std::string_view argument = {}) {
    CallRegistry::instance().record(function, argument, 0);
}

} // namespace ksvsim::detail

#endif // KSVSIM_CALL_REGISTRY_H
