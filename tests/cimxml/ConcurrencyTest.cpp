#include <cimxml/Elements.h>

#include "OnThreads.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <atomic>

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
    onThreads(threadCount, [&](int) {
        for (int i = 0; i < 200; i++) {
            std::string xml;
            ksv::cimxml::appendInstance(xml, shared);
            correct += xml == expected && sameContent(shared, ksv::cimxml::decodeInstance(xml));
        }
    });
    EXPECT_EQ(threadCount * 200, correct.load());
}

} // namespace
