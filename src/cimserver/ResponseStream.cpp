#include "cimserver/ResponseStream.h"

#include <algorithm>
#include <cstring>

namespace ksv::server {

namespace {
// Enough for the producer to find one while the connection sends what is buffered.
constexpr std::size_t kSpareBuffers = 2;
} // namespace

ResponseStream::ResponseStream(std::shared_ptr<StreamConnection> connection, StreamLimits limits)
    : _connection(std::move(connection)), _limits(limits) {}

void ResponseStream::setHead(ResponseHead head) {
    std::lock_guard<std::mutex> lock(_mutex);
    _head = std::move(head);
}

bool ResponseStream::write(std::string& bytes) {
    std::unique_lock<std::mutex> lock(_mutex);
    _roomFreed.wait(lock, [this] { return _abandoned || _buffered < _limits.capacityBytes; });
    if (_abandoned)
        return false;
    if (!bytes.empty()) {
        _buffered += bytes.size();
        _chunks.push_back(std::move(bytes));
        bytes.clear();
        if (!_spare.empty()) {
            bytes.swap(_spare.back());
            _spare.pop_back();
        }
    }
    const bool wake = takeWakeUp();
    lock.unlock();
    if (wake)
        _connection->resume();
    return true;
}

void ResponseStream::finish(std::vector<HttpHeader> trailers) {
    std::unique_lock<std::mutex> lock(_mutex);
    _finished = true;
    _trailers = std::move(trailers);
    const bool wake = takeWakeUp();
    lock.unlock();
    if (wake)
        _connection->resume();
}

bool ResponseStream::abandoned() const {
    std::lock_guard<std::mutex> lock(_mutex);
    return _abandoned;
}

bool ResponseStream::discardUnsent() {
    std::lock_guard<std::mutex> lock(_mutex);
    if (_started)
        return false;
    _chunks.clear();
    _frontOffset = 0;
    _buffered = 0;
    _roomFreed.notify_all();
    return true;
}

// A connection is suspended with the lock held, so whoever clears the mark may resume it after
// unlocking: the suspension it ends has already happened, and no one else will resume it.
bool ResponseStream::takeWakeUp() {
    if (!_connectionSuspended)
        return false;
    const bool due =
        _finished || _abandoned || _buffered >= (_started ? _limits.wakeBytes : _limits.startBytes);
    if (due)
        _connectionSuspended = false;
    return due;
}

bool ResponseStream::readyOrSuspend() {
    std::lock_guard<std::mutex> lock(_mutex);
    if (_finished || _abandoned || _buffered >= _limits.startBytes) {
        _started = true;
        return true;
    }
    _connectionSuspended = true;
    _connection->suspend();
    return false;
}

void ResponseStream::suspendUntilReady() {
    std::unique_lock<std::mutex> lock(_mutex);
    _connectionSuspended = true;
    _connection->suspend();
    const bool wake = takeWakeUp();
    lock.unlock();
    if (wake)
        _connection->resume();
}

ResponseHead ResponseStream::head() const {
    std::lock_guard<std::mutex> lock(_mutex);
    return _head;
}

bool ResponseStream::takeWholeBody(std::string& body) {
    std::lock_guard<std::mutex> lock(_mutex);
    if (!_finished)
        return false;
    body.clear();
    body.reserve(_buffered);
    for (std::size_t i = 0; i < _chunks.size(); ++i)
        body.append(_chunks[i], i == 0 ? _frontOffset : 0);
    _chunks.clear();
    _frontOffset = 0;
    _buffered = 0;
    return true;
}

ResponseStream::ReadState ResponseStream::read(char* buffer, std::size_t capacity,
                                               std::size_t& copied) {
    std::lock_guard<std::mutex> lock(_mutex);
    copied = 0;
    if (_abandoned)
        return ReadState::Abandoned;
    while (copied < capacity && !_chunks.empty()) {
        const std::string& front = _chunks.front();
        std::size_t count = std::min(capacity - copied, front.size() - _frontOffset);
        std::memcpy(buffer + copied, front.data() + _frontOffset, count);
        copied += count;
        _frontOffset += count;
        if (_frontOffset == front.size()) {
            retire(std::move(_chunks.front()));
            _chunks.pop_front();
            _frontOffset = 0;
        }
    }
    if (copied > 0) {
        _buffered -= copied;
        _roomFreed.notify_all();
        return ReadState::Data;
    }
    if (_finished)
        return ReadState::End;
    _connectionSuspended = true;
    _connection->suspend();
    return ReadState::Suspended;
}

void ResponseStream::retire(std::string&& sent) {
    if (_spare.size() == kSpareBuffers || _finished)
        return;
    sent.clear();
    _spare.push_back(std::move(sent));
}

std::vector<HttpHeader> ResponseStream::trailers() const {
    std::lock_guard<std::mutex> lock(_mutex);
    return _trailers;
}

void ResponseStream::abandon() {
    std::unique_lock<std::mutex> lock(_mutex);
    _abandoned = true;
    _roomFreed.notify_all();
    const bool wake = takeWakeUp();
    lock.unlock();
    if (wake)
        _connection->resume();
}

} // namespace ksv::server
