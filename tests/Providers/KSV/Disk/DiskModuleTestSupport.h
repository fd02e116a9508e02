// The disk module as the CIM server sees it: loaded from its file, asked for providers by name.
#ifndef KSV_TESTS_DISKMODULETESTSUPPORT_H
#define KSV_TESTS_DISKMODULETESTSUPPORT_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include "ProviderHarness.h"
#include "ProviderModule.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace ksv::test {

inline std::string text(const Pegasus::String& value) {
    return std::string(value.getCString());
}

// The module's providers in the order the entry point tests their names.
const char* const PROVIDER_NAMES[] = {"KSV_DiskDriveProvider",
                                      "KSV_DiskDrivePackageProvider",
                                      "KSV_DiskPackageRealizesProvider",
                                      "KSV_DiskStorageExtentProvider",
                                      "KSV_DiskPresentProvider",
                                      "KSV_DiskSoftwareIdentityProvider",
                                      "KSV_DiskSoftwareProvider",
                                      "KSV_MagazineContainerProvider",
                                      "KSV_SystemDiskProvider",
                                      "KSV_SystemExtentProvider",
                                      "KSV_VolumeBasedOnDiskExtentProvider",
                                      "KSV_AssociatedPrimordialDisksProvider"};

class DiskModuleTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { module = std::make_unique<ProviderModule>(KSV_DISK_MODULE); }
    static void TearDownTestSuite() { module.reset(); }

    static Pegasus::CIMProvider* create(const std::string& name) {
        return module->createProvider(name.c_str());
    }

    static inline std::unique_ptr<ProviderModule> module;
};

} // namespace ksv::test

#endif
