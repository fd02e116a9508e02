// The process-wide semaphore behind cim_sem_wait and cim_sem_post.
#ifndef KSVSIM_SEMAPHORE_H
#define KSVSIM_SEMAPHORE_H

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace ksvsim::detail {

class GlobalSemaphore {
public:
    static GlobalSemaphore& instance();

    // True when taken within the time-out.
    bool wait();
    // False (logged and counted as misuse) when the semaphore was not taken.
    bool post();

    bool held() const;
    unsigned misuseCount() const;
    void setTimeout(std::chrono::milliseconds timeout);

    // Free, misuse count zero, time-out from KSV_SEM_TIMEOUT_MS.
    void reset();

private:
    GlobalSemaphore();

    mutable std::mutex mutex_;
    std::condition_variable freed_;
    bool taken_ = false;
    unsigned misuse_ = 0;
    std::chrono::milliseconds timeout_;
};

} // namespace ksvsim::detail

#endif // KSVSIM_SEMAPHORE_H
