#include "semaphore.h"

#include "logging.h"

#include "ksvapi.h"

#include <cstdlib>

namespace ksvsim::detail {
namespace {

constexpr std::chrono::milliseconds kDefaultTimeout{5000};

std::chrono::milliseconds timeoutFromEnvironment() {
    const char* text = std::getenv("KSV_SEM_TIMEOUT_MS");
    if (text == nullptr || *text == '\0') {
        return kDefaultTimeout;
    }
    char* end = nullptr;
    const long long milliseconds = std::strtoll(text, &end, 10);
    if (*end != '\0' || milliseconds < 0) {
        logText(KSV_LOG_ERROR,
                std::string("KSV_SEM_TIMEOUT_MS: not a number of milliseconds: ") + text + "\n");
        return kDefaultTimeout;
    }
    return std::chrono::milliseconds(milliseconds);
}

} // namespace

GlobalSemaphore::GlobalSemaphore() : timeout_(timeoutFromEnvironment()) {}

GlobalSemaphore& GlobalSemaphore::instance() {
    // Never destroyed: server threads may still call in while the process exits.
    static GlobalSemaphore* semaphore = new GlobalSemaphore;
    return *semaphore;
}

bool GlobalSemaphore::wait() {
    std::unique_lock<std::mutex> lock(mutex_);
    if (!freed_.wait_for(lock, timeout_, [this] { return !taken_; })) {
        return false;
    }
    taken_ = true;
    return true;
}

bool GlobalSemaphore::post() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (taken_) {
            taken_ = false;
            freed_.notify_one();
            return true;
        }
        ++misuse_;
    }
    logText(KSV_LOG_ERROR, "cim_sem_post: semaphore posted without a matching wait\n");
    return false;
}

bool GlobalSemaphore::held() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return taken_;
}

unsigned GlobalSemaphore::misuseCount() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return misuse_;
}

void GlobalSemaphore::setTimeout(std::chrono::milliseconds timeout) {
    std::lock_guard<std::mutex> lock(mutex_);
    timeout_ = timeout;
}

void GlobalSemaphore::reset() {
    const auto timeout = timeoutFromEnvironment();
    std::lock_guard<std::mutex> lock(mutex_);
    taken_ = false;
    misuse_ = 0;
    timeout_ = timeout;
    freed_.notify_all();
}

} // namespace ksvsim::detail
