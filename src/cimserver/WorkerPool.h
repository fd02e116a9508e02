// A fixed number of threads serving a bounded queue of jobs.
#ifndef KSV_CIMSERVER_WORKERPOOL_H
#define KSV_CIMSERVER_WORKERPOOL_H

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace ksv::server {

class WorkerPool {
public:
    WorkerPool(unsigned threads, std::size_t queueCapacity);
    // Waits for every job, however long it runs.
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // False when the queue is full or the pool is stopping: the job will not run.
    bool submit(std::function<void()> job);

    // Takes no more jobs and waits until the queued and running ones are done, or the deadline
    // (if any) has passed. True when all are done.
    bool stop(std::optional<std::chrono::steady_clock::time_point> deadline);

private:
    void serve();

    const std::size_t _queueCapacity;
    std::mutex _mutex;
    std::condition_variable _jobQueued;
    std::condition_variable _jobDone;
    std::deque<std::function<void()>> _queue;
    std::size_t _running = 0;
    bool _stopping = false;
    std::vector<std::thread> _threads;
};

} // namespace ksv::server

#endif
