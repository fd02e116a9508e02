// The ceiling on the heap that responses in flight take together.
#include <gtest/gtest.h>

#include "cimserver/ResponseMemoryGate.h"

#include <atomic>
#include <future>
#include <optional>

namespace ksv::server {
namespace {

using Pass = ResponseMemoryGate::Pass;

TEST(ResponseMemoryGate, RefusesAboveTheCeilingOverTheIdleHeapAndAdmitsOnceResponsesEnd) {
    std::atomic<std::size_t> heap{1000};
    ResponseMemoryGate gate(100, std::chrono::seconds(1), [&heap] { return heap.load(); });
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

} // namespace
} // namespace ksv::server
