// Every association over the demo array, seen from every side: each enumerated association is
// answered by getInstance, is among the references of both its ends (as instances and as names),
// and each end names the other among its associators. Where the design is one-sided on purpose, the
// test says so.
#include "AssociationTestSupport.h"

#include <map>

namespace ksv::test {
namespace {

const char* const PROVIDERS[] = {"KSV_SystemDiskProvider",
                                 "KSV_SystemExtentProvider",
                                 "KSV_DiskPackageRealizesProvider",
                                 "KSV_DiskSoftwareProvider",
                                 "KSV_DiskPresentProvider",
                                 "KSV_MagazineContainerProvider",
                                 "KSV_AssociatedPrimordialDisksProvider",
                                 "KSV_VolumeBasedOnDiskExtentProvider"};

// The demo's volume entry marked excluded: the disk's own maps leave the volume out.
const char EXCLUDED_DISK[] = "5000C5003BD701A9-id-25";
const char EXCLUDED_VOLUME[] = "60002AC00000000010D7000000001004";

// The two ends of an association path, by its two keys.
std::vector<std::pair<CIMObjectPath, CIMObjectPath>> endsOf(const CIMObjectPath& association) {
    const Array<CIMKeyBinding>& keys = association.getKeyBindings();
    const CIMObjectPath first(keys[0].getValue());
    const CIMObjectPath second(keys[1].getValue());
    return {{first, second}, {second, first}};
}

// Ends that by design do not answer for their associations.
bool answersForItsAssociations(const CIMObjectPath& end, const CIMObjectPath& farEnd) {
    // Magazines of bay cages are drive bays, which the container association does not serve.
    if (end.getClassName().equal("KSV_DiskBay"))
        return false;
    return !(KSV_Common::getStringProperty(end, "DeviceID") == EXCLUDED_DISK &&
             KSV_Common::getStringProperty(farEnd, "DeviceID") == EXCLUDED_VOLUME);
}

class DemoConsistencyTest : public ::testing::TestWithParam<const char*> {
protected:
    const std::vector<CIMObjectPath>& referenceNamesOf(const CIMObjectPath& end) {
        auto& cached = _references[text(end.toString())];
        if (cached.empty())
            cached = provider.referenceNames(end).delivered;
        return cached;
    }
    const std::vector<CIMObjectPath>& referencesOf(const CIMObjectPath& end) {
        auto& cached = _referenceInstances[text(end.toString())];
        if (cached.empty())
            cached = pathsOf(provider.references(end).delivered);
        return cached;
    }
    const std::vector<CIMObjectPath>& associatorNamesOf(const CIMObjectPath& end) {
        auto& cached = _associators[text(end.toString())];
        if (cached.empty())
            cached = provider.associatorNames(end).delivered;
        return cached;
    }

    ProviderHarness harness{"demo.json"};
    DiskProvider provider{harness, GetParam()};

private:
    std::map<std::string, std::vector<CIMObjectPath>> _references;
    std::map<std::string, std::vector<CIMObjectPath>> _referenceInstances;
    std::map<std::string, std::vector<CIMObjectPath>> _associators;
};

TEST_P(DemoConsistencyTest, EveryAssociationIsAnsweredFromBothEnds) {
    const std::vector<CIMObjectPath> associations = provider.enumerateInstanceNames().delivered;
    ASSERT_FALSE(associations.empty());
    EXPECT_TRUE(sameObjects(pathsOf(provider.enumerateInstances().delivered), associations));
    for (const CIMObjectPath& association : associations) {
        SCOPED_TRACE(text(association.toString()));
        EXPECT_TRUE(
            sameObjects(pathsOf(provider.getInstance(association).delivered), {association}));
        for (const auto& [end, farEnd] : endsOf(association)) {
            if (!answersForItsAssociations(end, farEnd))
                continue;
            SCOPED_TRACE(text(end.toString()));
            EXPECT_TRUE(contains(referenceNamesOf(end), association));
            EXPECT_TRUE(contains(associatorNamesOf(end), farEnd));
            EXPECT_TRUE(sameObjects(referencesOf(end), referenceNamesOf(end)));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryAssociation, DemoConsistencyTest, ::testing::ValuesIn(PROVIDERS),
                         [](const auto& info) { return std::string(info.param); });

} // namespace
} // namespace ksv::test
