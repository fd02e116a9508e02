#include "RecordingCIMOMHandleBackend.h"

#include <Pegasus/Provider/CIMOMHandle.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

PEGASUS_USING_PEGASUS;

using pegasus_testing::RecordingCIMOMHandleBackend;

namespace {

// The server swaps its default backend while provider threads keep creating handles: every
// handle must either reach a live backend or fail cleanly, and no call may get lost.
TEST(CIMOMHandleConcurrency, DefaultBackendCanBeSwappedWhileHandlesAreCreated) {
    std::atomic<int> received{0};
    auto makeBackend = [&received] {
        auto backend = std::make_shared<RecordingCIMOMHandleBackend>();
        backend->log.onRecord = [&received] { ++received; };
        return backend;
    };

    constexpr int workers = 4;
    constexpr int callsPerWorker = 500;
    std::atomic<int> attached{0};
    std::atomic<int> detached{0};
    std::atomic<bool> done{false};

    std::thread server([&] {
        while (!done) {
            CIMOMHandleBackend::setDefault(makeBackend());
            CIMOMHandleBackend::resetDefault();
        }
    });
    std::vector<std::thread> providers;
    for (int w = 0; w < workers; ++w) {
        providers.emplace_back([&] {
            const OperationContext context;
            for (int i = 0; i < callsPerWorker; ++i) {
                CIMOMHandle handle;
                CIMOMHandle copy(handle);
                try {
                    copy.enumerateInstanceNames(context, "root/ksv", "KSV_DiskDrive");
                    ++attached;
                } catch (const CIMException& e) {
                    EXPECT_EQ(e.getCode(), CIM_ERR_FAILED);
                    ++detached;
                }
            }
        });
    }
    for (std::thread& provider : providers) {
        provider.join();
    }
    done = true;
    server.join();
    CIMOMHandleBackend::resetDefault();

    EXPECT_EQ(attached + detached, workers * callsPerWorker);
    EXPECT_EQ(received, attached);
}

} // namespace
