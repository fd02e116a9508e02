#include <cimxml/Elements.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace Pegasus;
using ksv::cimxml::testing::sameContent;
using ksv::cimxml::testing::sampleDisk;

namespace {

const int threadCount = 8;

TEST(CodecConcurrency, ThreadsEncodeAndDecodeSharedObjectsIndependently) {
    const CIMInstance shared = sampleDisk(4);
    std::string expected;
    ksv::cimxml::appendInstance(expected, shared);
    std::atomic<int> correct{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; t++) {
        threads.emplace_back([&] {
            for (int i = 0; i < 200; i++) {
                std::string xml;
                ksv::cimxml::appendInstance(xml, shared);
                if (xml == expected && sameContent(shared, ksv::cimxml::decodeInstance(xml))) {
                    ++correct;
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(threadCount * 200, correct.load());
}

} // namespace
