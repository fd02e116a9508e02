#include "call_registry.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace ksvsim::detail {
namespace {

constexpr std::size_t kMaxRecordedCalls = 10000;

// Every library function that returns int.
constexpr std::string_view kForcibleFunctions[] = {
    "api_authorizeCIMUser",
    "api_checkUserPassword",
    "api_convertStrLPIDtoPortID",
    "api_deReferenceDiskDeviceID",
    "api_extractFromSystemDiskID",
    "api_getFCPortLPID",
    "api_getMapsPDtoVV",
    "api_getMapsVVtoCh",
    "api_getSystemDisks",
    "api_getSystemDualIP",
    "api_getSystemInfo",
    "api_getVVs",
    "api_getiSCSIPortLPID",
    "api_ksvOpenForCimserver",
    "api_locateMagazine",
    "api_wwnIntToString",
    "api_wwnStringToInt",
    "cim_sem_post",
    "cim_sem_wait",
    "getDiskDeviceIDs",
    "getNumberOfNodes",
    "hashtable_contains_key",
    "hashtable_put",
    "validateConvertIP",
};

bool isForcible(std::string_view function) {
    return std::find(std::begin(kForcibleFunctions), std::end(kForcibleFunctions), function) !=
           std::end(kForcibleFunctions);
}

} // namespace

CallRegistry& CallRegistry::instance() {
    // Never destroyed: server threads may still call in while the process exits.
    static CallRegistry* registry = new CallRegistry;
    return *registry;
}

void CallRegistry::force(const std::string& function, int result, int times) {
    if (!isForcible(function)) {
        throw std::invalid_argument("cannot force the result of \"" + function +
                                    "\": not a library function that returns int");
    }
    if (times == 0 || times < kUntilCleared) {
        throw std::invalid_argument("forced result of " + function +
                                    ": the number of calls must be positive or kUntilCleared");
    }
    std::lock_guard<std::mutex> lock(forcedMutex_);
    forced_[function] = Forced{result, times};
    anyForced_.store(true);
}

void CallRegistry::clearForced() {
    std::lock_guard<std::mutex> lock(forcedMutex_);
    forced_.clear();
    anyForced_.store(false);
}

std::optional<int> CallRegistry::takeForced(const char* function) {
    if (!anyForced_.load()) {
        return std::nullopt;
    }
    std::lock_guard<std::mutex> lock(forcedMutex_);
    const auto found = forced_.find(std::string_view(function));
    if (found == forced_.end()) {
        return std::nullopt;
    }
    const int result = found->second.result;
    if (found->second.remaining != kUntilCleared && --found->second.remaining == 0) {
        forced_.erase(found);
        anyForced_.store(!forced_.empty());
    }
    return result;
}

void CallRegistry::record(const char* function, std::string_view argument, int result) {
    const std::thread::id thread = std::this_thread::get_id();
    std::lock_guard<std::mutex> lock(callsMutex_);
    if (calls_.size() < kMaxRecordedCalls) {
        calls_.reserve(kMaxRecordedCalls);
        calls_.push_back({function, std::string(argument), result, thread});
        return;
    }
    Call& oldest = calls_[oldestCall_];
    oldest.function = function;
    oldest.argument.assign(argument);
    oldest.result = result;
    oldest.thread = thread;
    oldestCall_ = (oldestCall_ + 1) % kMaxRecordedCalls;
}

std::vector<CallRecord> CallRegistry::calls() const {
    std::lock_guard<std::mutex> lock(callsMutex_);
    std::vector<CallRecord> records;
    records.reserve(calls_.size());
    for (std::size_t i = 0; i < calls_.size(); ++i) {
        const Call& call = calls_[(oldestCall_ + i) % calls_.size()];
        records.push_back({call.function, call.argument, call.result, call.thread});
    }
    return records;
}

void CallRegistry::clearCalls() {
    std::lock_guard<std::mutex> lock(callsMutex_);
    calls_.clear();
    oldestCall_ = 0;
}

} // namespace ksvsim::detail
