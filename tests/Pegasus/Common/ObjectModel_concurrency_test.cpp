// Providers cache one class definition and build instances from it on many
// threads at once; the class and the members it shares must stay intact.

#include <Pegasus/Common/CIMClass.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

PEGASUS_USING_PEGASUS;

namespace {

constexpr int threadCount = 8;
constexpr int roundsPerThread = 300;

CIMClass cachedDiskClass() {
    CIMClass disk(CIMName("KSV_DiskDrive"));
    CIMProperty deviceId(CIMName("DeviceID"), CIMValue(String("")));
    deviceId.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(true)));
    disk.addProperty(deviceId);
    disk.addProperty(CIMProperty(CIMName("Speed"), CIMValue(Uint64(15000))));
    return disk;
}

template <class Work>
void onThreads(Work work) {
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; t++)
        threads.emplace_back(work, t);
    for (std::thread& thread : threads)
        thread.join();
}

TEST(ObjectModelConcurrency, InstancesBuiltFromOneClassOnManyThreadsStayApart) {
    const CIMClass disk = cachedDiskClass();
    std::vector<int> mismatches(threadCount, 0);
    onThreads([&](int t) {
        for (int round = 0; round < roundsPerThread; round++) {
            CIMInstance instance = disk.buildInstance(round % 2 == 0, true, CIMPropertyList());
            const Uint64 speed = Uint64(t * 100000 + round);
            instance.getProperty(1).setValue(CIMValue(speed));
            Uint64 readBack = 0;
            instance.getProperty(1).getValue().get(readBack);
            Array<CIMName> keys;
            disk.getKeyNames(keys);
            if (readBack != speed || keys.size() != 1)
                mismatches[t]++;
        }
    });
    for (int t = 0; t < threadCount; t++)
        EXPECT_EQ(mismatches[t], 0) << "thread " << t;
    EXPECT_EQ(disk.getProperty(1).getValue(), CIMValue(Uint64(15000)));
}

// Each thread files the same qualifier into properties of its own; the
// qualifier must count every container so that it stays unrenamable until
// the last one is gone.
TEST(ObjectModelConcurrency, SharedQualifierCountsEveryContainer) {
    CIMQualifier units(CIMName("Units"), CIMValue(String("RPM")));
    std::vector<std::vector<CIMProperty>> holders(threadCount);
    onThreads([&](int t) {
        for (int round = 0; round < roundsPerThread; round++) {
            CIMProperty property(CIMName("Speed"), CIMValue(Uint64(round)));
            property.addQualifier(units);
            holders[t].push_back(property);
        }
    });
    EXPECT_THROW(units.setName(CIMName("Unit")), Exception);
    onThreads([&](int t) { holders[t].clear(); });
    EXPECT_NO_THROW(units.setName(CIMName("Unit")));
}

TEST(ObjectModelConcurrency, ValuesCopiedAcrossThreadsKeepTheirContents) {
    Array<String> names;
    for (int i = 0; i < 64; i++)
        names.append(String("port"));
    const CIMValue shared(names);
    std::vector<int> mismatches(threadCount, 0);
    onThreads([&](int t) {
        for (int round = 0; round < roundsPerThread; round++) {
            CIMValue copy = shared;
            Array<String> out;
            copy.get(out);
            copy.set(Uint32(round));
            if (out.size() != 64 || !(copy == CIMValue(Uint32(round))))
                mismatches[t]++;
        }
    });
    for (int t = 0; t < threadCount; t++)
        EXPECT_EQ(mismatches[t], 0) << "thread " << t;
    EXPECT_EQ(shared.getArraySize(), 64u);
}

} // namespace
