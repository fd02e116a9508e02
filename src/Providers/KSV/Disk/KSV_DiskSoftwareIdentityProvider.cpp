#include "KSV_DiskSoftwareIdentityProvider.h"

#include <KSV_Common.h>

#include "KSV_DiskDriveProvider.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_DiskSoftwareIdentityProvider");

namespace {

const CIMNamespaceName KSV_NAMESPACE("root/ksv");
const CIMName IDENTITY_CLASS("KSV_DiskSoftwareIdentity");

const KSV_TraceTexts GET_INSTANCE = {"--> KSV_DiskSoftwareIdentityProvider::getInstance\n",
                                     "<-- KSV_DiskSoftwareIdentityProvider::getInstance\n"};
const KSV_TraceTexts ENUMERATE_INSTANCES = {
    "--> KSV_DiskSoftwareIdentityProvider::enumerateInstances\n",
    "<-- KSV_DiskSoftwareIdentityProvider::enumerateInstances\n"};
const KSV_TraceTexts ENUMERATE_INSTANCE_NAMES = {
    "--> KSV_DiskSoftwareIdentityProvider::enumerateInstanceNames\n",
    "<-- KSV_DiskSoftwareIdentityProvider::enumerateInstanceNames\n"};

// Reads every disk and calls visit(disk) for the first present disk of each firmware version,
// in list order. The provider's version table is held locked for the walk only; a failed read
// takes no lock.
template <typename Visit>
void forEachFirstOfVersion(hashtable_t* versions, Visit visit) {
    KSV_DiskList disks;
    if (!disks.read(API_ALL_DISKS))
        return;
    KSV_LockedTable seen(versions);
    for (Uint32 i = 0; i < disks.size(); i++) {
        const api_Disk_t& disk = disks[i];
        if (disk.isAbsent || disk.fwVersion[0] == '\0')
            continue;
        if (hashtable_contains_key(versions, disk.fwVersion) == 1)
            continue;
        visit(disk);
        hashtable_put(versions, disk.fwVersion, i);
    }
}

} // namespace

KSV_DiskSoftwareIdentityProvider::KSV_DiskSoftwareIdentityProvider() : _stringHashTable(nullptr) {}

KSV_DiskSoftwareIdentityProvider::KSV_DiskSoftwareIdentityProvider(const CIMObjectPath&)
    : _stringHashTable(nullptr) {
    throw CIMNotSupportedException(ClassName + " does not support constructor with object path.");
}

KSV_DiskSoftwareIdentityProvider::~KSV_DiskSoftwareIdentityProvider() {}

void KSV_DiskSoftwareIdentityProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "--> KSV_DiskSoftwareIdentityProvider::initialize()\n");
    _stringHashTable = nullptr;
    _cimom = cimom;
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    _stringHashTable = create_string_hashtable(2048, 0.75);
    set_invalid_value(_stringHashTable, 0);
    log_message(4, "<--KSV_DiskSoftwareIdentityProvider::initialize()\n");
}

void KSV_DiskSoftwareIdentityProvider::terminate() {
    if (_stringHashTable)
        delete_hashtable(_stringHashTable);
    delete this;
}

void KSV_DiskSoftwareIdentityProvider::getInstance(const OperationContext& context,
                                                   const CIMObjectPath& instanceReference,
                                                   const Boolean includeQualifiers,
                                                   const Boolean includeClassOrigin,
                                                   const CIMPropertyList& propertyList,
                                                   InstanceResponseHandler& handler) {
    KSV_DiskProviderSupport::getInstance(
        ClassName, GET_INSTANCE, IDENTITY_CLASS, context, instanceReference, handler,
        [&] {
            return KSV_DiskProviderSupport::requiredKey(instanceReference, "InstanceID", ClassName);
        },
        [&](const String&) {
            return _build_instances(includeQualifiers, includeClassOrigin, propertyList);
        });
}

void KSV_DiskSoftwareIdentityProvider::enumerateInstances(const OperationContext& context,
                                                          const CIMObjectPath& classReference,
                                                          const Boolean includeQualifiers,
                                                          const Boolean includeClassOrigin,
                                                          const CIMPropertyList& propertyList,
                                                          InstanceResponseHandler& handler) {
    KSV_DiskProviderSupport::enumerate(
        ClassName, ENUMERATE_INSTANCES, IDENTITY_CLASS, context, classReference, handler,
        [&] { return _build_instances(includeQualifiers, includeClassOrigin, propertyList); });
}

void KSV_DiskSoftwareIdentityProvider::enumerateInstanceNames(const OperationContext& context,
                                                              const CIMObjectPath& classReference,
                                                              ObjectPathResponseHandler& handler) {
    KSV_DiskProviderSupport::enumerate(ClassName, ENUMERATE_INSTANCE_NAMES, IDENTITY_CLASS, context,
                                       classReference, handler, [&] { return _build_ref(); });
}

void KSV_DiskSoftwareIdentityProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                                      const CIMInstance&, const Boolean,
                                                      const CIMPropertyList&, ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support modifyInstance.");
}

void KSV_DiskSoftwareIdentityProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                                      const CIMInstance&,
                                                      ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_DiskSoftwareIdentityProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                                      ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

CIMInstance KSV_DiskSoftwareIdentityProvider::build_instance(CIMClass cimClass,
                                                             const api_Disk_t& disk,
                                                             const String& hostAddr) const {
    const String instanceID = makeInstanceID(disk.fwVersion);
    CIMInstance instance = KSV_Common::buildInstanceSkeleton(cimClass);
    KSV_Common::setPropertyValue(instance, "InstanceID", instanceID);
    KSV_Common::setPropertyValue(instance, "Manufacturer", disk.mfg.vendor);
    KSV_Common::setPropertyValue(instance, "VersionString", disk.fwVersion);
    KSV_Common::setPropertyValue(instance, "FirmwareStatus", Uint16(disk.fwState.actual));
    instance.setPath(buildObjectPath(hostAddr, instanceID));
    return instance;
}

CIMObjectPath KSV_DiskSoftwareIdentityProvider::buildObjectPath(const String& hostAddr,
                                                                const String& instanceID) const {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("InstanceID", instanceID, CIMKeyBinding::STRING));
    return CIMObjectPath(hostAddr, KSV_NAMESPACE, IDENTITY_CLASS, keys);
}

String KSV_DiskSoftwareIdentityProvider::makeInstanceID(const String& version) const {
    return "QUANOR:" + version;
}

Array<CIMInstance>
KSV_DiskSoftwareIdentityProvider::_build_instances(bool includeQualifiers, bool includeClassOrigin,
                                                   const CIMPropertyList& propertyList) {
    log_message(4, "--> KSV_DiskSoftwareIdentityProvider::_build_instances\n");
    const CIMClass identityClass = KSV_DiskProviderSupport::storedClass(
        _cimom, IDENTITY_CLASS, includeQualifiers, includeClassOrigin, propertyList);
    Array<CIMInstance> instances;
    forEachFirstOfVersion(_stringHashTable, [&](const api_Disk_t& disk) {
        instances.append(build_instance(identityClass, disk, _hostAddr));
    });
    log_message(4, "<-- KSV_DiskSoftwareIdentityProvider::_build_instances\n");
    return instances;
}

Array<CIMObjectPath> KSV_DiskSoftwareIdentityProvider::_build_ref() const {
    log_message(4, "--> KSV_DiskSoftwareIdentityProvider::_build_ref\n");
    Array<CIMObjectPath> paths;
    forEachFirstOfVersion(_stringHashTable, [&](const api_Disk_t& disk) {
        paths.append(buildObjectPath(_hostAddr, makeInstanceID(disk.fwVersion)));
    });
    log_message(4, "<-- KSV_DiskSoftwareIdentityProvider::_build_ref\n");
    return paths;
}

PEGASUS_NAMESPACE_END
