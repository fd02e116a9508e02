// The storage volume module's providers, created through its entry point as the CIM server
// creates them.
#ifndef KSV_TESTS_SIBLINGPROVIDERTESTSUPPORT_H
#define KSV_TESTS_SIBLINGPROVIDERTESTSUPPORT_H

#include "ProviderTestSupport.h"

#include "cimserver/ProviderLibrary.h"

namespace ksv::test {

inline CIMProvider* volumeModuleProvider(const char* name) {
    static const server::ProviderLibrary module("KSV_StorageVolumeProvider",
                                                {KSV_STORAGE_VOLUME_MODULE_DIR});
    return module.createProvider(name);
}

const Strings kDeliveredOnce = {"processing", "deliver", "complete"};

} // namespace ksv::test

#endif
