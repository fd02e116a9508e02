// Entry point of the storage-volume provider module: the CIM server asks it for each provider
// registered for the module, by name.
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/CIMProvider.h>

#include "KSV_InternalCacheProvider.h"
#include "KSV_StoragePoolProvider.h"
#include "KSV_StorageSystemProvider.h"
#include "KSV_StorageVolumeProvider.h"

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
    {"KSV_StorageSystemProvider", create<KSV_StorageSystemProvider>},
    {"KSV_StoragePoolProvider", create<KSV_StoragePoolProvider>},
    {"KSV_StorageVolumeProvider", create<KSV_StorageVolumeProvider>},
    {"KSV_InternalCacheProvider", create<KSV_InternalCacheProvider>},
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
