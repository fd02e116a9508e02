#include <Pegasus/Client/CIMClient.h>

#include <cimxml/Elements.h>
#include <cimxml/Request.h>

#include "LoopbackResponder.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace Pegasus;
using ksv::cimxml::testing::answerLikeACimServer;
using ksv::cimxml::testing::LoopbackResponder;
using ksv::cimxml::testing::sameContent;
using ksv::cimxml::testing::sampleDisk;

namespace {

const int threadCount = 8;
const int callsPerThread = 25;

TEST(ClientConcurrency, ManyClientsInParallelEachKeepTheirOwnConnection) {
    const auto server = LoopbackResponder::onLoopbackTcp(answerLikeACimServer);
    std::atomic<int> correct{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; t++) {
        threads.emplace_back([&] {
            CIMClient client;
            client.connect("127.0.0.1", server->port(), "alice", "secret");
            for (int i = 0; i < callsPerThread; i++) {
                const Array<CIMInstance> disks = client.enumerateInstances(
                    CIMNamespaceName("root/ksv"), CIMName("KSV_DiskDrive"));
                if (disks.size() == 3 && sameContent(sampleDisk(2), disks[1])) {
                    ++correct;
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(threadCount * callsPerThread, correct.load());
    // One probe and one kept-alive connection per client.
    EXPECT_EQ(2 * threadCount, server->connectionsOpened());
}

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
