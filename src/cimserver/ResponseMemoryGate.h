// A ceiling on the memory that the responses in flight take together. What they take is the
// heap in use beyond what it was when the server last answered nothing. A request that arrives
// while that is over the ceiling waits for responses to end, for a bounded time, and is then
// refused, so that load makes the server refuse work rather than run out of memory. Giving freed
// pages back to the system is the allocator's own business (see main.cpp).
#ifndef KSV_CIMSERVER_RESPONSEMEMORYGATE_H
#define KSV_CIMSERVER_RESPONSEMEMORYGATE_H

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>

#include "cimserver/HeapAllocator.h"

namespace ksv::server {

class ResponseMemoryGate {
public:
    using HeapMeasure = std::function<std::size_t()>;

    // A ceiling of 0 admits every request.
    ResponseMemoryGate(std::size_t ceilingBytes, std::chrono::milliseconds longestWait,
                       HeapMeasure heapInUse = &heap::bytesInUse);
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

    const std::size_t _ceiling;
    const std::chrono::milliseconds _longestWait;
    const HeapMeasure _heapInUse;
    std::mutex _mutex;
    std::condition_variable _left;
    unsigned _inFlight = 0;
    std::size_t _idleHeap = 0;
};

} // namespace ksv::server

#endif
