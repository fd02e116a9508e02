// KSV_AssociatedPrimordialDisks: the primordial pool and the extents of the usable disks, streamed
// to the handler as they are built.
#include "AssociationTestSupport.h"

#include <ksvapi_sim.h>

namespace ksv::test {
namespace {

const char PRIMORDIAL[] = "QUANOR:primordial";

class PrimordialDisksTest : public ::testing::Test {
protected:
    CIMObjectPath association(const String& deviceID, const String& poolID = PRIMORDIAL) const {
        return paths.association("KSV_AssociatedPrimordialDisks", "GroupComponent",
                                 paths.pool(poolID), "PartComponent", paths.extent(deviceID));
    }
    std::string exceptionLine(unsigned assembled) const {
        return "<--KSV_AssociatedPrimordialDisksProvider::_getInstances: exception thrown while "
               "building instances, # of instances assembled so far = " +
               std::to_string(assembled) + "\n";
    }

    ProviderHarness harness{TEST_MODEL};
    ModelPaths paths{harness};
    RunningProvider provider{harness, "KSV_AssociatedPrimordialDisksProvider"};
};

TEST_F(PrimordialDisksTest, PoolHoldsTheExtentsOfPresentDisksUpToHealth19) {
    // Health 19 (D1) is usable, 20 (D2) is not; D4's health is fine, only its extent status
    // is not, which the pool's own walk does not read.
    const std::vector<CIMObjectPath> extents =
        provider.associatorNames(paths.pool(PRIMORDIAL)).delivered;
    EXPECT_TRUE(sameObjects(
        extents, {paths.extent(D0), paths.extent(D1), paths.extent(D4), paths.extent(D5)}));
    const std::vector<CIMObject> instances = provider.associators(paths.pool(PRIMORDIAL)).delivered;
    EXPECT_TRUE(sameObjects(pathsOf(instances), extents));

    // Only the primordial pool, named exactly, has components.
    EXPECT_TRUE(provider.associatorNames(paths.pool("QUANOR:Primordial")).delivered.empty());
    EXPECT_TRUE(provider.associatorNames(paths.pool("QUANOR:cpg0")).delivered.empty());
}

TEST_F(PrimordialDisksTest, UsableExtentNamesThePoolOthersNothing) {
    EXPECT_TRUE(sameObjects(pathsOf(provider.associators(paths.extent(D1)).delivered),
                            {paths.pool(PRIMORDIAL)}));
    for (const char* unusable : {D2, D3, UNKNOWN_DISK}) {
        const RecordingObjectPathHandler answer = provider.associatorNames(paths.extent(unusable));
        EXPECT_EQ(answer.events(), (std::vector<std::string>{"processing", "complete"}));
    }
    const std::vector<CIMObjectPath> names = provider.referenceNames(paths.extent(D0)).delivered;
    ASSERT_EQ(names.size(), 1u);
    EXPECT_EQ(keyNames(names[0]), (std::vector<std::string>{"GroupComponent", "PartComponent"}));
    EXPECT_TRUE(KSV_Common::matchObjectPath(names[0], association(D0)));
}

TEST_F(PrimordialDisksTest, MissingKeysAreInvalidParameters) {
    EXPECT_EQ(
        failureOf([&] { provider.associators(ModelPaths::path("KSV_DiskStorageExtent", {})); }),
        std::make_pair(CIM_ERR_INVALID_PARAMETER,
                       std::string("KSV_AssociatedPrimordialDisksProvider DeviceID key not "
                                   "found.")));
    EXPECT_EQ(failureOf([&] { provider.referenceNames(ModelPaths::path("KSV_StoragePool", {})); }),
              std::make_pair(CIM_ERR_INVALID_PARAMETER,
                             std::string("KSV_AssociatedPrimordialDisksProvider InstanceID key "
                                         "not found.")));
}

TEST_F(PrimordialDisksTest, EnumerationStreamsTheUsableExtentsOfTheDiskList) {
    // The library's list leaves out D2 and D4, whose extents are unusable.
    const RecordingInstanceHandler instances = provider.enumerateInstances();
    EXPECT_TRUE(sameObjects(pathsOf(instances.delivered),
                            {association(D0), association(D1), association(D5)}));
    EXPECT_EQ(instances.events(), (std::vector<std::string>{"processing", "deliver", "deliver",
                                                            "deliver", "complete"}));
    EXPECT_EQ(provider.enumerateInstanceNames().delivered.size(), 3u);

    EXPECT_TRUE(
        sameObjects(pathsOf(provider.getInstance(association(D5)).delivered), {association(D5)}));
    const std::string notFound = "KSV_AssociatedPrimordialDisksProvider CIM Object not found.";
    for (const CIMObjectPath& missing : {association(D4), association(D0, "QUANOR:cpg0")}) {
        EXPECT_EQ(failureOf([&] { provider.getInstance(missing); }),
                  std::make_pair(CIM_ERR_NOT_FOUND, notFound));
    }
}

TEST_F(PrimordialDisksTest, ListTooBigForMemoryIsResponseTooBig) {
    for (const int code : {API_E_NO_MEMORY, API_E_LIST_TOO_BIG}) {
        SCOPED_TRACE(code);
        harness.clearLog();
        harness.clearArrayCalls();
        ksvsim::forceResult("getDiskDeviceIDs", code, 2);
        const auto tooBig = std::make_pair(CIM_ERR_FAILED, std::string("Response too big"));
        EXPECT_EQ(failureOf([&] { provider.enumerateInstances(); }), tooBig);
        EXPECT_EQ(failureOf([&] { provider.enumerateInstanceNames(); }), tooBig);
        EXPECT_EQ(harness.logTexts(2),
                  (std::vector<std::string>{exceptionLine(0), exceptionLine(0)}));
        EXPECT_EQ(callCount(harness, "freeDiskDeviceIDs"), callCount(harness, "getDiskDeviceIDs"));
    }
    // Any other failure is an empty answer.
    ksvsim::forceResult("getDiskDeviceIDs", API_E_NOT_FOUND, 1);
    const RecordingInstanceHandler empty = provider.enumerateInstances();
    EXPECT_EQ(empty.events(), (std::vector<std::string>{"processing", "complete"}));
}

TEST_F(PrimordialDisksTest, FailureWhileStreamingNamesWhatWasDelivered) {
    FailingInstanceHandler handler(3);
    EXPECT_EQ(failureOf([&] { provider.enumerateInstances(handler); }),
              std::make_pair(CIM_ERR_FAILED, std::string("client went away")));
    EXPECT_EQ(handler.delivered.size(), 2u);
    EXPECT_FALSE(handler.completeCalled());
    EXPECT_EQ(harness.logTexts(2), std::vector<std::string>{exceptionLine(2)});
    EXPECT_EQ(callCount(harness, "freeDiskDeviceIDs"), 1u);
}

} // namespace
} // namespace ksv::test
