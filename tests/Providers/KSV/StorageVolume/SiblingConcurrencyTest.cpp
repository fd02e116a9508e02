// The sibling providers under concurrent requests, as the CIM server's worker threads make
// them: the first reads of the array's identity race, and providers serve many reads at once.
#include "StorageVolume/KSV_StorageVolumeProvider.h"

#include "ProviderTestSupport.h"

namespace ksv::test {
namespace {

const int THREADS = 8;

TEST(SiblingConcurrency, ProvidersStartingAtOnceAgreeOnTheIdentity) {
    ProviderHarness harness;
    std::vector<std::string> systems(THREADS);
    std::vector<std::string> hosts(THREADS);
    onThreads(THREADS, [&](int i) {
        RunningProvider system(harness, volumeModuleProvider("KSV_StorageSystemProvider"),
                               "KSV_StorageSystem");
        RunningProvider pools(harness, volumeModuleProvider("KSV_StoragePoolProvider"),
                              "KSV_StoragePool");
        systems[i] = render(system.enumerateInstanceNames().delivered.at(0));
        hosts[i] = text(pools.enumerateInstanceNames().delivered.at(0).getHost());
    });
    for (int i = 0; i < THREADS; i++) {
        EXPECT_EQ(systems[i], "ksv-d7.example.net root/ksv:KSV_StorageSystem "
                              "CreationClassName=KSV_StorageSystem Name=KSV-D7");
        EXPECT_EQ(hosts[i], "ksv-d7.example.net");
    }
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
}

TEST(SiblingConcurrency, OneProviderServesManyReadsAtOnce) {
    ProviderHarness harness;
    RunningProvider volumes(harness, volumeModuleProvider("KSV_StorageVolumeProvider"),
                            "KSV_StorageVolume");
    RunningProvider pools(harness, volumeModuleProvider("KSV_StoragePoolProvider"),
                          "KSV_StoragePool");
    const CIMObjectPath volume = KSV_StorageVolumeProvider::createObjectPath(
        "60002AC00000000010D7000000001004", "KSV-D7", "ksv-d7.example.net");
    const Strings deliveredOnce = {"processing", "deliver", "complete"};
    std::vector<int> wrong(THREADS, 0);
    onThreads(THREADS, [&](int i) {
        for (int round = 0; round < 20; round++) {
            wrong[i] += volumes.enumerateInstances().delivered.size() != 10;
            wrong[i] += volumes.getInstance(volume).events() != deliveredOnce;
            wrong[i] += pools.enumerateInstances().delivered.size() != 4;
        }
    });
    for (int i = 0; i < THREADS; i++)
        EXPECT_EQ(wrong[i], 0) << "thread " << i;
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
}

} // namespace
} // namespace ksv::test
