#include "cimserver/ResponseMemoryGate.h"

namespace ksv::server {

ResponseMemoryGate::ResponseMemoryGate(std::size_t ceilingBytes,
                                       std::chrono::milliseconds longestWait,
                                       std::chrono::milliseconds idleBeforeReturn,
                                       HeapMeasure heapInUse, PageReturn returnFreePages)
    : _ceiling(ceilingBytes), _longestWait(longestWait), _idleBeforeReturn(idleBeforeReturn),
      _heapInUse(std::move(heapInUse)), _returnFreePages(std::move(returnFreePages)),
      _idleHeap(_heapInUse()), _returner([this] { returnPagesWhenIdle(); }) {}

ResponseMemoryGate::~ResponseMemoryGate() {
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _stopping = true;
    }
    _activity.notify_all();
    _returner.join();
}

ResponseMemoryGate::Pass::Pass(ResponseMemoryGate& gate) : _gate(gate), _admitted(gate.enter()) {}

ResponseMemoryGate::Pass::~Pass() {
    if (_admitted)
        _gate.leave();
}

// With nothing in flight, nothing is held by responses, whatever the heap says.
bool ResponseMemoryGate::overCeiling() const {
    if (_ceiling == 0 || _inFlight == 0)
        return false;
    const std::size_t inUse = _heapInUse();
    return inUse > _idleHeap && inUse - _idleHeap >= _ceiling;
}

bool ResponseMemoryGate::enter() {
    std::unique_lock<std::mutex> lock(_mutex);
    if (!_left.wait_for(lock, _longestWait, [this] { return !overCeiling(); }))
        return false;
    ++_inFlight;
    ++_admissions;
    return true;
}

void ResponseMemoryGate::leave() {
    std::lock_guard<std::mutex> lock(_mutex);
    if (--_inFlight == 0) {
        _idleHeap = _heapInUse();
        _pagesFreedSinceReturn = true;
        _activity.notify_all();
    }
    _left.notify_all();
}

void ResponseMemoryGate::returnPagesWhenIdle() {
    std::unique_lock<std::mutex> lock(_mutex);
    while (!_stopping) {
        _activity.wait(lock,
                       [this] { return _stopping || (_pagesFreedSinceReturn && _inFlight == 0); });
        const unsigned long admissions = _admissions;
        const bool busyAgain = _activity.wait_for(
            lock, _idleBeforeReturn, [&] { return _stopping || _admissions != admissions; });
        if (busyAgain)
            continue;
        _pagesFreedSinceReturn = false;
        lock.unlock();
        _returnFreePages();
        lock.lock();
    }
}

} // namespace ksv::server
