// Starting work on several threads at once, as the concurrency cases of every suite do.
#ifndef KSV_TESTS_SUPPORT_ONTHREADS_H
#define KSV_TESTS_SUPPORT_ONTHREADS_H

#include <thread>
#include <vector>

// Runs work(i) on `count` threads at once, i from 0, and waits for them all.
template <class Work>
void onThreads(int count, Work work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < count; i++)
        threads.emplace_back(work, i);
    for (std::thread& thread : threads)
        thread.join();
}

#endif
