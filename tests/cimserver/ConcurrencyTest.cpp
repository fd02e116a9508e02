// Many clients at once: every answer right, providers initialized once and before their first
// operation, nested calls never starved of workers, handles safe while the server's backend
// changes, shutdown bounded while requests run.
#include <gtest/gtest.h>

#include "OnThreads.h"
#include "Probes.h"
#include "TestServer.h"
#include "cimserver/Caller.h"

#include <Pegasus/Client/CIMXmlClientBackend.h>

#include <Pegasus/Provider/CIMOMHandle.h>
#include <Pegasus/Provider/CIMOMHandleBackend.h>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace ksv::test {
namespace {

using namespace Pegasus;

constexpr int kClients = 6;

// Runs `work(clientIndex)` on kClients threads at once; the number of failed checks.
int runClients(const std::function<bool(int)>& work) {
    std::atomic<int> failures{0};
    onThreads(kClients, [&](int index) {
        try {
            failures += work(index) ? 0 : 1;
        } catch (const Exception& error) {
            ADD_FAILURE() << error.getMessage();
            ++failures;
        }
    });
    return failures;
}

// Runs `work` on the clients while `change` runs over and over on a thread of its own.
int runClientsWhile(const std::function<void()>& change, const std::function<bool(int)>& work) {
    std::atomic<bool> done{false};
    std::thread changer([&] {
        while (!done)
            change();
    });
    const int failures = runClients(work);
    done = true;
    changer.join();
    return failures;
}

// More clients than workers: nested calls must never wait for a worker.
TEST(ConcurrencyTest, MixedAndNestedOperationsFromManyClientsAllSucceed) {
    TestServer server(2);
    int failures = runClients([&](int index) {
        const std::string user = index % 2 == 0 ? "admin" : "monitor";
        auto client = server.client(user, user + "-pw");
        bool right = true;
        for (int round = 0; round < 10; ++round) {
            CIMInstance device = client->getInstance(kTestNamespace, devicePath("dev-1"));
            right &= stringProperty(device, "RequestedBy") == user;
            right &= client->enumerateInstances(kTestNamespace, "KSV_TestElement").size() == 5;
            right &= client->associatorNames(kTestNamespace, devicePath("dev-0")).size() == 1;
            Array<CIMParamValue> in;
            in.append(CIMParamValue("Delay", CIMValue(Uint32(round))));
            in.append(CIMParamValue("Mode", CIMValue(String("m"))));
            in.append(CIMParamValue("Force", CIMValue(false)));
            Array<CIMParamValue> out;
            Uint32 doubled = 0;
            client->invokeMethod(kTestNamespace, devicePath("dev-2"), "Reset", in, out)
                .get(doubled);
            right &= doubled == Uint32(2 * round);
            if (round % 2 == 0) {
                CIMInstance nested =
                    client->getInstance(kTestNamespace, pathOf("KSV_TestNested", "nested"));
                right &= stringProperty(nested, "NestedUser") == ksv::server::userNameOf(geteuid());
            }
        }
        return right;
    });
    EXPECT_EQ(failures, 0);
}

TEST(ConcurrencyTest, ProvidersAreInitializedOnceBeforeTheirFirstOperation) {
    TestServer server(kClients);
    unsigned initializedBefore = ksvtest_count(KSVTEST_INITIALIZATIONS);
    unsigned prematureBefore = ksvtest_count(KSVTEST_PREMATURE_CALLS);
    // Every client connected before any asks, so that the first calls arrive together.
    std::atomic<int> connected{0};
    const int failures = runClients([&](int) {
        auto client = server.client();
        for (++connected; connected < kClients;)
            std::this_thread::yield();
        return stringProperty(client->getInstance(kTestNamespace, devicePath("dev-0")), "Id") ==
               "dev-0";
    });
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(ksvtest_count(KSVTEST_INITIALIZATIONS) - initializedBefore, 1u);
    EXPECT_EQ(ksvtest_count(KSVTEST_PREMATURE_CALLS) - prematureBefore, 0u);
}

// While the default backend comes and goes, every handle made reaches the server or fails
// cleanly, and no call is lost.
TEST(ConcurrencyTest, HandlesMadeWhileTheDefaultBackendChangesReachItOrFailCleanly) {
    TestServer server(2);
    const std::shared_ptr<CIMOMHandleBackend> backend = CIMOMHandleBackend::getDefault();
    const unsigned before = ksvtest_count(KSVTEST_OPERATIONS);
    constexpr int calls = 200;
    std::atomic<int> attached{0};
    std::atomic<int> detached{0};
    int failures = runClientsWhile(
        [&] {
            CIMOMHandleBackend::resetDefault();
            CIMOMHandleBackend::setDefault(backend);
            // Attached most of the time, so that most calls reach the server.
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        },
        [&](int) {
            const OperationContext context;
            for (int i = 0; i < calls; ++i) {
                CIMOMHandle handle;
                CIMOMHandle copy(handle);
                try {
                    copy.enumerateInstanceNames(context, kTestNamespace, "KSV_TestDevice");
                    ++attached;
                } catch (const CIMException& error) {
                    if (error.getCode() != CIM_ERR_FAILED)
                        return false;
                    ++detached;
                }
            }
            return true;
        });
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(attached + detached, kClients * calls);
    EXPECT_EQ(ksvtest_count(KSVTEST_OPERATIONS) - before, unsigned(attached));
}

// Clients connect while the connection factories come and go: each attempt gets a connection
// from a factory or fails with CannotConnectException, and every connection opened is closed.
TEST(ConcurrencyTest, ClientsConnectWhileTheFactoriesChange) {
    TestServer server(2);
    std::vector<std::string> record;
    std::mutex mutex;
    std::atomic<int> opened{0}, connected{0};
    auto factory = [&] {
        ++opened;
        return std::make_unique<RecordingConnection>(record, mutex);
    };
    // The running server registers its own local factory, which the counts do not see: clients
    // that start before the swapper's first turn must find none.
    CIMClientConnector::setLocal(nullptr);
    constexpr int attempts = 300;
    int failures = runClientsWhile(
        [&] {
            CIMClientConnector::setLocal(factory);
            CIMClientConnector::setRemote(
                [&](const String&, Uint32, const String&, const String&) { return factory(); });
            CIMClientConnector::setLocal(nullptr);
            CIMClientConnector::setRemote(nullptr);
        },
        [&](int index) {
            for (int i = 0; i < attempts; ++i) {
                CIMClient client;
                try {
                    if ((index + i) % 2 == 0)
                        client.connectLocal();
                    else
                        client.connect("array1", 5988, "alice", "secret");
                } catch (const CannotConnectException&) {
                    continue;
                }
                if (client.enumerateInstanceNames(kTestNamespace, "KSV_TestGadget").size() != 2)
                    return false;
                ++connected;
            }
            return true;
        });
    CIMClientConnector::setRemote(&CIMXmlClientConnector::connectRemote);
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(opened, connected);
    EXPECT_EQ(std::count(record.begin(), record.end(), "disconnect"), opened);
}

TEST(ConcurrencyTest, ShutdownWhileClientsStreamFinishesWithinTheGrace) {
    auto server = std::make_unique<TestServer>(2);
    server->populate(20000, 100);
    std::vector<std::future<void>> streams;
    for (int i = 0; i < 3; ++i) {
        streams.push_back(std::async(std::launch::async, [port = server->port()] {
            CIMClient client;
            try {
                client.connect("127.0.0.1", port, "admin", "admin-pw");
                client.enumerateInstances(kTestNamespace, "KSV_TestDevice");
            } catch (const Exception&) {
                // Cut off by the shutdown, or refused after it: either is fine.
            }
        }));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    // True only when every worker finished within the grace period.
    EXPECT_TRUE(server->server().stop());
    for (auto& stream : streams)
        stream.get();
}

} // namespace
} // namespace ksv::test
