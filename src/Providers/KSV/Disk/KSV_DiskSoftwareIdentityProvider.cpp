#include "KSV_DiskSoftwareIdentityProvider.h"

#include <KSV_Common.h>

#include "KSV_DiskDriveProvider.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_DiskSoftwareIdentityProvider");

namespace {

const CIMNamespaceName KSV_NAMESPACE("root/ksv");
const CIMName IDENTITY_CLASS("KSV_DiskSoftwareIdentity");

// One walk over the disks that sees each firmware version once. It holds the provider's
// version table locked for the walk and leaves it empty and unlocked, also when building an
// instance throws, so that every request starts from an empty table.
class FirmwareVersionWalk {
public:
    explicit FirmwareVersionWalk(hashtable_t* versions) : _versions(versions) {
        hashtable_lock(_versions);
    }
    ~FirmwareVersionWalk() {
        hashtable_clear(_versions);
        hashtable_unlock(_versions);
    }
    FirmwareVersionWalk(const FirmwareVersionWalk&) = delete;
    FirmwareVersionWalk& operator=(const FirmwareVersionWalk&) = delete;

    // Calls visit(disk) for the first present disk of each firmware version, in list order.
    template <typename Visit>
    void forEachFirstOfVersion(const KSV_DiskList& disks, Visit visit) {
        for (Uint32 i = 0; i < disks.size(); i++) {
            const api_Disk_t& disk = disks[i];
            if (disk.isAbsent || disk.fwVersion[0] == '\0')
                continue;
            if (hashtable_contains_key(_versions, disk.fwVersion) == 1)
                continue;
            visit(disk);
            hashtable_put(_versions, disk.fwVersion, i);
        }
    }

private:
    hashtable_t* _versions;
};

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
    log_message(4, "--> KSV_DiskSoftwareIdentityProvider::getInstance\n");
    KSV_CHECK_USER_ACCESS(context, ClassName);
    KSV_DiskProviderSupport::checkClass(instanceReference, IDENTITY_CLASS, ClassName);
    const String instanceID =
        KSV_DiskProviderSupport::requiredKey(instanceReference, "InstanceID", ClassName);
    const Array<CIMInstance> instances =
        _build_instances(includeQualifiers, includeClassOrigin, propertyList);
    KSV_DiskProviderSupport::deliverMatch(handler, instanceReference, instances, ClassName,
                                          instanceID);
    log_message(4, "<-- KSV_DiskSoftwareIdentityProvider::getInstance\n");
}

void KSV_DiskSoftwareIdentityProvider::enumerateInstances(const OperationContext& context,
                                                          const CIMObjectPath& classReference,
                                                          const Boolean includeQualifiers,
                                                          const Boolean includeClassOrigin,
                                                          const CIMPropertyList& propertyList,
                                                          InstanceResponseHandler& handler) {
    log_message(4, "--> KSV_DiskSoftwareIdentityProvider::enumerateInstances\n");
    KSV_CHECK_USER_ACCESS(context, ClassName);
    KSV_DiskProviderSupport::checkClass(classReference, IDENTITY_CLASS, ClassName);
    KSV_DiskProviderSupport::deliverAll(
        handler, _build_instances(includeQualifiers, includeClassOrigin, propertyList));
    log_message(4, "<-- KSV_DiskSoftwareIdentityProvider::enumerateInstances\n");
}

void KSV_DiskSoftwareIdentityProvider::enumerateInstanceNames(const OperationContext& context,
                                                              const CIMObjectPath& classReference,
                                                              ObjectPathResponseHandler& handler) {
    log_message(4, "--> KSV_DiskSoftwareIdentityProvider::enumerateInstanceNames\n");
    KSV_CHECK_USER_ACCESS(context, ClassName);
    KSV_DiskProviderSupport::checkClass(classReference, IDENTITY_CLASS, ClassName);
    KSV_DiskProviderSupport::deliverAll(handler, _build_ref());
    log_message(4, "<-- KSV_DiskSoftwareIdentityProvider::enumerateInstanceNames\n");
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
    const CIMClass identityClass =
        KSV_Common::getStoredCIMClass(_cimom, OperationContext(), KSV_NAMESPACE, IDENTITY_CLASS,
                                      false, includeQualifiers, includeClassOrigin, propertyList);
    Array<CIMInstance> instances;
    KSV_DiskList disks;
    if (disks.read(API_ALL_DISKS)) {
        FirmwareVersionWalk walk(_stringHashTable);
        walk.forEachFirstOfVersion(disks, [&](const api_Disk_t& disk) {
            instances.append(build_instance(identityClass, disk, _hostAddr));
        });
    }
    log_message(4, "<-- KSV_DiskSoftwareIdentityProvider::_build_instances\n");
    return instances;
}

Array<CIMObjectPath> KSV_DiskSoftwareIdentityProvider::_build_ref() const {
    log_message(4, "--> KSV_DiskSoftwareIdentityProvider::_build_ref\n");
    Array<CIMObjectPath> paths;
    KSV_DiskList disks;
    if (disks.read(API_ALL_DISKS)) {
        FirmwareVersionWalk walk(_stringHashTable);
        walk.forEachFirstOfVersion(disks, [&](const api_Disk_t& disk) {
            paths.append(buildObjectPath(_hostAddr, makeInstanceID(disk.fwVersion)));
        });
    }
    log_message(4, "<-- KSV_DiskSoftwareIdentityProvider::_build_ref\n");
    return paths;
}

PEGASUS_NAMESPACE_END
