// The four disk instance providers over the demo array (38 disks, one absent, six firmware
// versions, one locate LED lit): what a client browsing the array sees.
#include "InstanceProviderTestSupport.h"

#include "KSV_DiskDrivePackageProvider.h"
#include "KSV_DiskDriveProvider.h"
#include "KSV_DiskSoftwareIdentityProvider.h"
#include "KSV_DiskStorageExtentProvider.h"

#include <set>

namespace ksv::test {
namespace {

struct DemoClass {
    const char* className;
    std::function<CIMInstanceProvider*()> create;
    size_t instanceCount;
};

void PrintTo(const DemoClass& demoClass, std::ostream* out) {
    *out << demoClass.className;
}

const DemoClass DEMO_CLASSES[] = {
    {"KSV_DiskDrive", [] { return new KSV_DiskDriveProvider; }, 37},
    {"KSV_DiskDrivePackage", [] { return new KSV_DiskDrivePackageProvider; }, 37},
    {"KSV_DiskSoftwareIdentity", [] { return new KSV_DiskSoftwareIdentityProvider; }, 6},
    {"KSV_DiskStorageExtent", [] { return new KSV_DiskStorageExtentProvider; }, 37},
};

class DemoArrayTest : public ::testing::TestWithParam<DemoClass> {
protected:
    ProviderHarness harness{"demo.json"};
    InitializedProvider<CIMInstanceProvider> provider{harness, GetParam().create()};
};

TEST_P(DemoArrayTest, EveryEnumeratedInstanceIsNamedAndFetchedAsEnumerated) {
    const Answer instances = enumerate(provider, GetParam().className);
    EXPECT_EQ(instances.instances.size(), GetParam().instanceCount);
    EXPECT_EQ(enumerateNames(provider, GetParam().className).paths, instances.paths);
    std::set<std::string> distinct;
    for (const CIMInstance& enumerated : instances.instances) {
        distinct.insert(render(enumerated.getPath()));
        const Answer fetched = get(provider, enumerated.getPath());
        ASSERT_EQ(fetched.instances.size(), 1u) << render(enumerated.getPath());
        EXPECT_TRUE(fetched.instances[0].identical(enumerated)) << render(enumerated.getPath());
        EXPECT_EQ(fetched.instances[0].getPath(), enumerated.getPath());
    }
    EXPECT_EQ(distinct.size(), instances.instances.size());
}

INSTANTIATE_TEST_SUITE_P(DiskInstanceProviders, DemoArrayTest, ::testing::ValuesIn(DEMO_CLASSES),
                         [](const ::testing::TestParamInfo<DemoClass>& info) {
                             return std::string(info.param.className);
                         });

TEST(DemoArrayLocateTest, LedRoundTripChangesWhatTheNextGetInstanceReports) {
    ProviderHarness harness{"demo.json"};
    InitializedProvider<KSV_DiskDriveProvider> provider(harness);
    CIMObjectPath lit;
    for (const CIMInstance& disk : enumerate(provider, "KSV_DiskDrive").instances) {
        if (render(disk, "LocationIndicator") == "LocationIndicator=2")
            lit = disk.getPath();
    }
    ASSERT_FALSE(lit.getKeyBindings().size() == 0) << "the demo array has a lit LED";
    for (const Uint16 location : {3, 2}) {
        CIMInstance modified("KSV_DiskDrive");
        modified.addProperty(CIMProperty("LocationIndicator", CIMValue(location)));
        RecordingResponseHandler handler;
        provider->modifyInstance(ProviderHarness::context(), lit, modified, false,
                                 CIMPropertyList(), handler);
        EXPECT_EQ(render(get(provider, lit).instances.at(0), "LocationIndicator"),
                  "LocationIndicator=" + std::to_string(location));
    }
}

} // namespace
} // namespace ksv::test
