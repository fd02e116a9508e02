#include "RecordingCIMClientBackend.h"

#include <Pegasus/Client/CIMClient.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

PEGASUS_USING_PEGASUS;

using pegasus_testing::CallLog;
using pegasus_testing::RecordingCIMClientBackend;

namespace {

// Clients connect from several threads while the factories are replaced and removed: each
// attempt either gets a connection from a factory or fails with CannotConnectException,
// and every connection opened is closed again.
TEST(CIMClientConnectorConcurrency, ConnectingWhileFactoriesChange) {
    std::atomic<int> opened{0};
    auto log = std::make_shared<CallLog>();
    auto factory = [&opened, log] {
        ++opened;
        return std::make_unique<RecordingCIMClientBackend>(log);
    };

    constexpr int clients = 4;
    constexpr int attemptsPerClient = 300;
    std::atomic<int> connected{0};
    std::atomic<int> refused{0};
    std::atomic<bool> done{false};

    std::thread server([&] {
        while (!done) {
            CIMClientConnector::setLocal(factory);
            CIMClientConnector::setRemote([&factory](const String&, Uint32, const String&,
                                                     const String&) { return factory(); });
            CIMClientConnector::setLocal(nullptr);
            CIMClientConnector::setRemote(nullptr);
        }
    });
    std::vector<std::thread> users;
    for (int u = 0; u < clients; ++u) {
        users.emplace_back([&, u] {
            for (int i = 0; i < attemptsPerClient; ++i) {
                CIMClient client;
                try {
                    if ((u + i) % 2 == 0) {
                        client.connectLocal();
                    } else {
                        client.connect("array1", 5988, "alice", "secret");
                    }
                    client.enumerateInstanceNames("root/ksv", "KSV_DiskDrive");
                    ++connected;
                } catch (const CannotConnectException&) {
                    ++refused;
                }
            }
        });
    }
    for (std::thread& user : users) {
        user.join();
    }
    done = true;
    server.join();

    EXPECT_EQ(connected + refused, clients * attemptsPerClient);
    EXPECT_EQ(opened, connected);
    int closed = 0;
    for (const std::string& call : log->lines())
        closed += call == "disconnect";
    EXPECT_EQ(closed, opened);
}

} // namespace
