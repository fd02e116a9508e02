// A ceiling on the memory that the responses in flight take together. What they take is the
// heap in use beyond what it was when the server last answered nothing. A request that arrives
// while that is over the ceiling waits for responses to end, for a bounded time, and is then
// refused, so that load makes the server refuse work rather than run out of memory.
//
// Freed pages stay with the process while requests keep coming, since a response that reuses
// them spares the page faults of fresh ones (about a third of an enumeration's time); once the
// server has answered nothing for a while, they go back to the system.
#ifndef KSV_CIMSERVER_RESPONSEMEMORYGATE_H
#define KSV_CIMSERVER_RESPONSEMEMORYGATE_H

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>

#include "cimserver/HeapAllocator.h"

namespace ksv::server {

class ResponseMemoryGate {
public:
    using HeapMeasure = std::function<std::size_t()>;
    using PageReturn = std::function<void()>;

    // A ceiling of 0 admits every request. Free pages go back after idleBeforeReturn without a
    // response in flight.
    ResponseMemoryGate(std::size_t ceilingBytes, std::chrono::milliseconds longestWait,
                       std::chrono::milliseconds idleBeforeReturn,
                       HeapMeasure heapInUse = &heap::bytesInUse,
                       PageReturn returnFreePages = &heap::returnFreePages);
    ~ResponseMemoryGate();
    ResponseMemoryGate(const ResponseMemoryGate&) = delete;
    ResponseMemoryGate& operator=(const ResponseMemoryGate&) = delete;

    // One request's stay: admitted() tells whether it may be answered.
    class Pass {
    public:
        explicit Pass(ResponseMemoryGate& gate);
        ~Pass();
        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;
        bool admitted() const { return _admitted; }

    private:
        ResponseMemoryGate& _gate;
        const bool _admitted;
    };

private:
    bool enter();
    void leave();
    bool overCeiling() const;
    void returnPagesWhenIdle();

    const std::size_t _ceiling;
    const std::chrono::milliseconds _longestWait;
    const std::chrono::milliseconds _idleBeforeReturn;
    const HeapMeasure _heapInUse;
    const PageReturn _returnFreePages;
    std::mutex _mutex;
    std::condition_variable _left;
    std::condition_variable _activity;
    unsigned _inFlight = 0;
    std::size_t _idleHeap = 0;
    // Counts admissions, so that the returner sees a request that came and went while it waited.
    unsigned long _admissions = 0;
    // What starting up freed is returned too.
    bool _pagesFreedSinceReturn = true;
    bool _stopping = false;
    std::thread _returner;
};

} // namespace ksv::server

#endif
