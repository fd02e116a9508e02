#include "cimserver/WorkerPool.h"

namespace ksv::server {

WorkerPool::WorkerPool(unsigned threads, std::size_t queueCapacity)
    : _queueCapacity(queueCapacity) {
    _threads.reserve(threads);
    for (unsigned i = 0; i < threads; ++i)
        _threads.emplace_back([this] { serve(); });
}

WorkerPool::~WorkerPool() {
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _stopping = true;
    }
    _jobQueued.notify_all();
    for (std::thread& thread : _threads)
        thread.join();
}

bool WorkerPool::submit(std::function<void()> job) {
    {
        std::lock_guard<std::mutex> lock(_mutex);
        if (_stopping || _queue.size() >= _queueCapacity)
            return false;
        _queue.push_back(std::move(job));
    }
    _jobQueued.notify_one();
    return true;
}

bool WorkerPool::stop(std::optional<std::chrono::steady_clock::time_point> deadline) {
    std::unique_lock<std::mutex> lock(_mutex);
    _stopping = true;
    _jobQueued.notify_all();
    auto allDone = [this] { return _queue.empty() && _running == 0; };
    if (!deadline) {
        _jobDone.wait(lock, allDone);
        return true;
    }
    return _jobDone.wait_until(lock, *deadline, allDone);
}

// Queued jobs still run after stop(): each is a request a client waits for.
void WorkerPool::serve() {
    std::unique_lock<std::mutex> lock(_mutex);
    for (;;) {
        _jobQueued.wait(lock, [this] { return _stopping || !_queue.empty(); });
        if (_queue.empty())
            return;
        std::function<void()> job = std::move(_queue.front());
        _queue.pop_front();
        ++_running;
        lock.unlock();
        job();
        job = nullptr;
        lock.lock();
        --_running;
        _jobDone.notify_all();
    }
}

} // namespace ksv::server
