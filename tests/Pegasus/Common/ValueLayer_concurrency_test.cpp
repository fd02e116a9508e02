// The value types keep no hidden shared state: threads may read one shared
// object and build, copy and change their own objects at the same time.
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMObjectPath.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

const int THREADS = 4;
const int ROUNDS = 300;

template <class Work>
int failuresAcrossThreads(Work work) {
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < THREADS; t++) {
        threads.emplace_back([&failures, &work, t] {
            for (int round = 0; round < ROUNDS; round++) {
                if (!work(t, round))
                    failures++;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    return failures.load();
}

TEST(ValueLayerConcurrency, SharedPathIsReadWhileThreadsEditTheirCopies) {
    const CIMObjectPath shared(String("//h/root/ksv:KSV_SystemDisk.GroupComponent="
                                      "\"//h/root/ksv:KSV_StorageSystem.Name=\\\"S1\\\"\","
                                      "PartComponent=\"KSV_DiskDrive.DeviceID=\\\"X\\\"\""));
    const String sharedText = shared.toString();
    const int failures = failuresAcrossThreads([&](int thread, int round) {
        CIMObjectPath mine(shared);
        Array<CIMKeyBinding> keys = mine.getKeyBindings();
        const std::string reference =
            "KSV_DiskDrive.DeviceID=\"" + std::to_string(thread * 1000 + round) + "\"";
        keys[1].setValue(reference.c_str());
        mine.setKeyBindings(keys);
        const bool sharedIntact =
            shared.toString() == sharedText && shared == CIMObjectPath(sharedText);
        const bool mineParsesBack = CIMObjectPath(mine.toString()) == mine && !(mine == shared);
        return sharedIntact && mineParsesBack;
    });
    EXPECT_EQ(0, failures);
}

TEST(ValueLayerConcurrency, DateTimesAndNamesAreBuiltConcurrently) {
    const CIMDateTime epoch(String("19700101000000.000000+000"));
    const int failures = failuresAcrossThreads([&](int thread, int round) {
        const CIMDateTime later =
            epoch + CIMDateTime(Uint64(thread * ROUNDS + round) * 1000000, true);
        const CIMDateTime reparsed(later.toString());
        const CIMName name(String("Name_") + String(std::to_string(round).c_str()));
        return reparsed == later && name == CIMName(name.getString()) &&
               CIMDateTime::getCurrentDateTime() > epoch;
    });
    EXPECT_EQ(0, failures);
}

} // namespace
