// Providers cache one class definition and build instances from it on many threads at once,
// and the value types keep no hidden shared state: threads read one shared object while they
// build, copy and change their own.

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMDateTime.h>

#include "CommonTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

PEGASUS_USING_PEGASUS;

namespace {

constexpr int threadCount = 8;
constexpr int roundsPerThread = 300;

// How many rounds, on all threads together, work(thread, round) found wrong.
template <class Work>
int failuresAcrossThreads(Work work) {
    std::atomic<int> failures{0};
    onThreads(threadCount, [&](int t) {
        for (int round = 0; round < roundsPerThread; round++)
            failures += work(t, round) ? 0 : 1;
    });
    return failures.load();
}

CIMClass cachedDiskClass() {
    CIMClass disk(CIMName("KSV_DiskDrive"));
    CIMProperty deviceId(CIMName("DeviceID"), CIMValue(String("")));
    deviceId.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(true)));
    disk.addProperty(deviceId);
    disk.addProperty(CIMProperty(CIMName("Speed"), CIMValue(Uint64(15000))));
    // Enough that lookups go through the index that the first of them builds.
    for (Uint32 i = 0; i < 12; i++)
        disk.addProperty(
            CIMProperty(CIMName(String("Spare") + CIMValue(i).toString()), CIMValue(i)));
    return disk;
}

TEST(ObjectModelConcurrency, InstancesBuiltFromOneClassOnManyThreadsStayApart) {
    const CIMClass disk = cachedDiskClass();
    EXPECT_EQ(0, failuresAcrossThreads([&](int t, int round) {
                  CIMInstance instance =
                      disk.buildInstance(round % 2 == 0, true, CIMPropertyList());
                  const Uint64 speed = Uint64(t * 100000 + round);
                  const Uint32 at = instance.findProperty(CIMName("SPEED"));
                  instance.getProperty(at).setValue(CIMValue(speed));
                  Uint64 readBack = 0;
                  instance.getProperty(at).getValue().get(readBack);
                  Array<CIMName> keys;
                  disk.getKeyNames(keys);
                  return readBack == speed && keys.size() == 1;
              }));
    EXPECT_EQ(disk.getProperty(1).getValue(), CIMValue(Uint64(15000)));
}

// Each thread files the same qualifier into properties of its own; the
// qualifier must count every container so that it stays unrenamable until
// the last one is gone.
TEST(ObjectModelConcurrency, SharedQualifierCountsEveryContainer) {
    CIMQualifier units(CIMName("Units"), CIMValue(String("RPM")));
    std::vector<std::vector<CIMProperty>> holders(threadCount);
    onThreads(threadCount, [&](int t) {
        for (int round = 0; round < roundsPerThread; round++) {
            CIMProperty property(CIMName("Speed"), CIMValue(Uint64(round)));
            property.addQualifier(units);
            holders[t].push_back(property);
        }
    });
    EXPECT_THROW(units.setName(CIMName("Unit")), Exception);
    onThreads(threadCount, [&](int t) { holders[t].clear(); });
    EXPECT_NO_THROW(units.setName(CIMName("Unit")));
}

TEST(ObjectModelConcurrency, ValuesCopiedAcrossThreadsKeepTheirContents) {
    const CIMValue shared(Array<String>(64, String("port")));
    EXPECT_EQ(0, failuresAcrossThreads([&](int, int round) {
                  CIMValue copy = shared;
                  Array<String> out;
                  copy.get(out);
                  copy.set(Uint32(round));
                  return out.size() == 64 && copy == CIMValue(Uint32(round));
              }));
    EXPECT_EQ(shared.getArraySize(), 64u);
}

TEST(ValueLayerConcurrency, SharedPathIsReadWhileThreadsEditTheirCopies) {
    const CIMObjectPath shared(String("//h/root/ksv:KSV_SystemDisk.GroupComponent="
                                      "\"//h/root/ksv:KSV_StorageSystem.Name=\\\"S1\\\"\","
                                      "PartComponent=\"KSV_DiskDrive.DeviceID=\\\"X\\\"\""));
    const String sharedText = shared.toString();
    EXPECT_EQ(0, failuresAcrossThreads([&](int thread, int round) {
                  CIMObjectPath mine(shared);
                  Array<CIMKeyBinding> keys = mine.getKeyBindings();
                  const std::string reference =
                      "KSV_DiskDrive.DeviceID=\"" + std::to_string(thread * 1000 + round) + "\"";
                  keys[1].setValue(reference.c_str());
                  mine.setKeyBindings(keys);
                  const bool sharedIntact =
                      shared.toString() == sharedText && shared == CIMObjectPath(sharedText);
                  return sharedIntact && CIMObjectPath(mine.toString()) == mine &&
                         !(mine == shared);
              }));
}

TEST(ValueLayerConcurrency, DateTimesAndNamesAreBuiltConcurrently) {
    const CIMDateTime epoch(String("19700101000000.000000+000"));
    EXPECT_EQ(0, failuresAcrossThreads([&](int thread, int round) {
                  const CIMDateTime later =
                      epoch + CIMDateTime(Uint64(thread * roundsPerThread + round) * 1000000, true);
                  const CIMName name(String("Name_") + String(std::to_string(round).c_str()));
                  return CIMDateTime(later.toString()) == later &&
                         name == CIMName(name.getString()) &&
                         CIMDateTime::getCurrentDateTime() > epoch;
              }));
}

// Names made from one literal share its text, which outlives the threads that made them.
TEST(ValueLayerConcurrency, NamesMadeFromOneLiteralOutliveTheirThreads) {
    std::vector<std::vector<CIMName>> made(threadCount, std::vector<CIMName>(roundsPerThread));
    onThreads(threadCount, [&](int t) {
        for (CIMName& name : made[t])
            name = CIMName("OperationalStatus");
    });
    for (const std::vector<CIMName>& names : made)
        EXPECT_EQ(utf8(names.back().getString()), "OperationalStatus");
}

} // namespace
