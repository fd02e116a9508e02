// The four disk instance providers over the demo array (38 disks, one absent, six firmware
// versions): what a client browsing the array sees.
#include "InstanceProviderTestSupport.h"

#include <set>

namespace ksv::test {
namespace {

struct DemoClass {
    const char* provider;
    const char* className;
    size_t instanceCount;
};

void PrintTo(const DemoClass& demoClass, std::ostream* out) {
    *out << demoClass.className;
}

const DemoClass DEMO_CLASSES[] = {
    {"KSV_DiskDriveProvider", "KSV_DiskDrive", 37},
    {"KSV_DiskDrivePackageProvider", "KSV_DiskDrivePackage", 37},
    {"KSV_DiskSoftwareIdentityProvider", "KSV_DiskSoftwareIdentity", 6},
    {"KSV_DiskStorageExtentProvider", "KSV_DiskStorageExtent", 37},
};

class DemoArrayTest : public ::testing::TestWithParam<DemoClass> {
protected:
    ProviderHarness harness{"demo.json"};
    DiskProvider provider{harness, GetParam().provider, GetParam().className};
};

TEST_P(DemoArrayTest, EveryEnumeratedInstanceIsNamedAndFetchedAsEnumerated) {
    const std::vector<CIMInstance> instances = provider.enumerateInstances().delivered;
    EXPECT_EQ(instances.size(), GetParam().instanceCount);
    EXPECT_EQ(provider.enumerateInstanceNames().delivered, pathsOf(instances));
    std::set<std::string> distinct;
    for (const CIMInstance& enumerated : instances) {
        distinct.insert(render(enumerated.getPath()));
        const std::vector<CIMInstance> fetched =
            provider.getInstance(enumerated.getPath()).delivered;
        ASSERT_EQ(fetched.size(), 1u) << render(enumerated.getPath());
        EXPECT_TRUE(fetched[0].identical(enumerated)) << render(enumerated.getPath());
        EXPECT_EQ(fetched[0].getPath(), enumerated.getPath());
    }
    EXPECT_EQ(distinct.size(), instances.size());
}

INSTANTIATE_TEST_SUITE_P(DiskInstanceProviders, DemoArrayTest, ::testing::ValuesIn(DEMO_CLASSES),
                         [](const ::testing::TestParamInfo<DemoClass>& info) {
                             return std::string(info.param.className);
                         });

} // namespace
} // namespace ksv::test
