#include "cimserver/ResponseMemoryGate.h"

namespace ksv::server {

ResponseMemoryGate::ResponseMemoryGate(std::size_t ceilingBytes,
                                       std::chrono::milliseconds longestWait, HeapMeasure heapInUse)
    : _ceiling(ceilingBytes), _longestWait(longestWait), _heapInUse(std::move(heapInUse)),
      _idleHeap(_heapInUse()) {}

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
    return true;
}

void ResponseMemoryGate::leave() {
    std::lock_guard<std::mutex> lock(_mutex);
    if (--_inFlight == 0)
        _idleHeap = _heapInUse();
    _left.notify_all();
}

} // namespace ksv::server
