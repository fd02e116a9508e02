#include "KSV_StorageSystemProvider.h"

#include "KSV_InternalCacheService.h"

#include <cstdio>

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_StorageSystemProvider");

KSV_StorageSystemProvider::KSV_StorageSystemProvider()
    : KSV_ReadOnlyInstanceProvider<KSV_SystemRecord>(ClassName, {"KSV_StorageSystem"}),
      _system{String(), String(), String(), 0} {}

void KSV_StorageSystemProvider::initialize(CIMOMHandle& cimom) {
    KSV_ReadOnlyInstanceProvider<KSV_SystemRecord>::initialize(cimom);
    const KSV_InternalCacheService& identity = KSV_InternalCacheService::withSystemInfo(ClassName);
    _system = {identity.getSystemName(), identity.getSystemHostName(), identity.getSystemAddress(),
               identity.getSystemID()};
}

CIMObjectPath KSV_StorageSystemProvider::buildObjectPath(const String& systemName,
                                                         const String& hostAddr) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("CreationClassName", "KSV_StorageSystem", CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("Name", systemName, CIMKeyBinding::STRING));
    return CIMObjectPath(hostAddr, CIMNamespaceName("root/ksv"), CIMName("KSV_StorageSystem"),
                         keys);
}

std::vector<KSV_SystemRecord> KSV_StorageSystemProvider::_readRecords(const CIMName&) const {
    return {_system};
}

CIMObjectPath KSV_StorageSystemProvider::_pathOf(const KSV_SystemRecord& system) const {
    return buildObjectPath(system.name, system.hostName);
}

void KSV_StorageSystemProvider::_describe(CIMInstance& instance,
                                          const KSV_SystemRecord& system) const {
    KSV_Common::setPropertyValue(instance, "ElementName", system.name);
    KSV_Common::setPropertyValue(instance, "NameFormat", "Other");
    // SMI-S clients find the array by these two roles: storage, and block server.
    Array<Uint16> dedicated;
    dedicated.append(3);
    dedicated.append(15);
    KSV_Common::setPropertyValue(instance, "Dedicated", dedicated);
    Array<String> info;
    Array<String> descriptions;
    info.append(system.hostName);
    descriptions.append("Host name");
    info.append(system.address);
    descriptions.append("IPv4 address");
    char serial[16];
    snprintf(serial, sizeof serial, "%u", system.serialNumber);
    info.append(serial);
    descriptions.append("Serial number");
    KSV_Common::setPropertyValue(instance, "OtherIdentifyingInfo", info);
    KSV_Common::setPropertyValue(instance, "IdentifyingDescriptions", descriptions);
}

PEGASUS_NAMESPACE_END
