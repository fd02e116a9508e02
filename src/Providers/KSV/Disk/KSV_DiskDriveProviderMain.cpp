// Entry point of the disk-drive provider module: the CIM server asks it for each provider
// registered for the module, by name.
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/CIMProvider.h>

#include "KSV_AssociatedPrimordialDisksProvider.h"
#include "KSV_DiskDrivePackageProvider.h"
#include "KSV_DiskDriveProvider.h"
#include "KSV_DiskPackageRealizesProvider.h"
#include "KSV_DiskPresentProvider.h"
#include "KSV_DiskSoftwareIdentityProvider.h"
#include "KSV_DiskSoftwareProvider.h"
#include "KSV_DiskStorageExtentProvider.h"
#include "KSV_MagazineContainerProvider.h"
#include "KSV_SystemDiskProvider.h"
#include "KSV_SystemExtentProvider.h"
#include "KSV_VolumeBasedOnDiskExtentProvider.h"

PEGASUS_USING_PEGASUS;

namespace {

template <typename Provider>
CIMProvider* create() {
    return new Provider();
}

struct ProviderEntry {
    const char* name;
    CIMProvider* (*create)();
};

const ProviderEntry PROVIDERS[] = {
    {"KSV_DiskDriveProvider", create<KSV_DiskDriveProvider>},
    {"KSV_DiskDrivePackageProvider", create<KSV_DiskDrivePackageProvider>},
    {"KSV_DiskPackageRealizesProvider", create<KSV_DiskPackageRealizesProvider>},
    {"KSV_DiskStorageExtentProvider", create<KSV_DiskStorageExtentProvider>},
    {"KSV_DiskPresentProvider", create<KSV_DiskPresentProvider>},
    {"KSV_DiskSoftwareIdentityProvider", create<KSV_DiskSoftwareIdentityProvider>},
    {"KSV_DiskSoftwareProvider", create<KSV_DiskSoftwareProvider>},
    {"KSV_MagazineContainerProvider", create<KSV_MagazineContainerProvider>},
    {"KSV_SystemDiskProvider", create<KSV_SystemDiskProvider>},
    {"KSV_SystemExtentProvider", create<KSV_SystemExtentProvider>},
    {"KSV_VolumeBasedOnDiskExtentProvider", create<KSV_VolumeBasedOnDiskExtentProvider>},
    {"KSV_AssociatedPrimordialDisksProvider", create<KSV_AssociatedPrimordialDisksProvider>},
};

} // namespace

// A new provider object for each call; null for a name this module does not serve.
extern "C" PEGASUS_EXPORT CIMProvider* PegasusCreateProvider(const String& providerName) {
    for (const ProviderEntry& entry : PROVIDERS) {
        if (String::equalNoCase(providerName, entry.name))
            return entry.create();
    }
    return nullptr;
}
