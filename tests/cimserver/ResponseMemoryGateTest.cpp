// The ceiling on the heap that responses in flight take together.
#include <gtest/gtest.h>

#include "cimserver/ResponseMemoryGate.h"

#include <atomic>
#include <future>
#include <optional>
#include <thread>

namespace ksv::server {
namespace {

using Pass = ResponseMemoryGate::Pass;

TEST(ResponseMemoryGate, RefusesAboveTheCeilingOverTheIdleHeapAndAdmitsOnceResponsesEnd) {
    std::atomic<std::size_t> heap{1000};
    ResponseMemoryGate gate(
        100, std::chrono::seconds(1), std::chrono::hours(1), [&heap] { return heap.load(); },
        [] {});
    std::optional<Pass> first;
    first.emplace(gate);
    ASSERT_TRUE(first->admitted());
    heap = 1099;
    EXPECT_TRUE(Pass(gate).admitted());
    heap = 1100;
    EXPECT_FALSE(Pass(gate).admitted());
    auto waiting = std::async(std::launch::async, [&gate] { return Pass(gate).admitted(); });
    first.reset();
    EXPECT_TRUE(waiting.get()) << "the heap left when nothing was in flight is the new base";
    heap = 5000;
    EXPECT_TRUE(Pass(gate).admitted()) << "with nothing in flight, nothing holds the heap";
}

void waitForReturns(const std::atomic<int>& returns, int count) {
    for (int waited = 0; returns < count && waited < 1000; ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

TEST(ResponseMemoryGate, ReturnsFreePagesOnceNothingHasBeenInFlightForAWhile) {
    std::atomic<int> returns{0};
    const auto idle = std::chrono::milliseconds(50);
    ResponseMemoryGate gate(
        0, std::chrono::seconds(1), idle, [] { return std::size_t(0); }, [&returns] { ++returns; });
    waitForReturns(returns, 1);
    ASSERT_EQ(returns, 1) << "what starting up freed";
    Pass(gate).admitted();
    std::optional<Pass> next;
    next.emplace(gate);
    std::this_thread::sleep_for(idle * 3);
    EXPECT_EQ(returns, 1) << "not while the next response is in flight";
    next.reset();
    waitForReturns(returns, 2);
    std::this_thread::sleep_for(idle * 3);
    EXPECT_EQ(returns, 2) << "once after the responses, then nothing freed since";
}

} // namespace
} // namespace ksv::server
