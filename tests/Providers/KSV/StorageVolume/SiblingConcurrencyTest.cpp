// The sibling providers under concurrent requests, as the CIM server's worker threads make
// them: the first reads of the array's identity race, and providers serve many reads at once.
#include <Pegasus/Provider/CIMMethodProvider.h>

#include "StorageVolume/KSV_StoragePoolProvider.h"
#include "StorageVolume/KSV_StorageSystemProvider.h"
#include "StorageVolume/KSV_StorageVolumeProvider.h"

#include "SiblingProviderTestSupport.h"

#include <thread>

namespace ksv::test {
namespace {

const int THREADS = 8;

template <typename Work>
void onThreads(Work work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < THREADS; i++)
        threads.emplace_back(work, i);
    for (std::thread& thread : threads)
        thread.join();
}

TEST(SiblingConcurrency, ProvidersStartingAtOnceAgreeOnTheIdentity) {
    ProviderHarness harness;
    std::vector<std::string> systems(THREADS);
    std::vector<std::string> hosts(THREADS);
    onThreads([&](int i) {
        ModuleProvider<KSV_StorageSystemProvider> system(KSV_STORAGE_VOLUME_MODULE,
                                                         "KSV_StorageSystemProvider", harness);
        ModuleProvider<KSV_StoragePoolProvider> pools(KSV_STORAGE_VOLUME_MODULE,
                                                      "KSV_StoragePoolProvider", harness);
        systems[i] = render(enumerateNames(*system.operator->(), "KSV_StorageSystem").paths.at(0));
        hosts[i] =
            text(enumerateNames(*pools.operator->(), "KSV_StoragePool").paths.at(0).getHost());
    });
    for (int i = 0; i < THREADS; i++) {
        EXPECT_EQ(systems[i], "KSV_StorageSystem CreationClassName=KSV_StorageSystem Name=KSV-D7");
        EXPECT_EQ(hosts[i], "ksv-d7.example.net");
    }
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
}

TEST(SiblingConcurrency, OneProviderServesManyReadsAtOnce) {
    ProviderHarness harness;
    ModuleProvider<KSV_StorageVolumeProvider> volumes(KSV_STORAGE_VOLUME_MODULE,
                                                      "KSV_StorageVolumeProvider", harness);
    ModuleProvider<KSV_StoragePoolProvider> pools(KSV_STORAGE_VOLUME_MODULE,
                                                  "KSV_StoragePoolProvider", harness);
    const CIMObjectPath volume = KSV_StorageVolumeProvider::createObjectPath(
        "60002AC00000000010D7000000001004", "KSV-D7", "ksv-d7.example.net");
    std::vector<int> wrong(THREADS, 0);
    onThreads([&](int i) {
        for (int round = 0; round < 20; round++) {
            wrong[i] +=
                enumerate(*volumes.operator->(), "KSV_StorageVolume").instances.size() != 10;
            wrong[i] += get(*volumes.operator->(), volume).events != kDeliveredOnce;
            wrong[i] += enumerate(*pools.operator->(), "KSV_StoragePool").instances.size() != 4;
        }
    });
    for (int i = 0; i < THREADS; i++)
        EXPECT_EQ(wrong[i], 0) << "thread " << i;
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
}

} // namespace
} // namespace ksv::test
