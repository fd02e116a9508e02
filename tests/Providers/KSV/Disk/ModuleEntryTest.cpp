// PegasusCreateProvider: the twelve provider names, in any letter case, and nothing else.
#include "DiskModuleTestSupport.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace ksv::test {
namespace {

using namespace Pegasus;

bool isAssociationProvider(const std::string& name) {
    return name != "KSV_DiskDriveProvider" && name != "KSV_DiskDrivePackageProvider" &&
           name != "KSV_DiskStorageExtentProvider" && name != "KSV_DiskSoftwareIdentityProvider";
}

std::string withCase(std::string name, int (*change)(int)) {
    std::transform(name.begin(), name.end(), name.begin(),
                   [change](unsigned char c) { return static_cast<char>(change(c)); });
    return name;
}

std::string alternatingCase(std::string name) {
    for (size_t i = 0; i < name.size(); i++) {
        const unsigned char c = static_cast<unsigned char>(name[i]);
        name[i] = static_cast<char>(i % 2 ? std::tolower(c) : std::toupper(c));
    }
    return name;
}

// The provider's own name, as its refusal to create instances states it.
std::string identify(CIMProvider* provider) {
    CIMInstanceProvider* instances = dynamic_cast<CIMInstanceProvider*>(provider);
    if (!instances)
        return "not an instance provider";
    RecordingObjectPathHandler handler;
    try {
        instances->createInstance(OperationContext(), CIMObjectPath(), CIMInstance(), handler);
    } catch (const CIMException& e) {
        const std::string message = text(e.getMessage());
        return message.substr(0, message.find(" does not support"));
    }
    return "no refusal";
}

using ModuleEntry = DiskModuleTest;

TEST_F(ModuleEntry, IsLoadedFromItsVersionedFile) {
    const std::string file = KSV_DISK_MODULE;
    EXPECT_EQ(file.substr(file.rfind('/') + 1), "libKSV_DiskDriveProvider.so.1");
}

TEST_F(ModuleEntry, EachProviderNameInAnyCaseYieldsThatProvider) {
    for (const char* name : PROVIDER_NAMES) {
        for (const std::string& asked : {std::string(name), withCase(name, std::toupper),
                                         withCase(name, std::tolower), alternatingCase(name)}) {
            CIMProvider* provider = create(asked);
            ASSERT_NE(provider, nullptr) << asked;
            EXPECT_EQ(identify(provider), name) << asked;
            EXPECT_EQ(dynamic_cast<CIMAssociationProvider*>(provider) != nullptr,
                      isAssociationProvider(name))
                << asked;
            provider->terminate();
        }
    }
}

TEST_F(ModuleEntry, OtherNamesYieldNull) {
    for (const char* name :
         {"KSV_DiskDrive", "", "KSV_DiskDriveProvider ", "KSV_DiskDriveProviderX",
          "KSV_MagazineProvider", "KSV_StorageVolumeProvider"})
        EXPECT_EQ(create(name), nullptr) << '"' << name << '"';
}

TEST_F(ModuleEntry, EachCallMakesANewProvider) {
    std::set<CIMProvider*> made;
    for (int i = 0; i < 3; i++)
        made.insert(create("KSV_DiskDriveProvider"));
    EXPECT_EQ(made.size(), 3u);
    for (CIMProvider* provider : made)
        provider->terminate();
}

TEST_F(ModuleEntry, MakingProvidersNeitherCallsTheLibraryNorLogs) {
    ProviderHarness harness;
    for (const char* name : PROVIDER_NAMES)
        delete create(name);
    EXPECT_TRUE(harness.arrayCalls().empty());
    EXPECT_TRUE(harness.log().empty());
    EXPECT_TRUE(harness.server().calls().empty());
}

} // namespace
} // namespace ksv::test
