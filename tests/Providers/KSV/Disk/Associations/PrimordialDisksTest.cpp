// KSV_AssociatedPrimordialDisks: the primordial pool and the extents of the usable disks, streamed
// to the handler as they are built.
#include "AssociationTestSupport.h"

namespace ksv::test {
namespace {

const char PRIMORDIAL[] = "QUANOR:primordial";
const char PROVIDER[] = "KSV_AssociatedPrimordialDisksProvider";

class PrimordialDisksTest : public ::testing::Test {
protected:
    CIMObjectPath association(const std::string& deviceID,
                              const std::string& poolID = PRIMORDIAL) const {
        return paths.association("KSV_AssociatedPrimordialDisks", "GroupComponent",
                                 paths.pool(poolID), "PartComponent", paths.extent(deviceID));
    }
    static std::string exceptionLine(unsigned assembled) {
        return std::string("<--") + PROVIDER +
               "::_getInstances: exception thrown while building instances, # of instances "
               "assembled so far = " +
               std::to_string(assembled) + "\n";
    }

    ProviderHarness harness{TEST_MODEL};
    ModelPaths paths{harness};
    DiskProvider provider{harness, PROVIDER};
};

TEST_F(PrimordialDisksTest, PoolHoldsThePresentDisksUpToHealth19AndTheyNameIt) {
    // Health 19 (D1) is usable, 20 (D2) is not; D4's health is fine, only its extent status
    // is not, which the pool's own walk does not read.
    const std::vector<CIMObjectPath> extents =
        provider.associatorNames(paths.pool(PRIMORDIAL)).delivered;
    EXPECT_TRUE(sameObjects(
        extents, {paths.extent(D0), paths.extent(D1), paths.extent(D4), paths.extent(D5)}));
    EXPECT_TRUE(
        sameObjects(pathsOf(provider.associators(paths.pool(PRIMORDIAL)).delivered), extents));
    // Only the primordial pool, named exactly, has components.
    EXPECT_TRUE(provider.associatorNames(paths.pool("QUANOR:Primordial")).delivered.empty());
    EXPECT_TRUE(provider.associatorNames(paths.pool("QUANOR:cpg0")).delivered.empty());

    EXPECT_TRUE(sameObjects(pathsOf(provider.associators(paths.extent(D1)).delivered),
                            {paths.pool(PRIMORDIAL)}));
    for (const char* unusable : {D2, D3, UNKNOWN_DISK})
        EXPECT_EQ(provider.associatorNames(paths.extent(unusable)).events(), EMPTY_ANSWER);
    const std::vector<CIMObjectPath> names = provider.referenceNames(paths.extent(D0)).delivered;
    ASSERT_EQ(names.size(), 1u);
    EXPECT_TRUE(joins(names[0], "GroupComponent", paths.pool(PRIMORDIAL), "PartComponent",
                      paths.extent(D0)));

    const std::string invalid = std::string("CIM_ERR_INVALID_PARAMETER: ") + PROVIDER;
    EXPECT_EQ(failureOf([&] { provider.associators(pathOf("KSV_DiskStorageExtent", {})); }),
              invalid + " DeviceID key not found.");
    EXPECT_EQ(failureOf([&] { provider.referenceNames(pathOf("KSV_StoragePool", {})); }),
              invalid + " InstanceID key not found.");
}

TEST_F(PrimordialDisksTest, EnumerationStreamsTheUsableExtentsOfTheDiskList) {
    // The library's list leaves out D2 and D4, whose extents are unusable.
    const RecordingInstanceHandler instances = provider.enumerateInstances();
    EXPECT_TRUE(sameObjects(pathsOf(instances.delivered),
                            {association(D0), association(D1), association(D5)}));
    EXPECT_EQ(instances.events(),
              (Strings{"processing", "deliver", "deliver", "deliver", "complete"}));
    EXPECT_EQ(provider.enumerateInstanceNames().delivered.size(), 3u);

    EXPECT_TRUE(
        sameObjects(pathsOf(provider.getInstance(association(D5)).delivered), {association(D5)}));
    for (const CIMObjectPath& missing : {association(D4), association(D0, "QUANOR:cpg0")}) {
        EXPECT_EQ(failureOf([&] { provider.getInstance(missing); }),
                  std::string("CIM_ERR_NOT_FOUND: ") + PROVIDER + " CIM Object not found.");
    }
}

TEST_F(PrimordialDisksTest, ListTooBigForMemoryIsResponseTooBigAndOtherFailuresAnEmptyAnswer) {
    for (const int code : {API_E_NO_MEMORY, API_E_LIST_TOO_BIG}) {
        SCOPED_TRACE(code);
        ksvsim::clearCapturedLog();
        ksvsim::clearCalls();
        ksvsim::forceResult("getDiskDeviceIDs", code, 2);
        EXPECT_EQ(failureOf([&] { provider.enumerateInstances(); }),
                  "CIM_ERR_FAILED: Response too big");
        EXPECT_EQ(failureOf([&] { provider.enumerateInstanceNames(); }),
                  "CIM_ERR_FAILED: Response too big");
        EXPECT_EQ(logTexts(2), (Strings{exceptionLine(0), exceptionLine(0)}));
        EXPECT_EQ(callCount("freeDiskDeviceIDs"), callCount("getDiskDeviceIDs"));
    }
    ksvsim::forceResult("getDiskDeviceIDs", API_E_NOT_FOUND, 1);
    EXPECT_EQ(provider.enumerateInstances().events(), EMPTY_ANSWER);

    // A failure while streaming names what was delivered.
    ksvsim::clearCapturedLog();
    ksvsim::clearCalls();
    RecordingInstanceHandler handler;
    handler.failingDelivery = 3;
    EXPECT_EQ(failureOf([&] { provider.enumerateInstances(handler); }),
              "CIM_ERR_FAILED: client went away");
    EXPECT_EQ(handler.events(), (Strings{"processing", "deliver", "deliver"}));
    EXPECT_EQ(logTexts(2), Strings{exceptionLine(2)});
    EXPECT_EQ(callCount("freeDiskDeviceIDs"), 1u);
}

} // namespace
} // namespace ksv::test
