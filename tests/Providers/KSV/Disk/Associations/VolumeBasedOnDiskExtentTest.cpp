// KSV_VolumeBasedOnDiskExtent: volumes and the disk extents holding their user data, read from
// the chunklet maps, with the chunklet range of each pair, the instance cap and the shared table
// of seen disks.
#include "AssociationTestSupport.h"

#include <sys/resource.h>

#include <cstdio>
#include <iterator>
#include <memory>
#include <optional>

namespace ksv::test {
namespace {

const char PROVIDER[] = "KSV_VolumeBasedOnDiskExtentProvider";

std::optional<Uint64> address(const CIMInstance& instance, const char* name) {
    const Uint32 index = instance.findProperty(name);
    if (index == PEG_NOT_FOUND || instance.getProperty(index).getValue().isNull())
        return std::nullopt;
    Uint64 value = 0;
    instance.getProperty(index).getValue().get(value);
    return value;
}

class VolumeBasedOnDiskExtentTest : public ::testing::Test {
protected:
    CIMObjectPath association(const std::string& deviceID, const std::string& volumeWwn) const {
        return paths.association("KSV_VolumeBasedOnDiskExtent", "Antecedent",
                                 paths.extent(deviceID), "Dependent", paths.volume(volumeWwn));
    }
    // Every lock was released, every map set obtained was released.
    static void expectBalancedResources() {
        EXPECT_EQ(callCount("hashtable_lock"), callCount("hashtable_unlock"));
        EXPECT_EQ(callCount("api_getMapsVVtoCh"), callCount("api_freeMapsVVtoCh"));
        EXPECT_EQ(callCount("api_getMapsPDtoVV"), callCount("api_freeMapsPDtoVV"));
    }

    ProviderHarness harness{TEST_MODEL};
    ModelPaths paths{harness};
    DiskProvider provider{harness, PROVIDER};
};

TEST_F(VolumeBasedOnDiskExtentTest, EachVolumeDiskPairOnceWithTheChunkletRangeOfAllRuns) {
    struct Pair {
        const char* disk;
        const char* volume;
        Uint64 start;
        Uint64 end;
    };
    // D1's range in VOL0 counts its chunklet 7 of the first run; D2, whose only chunklet of VOL0
    // is in the second run, and VOL4, which has no user data, are in no pair.
    const Pair expected[] = {{D0, VOL0, 2, 9},     {D1, VOL0, 4, 7},   {D0, VOL1, 0, 0},
                             {D4, VOL2, 0, 65535}, {D1, VOL3, 10, 10}, {D5, VOL3, 1, 1}};
    const std::vector<CIMInstance> instances = provider.enumerateInstances().delivered;
    ASSERT_EQ(instances.size(), std::size(expected));
    for (size_t i = 0; i < instances.size(); i++) {
        SCOPED_TRACE(i);
        EXPECT_TRUE(KSV_Common::matchObjectPath(instances[i].getPath(),
                                                association(expected[i].disk, expected[i].volume)));
        EXPECT_EQ(address(instances[i], "StartingAddress"), expected[i].start);
        EXPECT_EQ(address(instances[i], "EndingAddress"), expected[i].end);
    }
    EXPECT_TRUE(sameObjects(provider.enumerateInstanceNames().delivered, pathsOf(instances)));
    expectBalancedResources();
}

TEST_F(VolumeBasedOnDiskExtentTest, AddressesOnlyWhenThePropertyListAsksForThem) {
    struct Case {
        CIMPropertyList propertyList;
        bool addresses;
    };
    const Case cases[] = {{CIMPropertyList(), true},
                          {listOf({"ElementName"}), false},
                          {listOf({}), false},
                          {listOf({"endingaddress"}), true}};
    for (const Case& c : cases) {
        Query query;
        query.propertyList = c.propertyList;
        ksvsim::clearCalls();
        const std::vector<CIMObject> fromDisk =
            provider.references(paths.extent(D0), query).delivered;
        ASSERT_EQ(fromDisk.size(), 2u);
        const CIMInstance vol0(fromDisk.front());
        EXPECT_EQ(address(vol0, "EndingAddress").has_value(), c.addresses);
        // A disk reads the volumes' maps only for the addresses.
        EXPECT_EQ(callCount("api_getMapsVVtoCh"), c.addresses ? 1u : 0u);
        if (c.addresses) {
            EXPECT_EQ(address(vol0, "EndingAddress"), 9u);
        }
    }
}

TEST_F(VolumeBasedOnDiskExtentTest, EachSideIsReadFromItsOwnMaps) {
    EXPECT_TRUE(sameObjects(provider.associatorNames(paths.extent(D0)).delivered,
                            {paths.volume(VOL0), paths.volume(VOL1)}));
    // The disk's maps leave out the entry marked excluded; the volume's maps do not mark it.
    EXPECT_TRUE(
        sameObjects(provider.associatorNames(paths.extent(D1)).delivered, {paths.volume(VOL0)}));
    EXPECT_TRUE(sameObjects(provider.associatorNames(paths.volume(VOL3)).delivered,
                            {paths.extent(D1), paths.extent(D5)}));
    EXPECT_TRUE(sameObjects(provider.associatorNames(paths.volume(VOL0)).delivered,
                            {paths.extent(D0), paths.extent(D1)}));
    for (const CIMObjectPath& none :
         {paths.extent(D2), paths.extent(UNKNOWN_DISK), paths.volume(VOL4)})
        EXPECT_EQ(provider.associatorNames(none).events(), EMPTY_ANSWER);
    EXPECT_EQ(failureOf([&] { provider.associatorNames(pathOf("KSV_StorageVolume", {})); }),
              std::string("CIM_ERR_INVALID_PARAMETER: ") + PROVIDER + " DeviceID key not found.");
    expectBalancedResources();
}

TEST_F(VolumeBasedOnDiskExtentTest, FarInstancesComeFromTheServer) {
    DiskProvider extents(harness, "KSV_DiskStorageExtentProvider", "KSV_DiskStorageExtent");
    for (const CIMInstance& extent : extents.enumerateInstances().delivered)
        harness.putInstance(CIMNamespaceName("root/ksv"), extent);
    EXPECT_TRUE(sameObjects(pathsOf(provider.associators(paths.volume(VOL0)).delivered),
                            {paths.extent(D0), paths.extent(D1)}));
    EXPECT_TRUE(sameObjects(pathsOf(provider.associators(paths.extent(D0)).delivered),
                            {paths.volume(VOL0), paths.volume(VOL1)}));
}

TEST_F(VolumeBasedOnDiskExtentTest, ReferencesPutTheDiskFirstFromEitherEnd) {
    for (const CIMObjectPath& end : {paths.extent(D0), paths.volume(VOL1)}) {
        const std::vector<CIMObjectPath> names = provider.referenceNames(end).delivered;
        ASSERT_FALSE(names.empty());
        EXPECT_TRUE(
            joins(names.back(), "Antecedent", paths.extent(D0), "Dependent", paths.volume(VOL1)));
    }
    const std::vector<CIMObject> fromVolume = provider.references(paths.volume(VOL0)).delivered;
    ASSERT_EQ(fromVolume.size(), 2u);
    EXPECT_EQ(address(CIMInstance(fromVolume[1]), "StartingAddress"), 4u);
}

TEST_F(VolumeBasedOnDiskExtentTest, VolumeUnknownToTheServer) {
    const char* const line =
        "Exception thrown in _cimom.getProperty of StorageVolume, probably the volume does not "
        "exist\n";
    ASSERT_TRUE(harness.removeInstance(CIMNamespaceName("root/ksv"), paths.volume(VOL0)));
    EXPECT_TRUE(provider.associatorNames(paths.volume(VOL0)).delivered.empty());
    EXPECT_TRUE(provider.references(paths.volume(VOL0)).delivered.empty());
    const std::vector<std::string> traces = logTexts(4);
    EXPECT_EQ(std::count(traces.begin(), traces.end(), line), 2);

    // getInstance then searches all volumes; its match still finds the one pair.
    const std::vector<CIMInstance> found = provider.getInstance(association(D1, VOL0)).delivered;
    EXPECT_TRUE(sameObjects(pathsOf(found), {association(D1, VOL0)}));
    expectBalancedResources();
}

TEST_F(VolumeBasedOnDiskExtentTest, MapsThatCannotBeReadGiveNoAnswerAtAll) {
    ksvsim::forceResult("api_getMapsVVtoCh", API_E_NO_MEMORY);
    EXPECT_TRUE(provider.enumerateInstanceNames().events().empty());
    EXPECT_EQ(failureOf([&] { provider.getInstance(association(D0, VOL0)); }),
              std::string("CIM_ERR_NOT_FOUND: ") + PROVIDER + " CIM Object not found.");
    expectBalancedResources();
}

TEST_F(VolumeBasedOnDiskExtentTest, FailureWhileStreamingReleasesTableAndMaps) {
    RecordingInstanceHandler handler;
    handler.failingDelivery = 2;
    EXPECT_EQ(failureOf([&] { provider.enumerateInstances(handler); }),
              "CIM_ERR_FAILED: client went away");
    EXPECT_EQ(handler.delivered.size(), 1u);
    EXPECT_EQ(logTexts(2),
              std::vector<std::string>{
                  "<--KSV_VolumeBasedOnDiskExtentProvider::getOrDeliverInstances: exception "
                  "thrown\n"});
    expectBalancedResources();
    // The table was unlocked and emptied: the next enumeration sees every pair.
    ASSERT_EQ(callCount("hashtable_lock"), callCount("hashtable_unlock"));
    EXPECT_EQ(provider.enumerateInstanceNames().delivered.size(), 6u);
}

// The address-space soft limit for the scope. A limit of (2^32 + n) decimal megabytes reads as
// n megabytes in the cap's 32-bit arithmetic, yet is far above any address space in use.
class ScopedCap {
public:
    explicit ScopedCap(Uint64 megabytes) {
        getrlimit(RLIMIT_AS, &_saved);
        rlimit limit = _saved;
        limit.rlim_cur = ((Uint64(1) << 32) + megabytes) * 1000000;
        _applied = setrlimit(RLIMIT_AS, &limit) == 0;
    }
    ~ScopedCap() { setrlimit(RLIMIT_AS, &_saved); }
    bool applied() const { return _applied; }

private:
    rlimit _saved;
    bool _applied;
};

// One volume whose user data has chunklets on disks 0 to disks - 1 at the given chunklets each.
std::string modelWith(int disks, int chunkletsPerDisk) {
    std::ostringstream model;
    model << R"({"system": {"name": "KSV-T1", "id": 4100001, "hostName": "ksv-t1.example.net",)"
          << R"("ipv4": "192.0.2.41"}, "users": [{"name": "admin", "password": "pw"}],)"
          << R"("cages": [{"name": "c0", "type": 2, "magazines": [{"position": 0}]}], "disks": [)";
    for (int d = 0; d < disks; d++) {
        char wwn[17];
        snprintf(wwn, sizeof(wwn), "%016llX", 0x5000CCA000100000ULL + d);
        model << (d ? "," : "") << R"({"id": )" << d << R"(, "wwn": ")" << wwn
              << R"(", "cage": "c0", "magazine": 0, "position": )" << d << "}";
    }
    model << R"(], "volumes": [{"id": 0, "name": "wide", )"
          << R"("wwn": "60002AC0000000000000000000000B00", "runs": [[], [], [)";
    for (int d = 0; d < disks; d++) {
        for (int c = 0; c < chunkletsPerDisk; c++)
            model << (d || c ? "," : "") << "[" << d << "," << c << "]";
    }
    model << "]]}]}";
    return model.str();
}

class InstanceCapTest : public VolumeBasedOnDiskExtentTest {
protected:
    // The provider under a cap of 110 instances, over one volume of the given layout.
    std::unique_ptr<RunningProvider> cappedOver(int disks, int chunkletsPerDisk) {
        const auto error = ksvsim::loadModelText(modelWith(disks, chunkletsPerDisk));
        EXPECT_FALSE(error.has_value()) << (error ? error->describe() : "");
        ScopedCap cap(1);
        EXPECT_TRUE(cap.applied()) << "needs an unlimited hard address-space limit";
        auto capped = std::make_unique<DiskProvider>(harness, PROVIDER);
        const Strings traces = logTexts(4);
        EXPECT_NE(
            std::find(traces.begin(), traces.end(), "soft limit = 1, maxInstScale factor = 110\n"),
            traces.end());
        ksvsim::clearCapturedLog();
        ksvsim::clearCalls();
        return capped;
    }
    // Whether the table's lock was released too, so that a test stops before it would wait for
    // it forever.
    bool refusedForTheCap(const std::string& exceptionLine) const {
        EXPECT_EQ(logTexts(2), (std::vector<std::string>{
                                   "# of KSV_VolumeBasedOnDiskExtent instances exceed 110, quit\n",
                                   exceptionLine}));
        expectBalancedResources();
        EXPECT_EQ(arrayCalls().back(), "hashtable_unlock()");
        return callCount("hashtable_lock") == 1 && callCount("hashtable_unlock") == 1;
    }
};

TEST_F(InstanceCapTest, CapIsReachedButNotPassed) {
    auto capped = cappedOver(110, 1);
    EXPECT_EQ(capped->enumerateInstanceNames().delivered.size(), 110u);
    EXPECT_EQ(capped->enumerateInstances().delivered.size(), 110u);
    expectBalancedResources();
}

TEST_F(InstanceCapTest, OnePairMoreFailsBeforeAnythingIsDelivered) {
    auto capped = cappedOver(111, 1);
    EXPECT_EQ(failureOf([&] { capped->enumerateInstanceNames(); }),
              std::string("CIM_ERR_FAILED: ") + PROVIDER +
                  "::enumerateInstanceNames - Operation failed: Response too big");
    ASSERT_TRUE(refusedForTheCap(std::string("<--") + PROVIDER +
                                 "::getOrDeliverInstanceNames: exception thrown\n"));

    ksvsim::clearCapturedLog();
    ksvsim::clearCalls();
    RecordingInstanceHandler instances;
    EXPECT_EQ(failureOf([&] { capped->enumerateInstances(instances); }),
              std::string("CIM_ERR_FAILED: ") + PROVIDER +
                  "::enumerateInstances - Operation failed: Response too big");
    EXPECT_TRUE(instances.events().empty());
    ASSERT_TRUE(refusedForTheCap(std::string("<--") + PROVIDER +
                                 "::getOrDeliverInstances: exception thrown\n"));

    // The table was left empty: a smaller array is served in full.
    ASSERT_FALSE(ksvsim::loadModelText(modelWith(3, 1)).has_value());
    EXPECT_EQ(capped->enumerateInstanceNames().delivered.size(), 3u);
}

TEST_F(InstanceCapTest, NarrowedToOneDiskEveryChunkletCounts) {
    const CIMObjectPath pair = paths.association("KSV_VolumeBasedOnDiskExtent", "Antecedent",
                                                 paths.extent("5000CCA000100000-id-0"), "Dependent",
                                                 paths.volume("60002AC0000000000000000000000B00"));
    {
        auto capped = cappedOver(1, 110);
        EXPECT_EQ(capped->getInstance(pair).delivered.size(), 1u);
    }
    auto capped = cappedOver(1, 111);
    EXPECT_EQ(failureOf([&] { capped->getInstance(pair); }), "CIM_ERR_FAILED: Response too big");
    expectBalancedResources();
}

} // namespace
} // namespace ksv::test
