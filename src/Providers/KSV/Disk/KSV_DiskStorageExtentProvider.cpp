#include "KSV_DiskStorageExtentProvider.h"

#include <KSV_Common.h>

#include "KSV_DiskDriveProvider.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_DiskStorageExtentProvider");

namespace {

const CIMNamespaceName KSV_NAMESPACE("root/ksv");
const CIMName EXTENT_CLASS("KSV_DiskStorageExtent");

const KSV_TraceTexts GET_INSTANCE = {"--> KSV_DiskStorageExtentProvider::getInstance\n",
                                     "<-- KSV_DiskStorageExtentProvider::getInstance\n"};
const KSV_TraceTexts ENUMERATE_INSTANCES = {
    "--> KSV_DiskStorageExtentProvider::enumerateInstances\n",
    "<-- KSV_DiskStorageExtentProvider::enumerateInstances\n"};
const KSV_TraceTexts ENUMERATE_INSTANCE_NAMES = {
    "--> KSV_DiskStorageExtentProvider::enumerateInstanceNames\n",
    "<-- KSV_DiskStorageExtentProvider::enumerateInstanceNames\n"};

} // namespace

KSV_DiskStorageExtentProvider::KSV_DiskStorageExtentProvider() {}

KSV_DiskStorageExtentProvider::KSV_DiskStorageExtentProvider(const CIMObjectPath&) {
    throw CIMNotSupportedException(ClassName + " does not support constructor with object path.");
}

KSV_DiskStorageExtentProvider::~KSV_DiskStorageExtentProvider() {}

void KSV_DiskStorageExtentProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "--> KSV_DiskStorageExtentProvider::initialize()\n");
    _cimom = cimom;
    _systemName = KSV_Common::getSystemName(cimom);
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    log_message(4, "-->KSV_DiskStorageExtentProvider::initialize()\n");
}

void KSV_DiskStorageExtentProvider::terminate() {
    delete this;
}

// No key check of its own: a path without DeviceID reads every disk and matches none.
void KSV_DiskStorageExtentProvider::getInstance(const OperationContext& context,
                                                const CIMObjectPath& instanceReference,
                                                const Boolean includeQualifiers,
                                                const Boolean includeClassOrigin,
                                                const CIMPropertyList& propertyList,
                                                InstanceResponseHandler& handler) {
    KSV_DiskProviderSupport::getInstance(
        ClassName, GET_INSTANCE, EXTENT_CLASS, context, instanceReference, handler,
        [&] { return KSV_Common::getStringProperty(instanceReference, "DeviceID"); },
        [&](const String& deviceID) {
            return _build_instances(deviceID, includeQualifiers, includeClassOrigin, propertyList);
        });
}

void KSV_DiskStorageExtentProvider::enumerateInstances(const OperationContext& context,
                                                       const CIMObjectPath& classReference,
                                                       const Boolean includeQualifiers,
                                                       const Boolean includeClassOrigin,
                                                       const CIMPropertyList& propertyList,
                                                       InstanceResponseHandler& handler) {
    KSV_DiskProviderSupport::enumerate(
        ClassName, ENUMERATE_INSTANCES, EXTENT_CLASS, context, classReference, handler, [&] {
            return _build_instances(String(), includeQualifiers, includeClassOrigin, propertyList);
        });
}

void KSV_DiskStorageExtentProvider::enumerateInstanceNames(const OperationContext& context,
                                                           const CIMObjectPath& classReference,
                                                           ObjectPathResponseHandler& handler) {
    KSV_DiskProviderSupport::enumerate(ClassName, ENUMERATE_INSTANCE_NAMES, EXTENT_CLASS, context,
                                       classReference, handler, [&] { return _build_ref(); });
}

void KSV_DiskStorageExtentProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                                   const CIMInstance&, const Boolean,
                                                   const CIMPropertyList&, ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support modifyInstance.");
}

void KSV_DiskStorageExtentProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                                   const CIMInstance&, ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_DiskStorageExtentProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                                   ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

CIMInstance KSV_DiskStorageExtentProvider::buildInstance(const api_Disk_t* disk,
                                                         const String& systemName,
                                                         const String& hostAddr,
                                                         CIMClass& storedClass) const {
    return _describeExtent(KSV_Common::buildInstanceSkeleton(storedClass), *disk, systemName,
                           hostAddr);
}

CIMInstance KSV_DiskStorageExtentProvider::_describeExtent(CIMInstance instance,
                                                           const api_Disk_t& disk,
                                                           const String& systemName,
                                                           const String& hostAddr) const {
    KSV_Common::setPropertyValue(instance, "SystemCreationClassName", "KSV_StorageSystem");
    KSV_Common::setPropertyValue(instance, "SystemName", systemName);
    KSV_Common::setPropertyValue(instance, "CreationClassName", "KSV_DiskStorageExtent");
    KSV_Common::setPropertyValue(instance, "DeviceID", disk.deviceID);
    KSV_Common::setPropertyValue(instance, "Access", Uint16(3)); // Readable/Writeable
    KSV_Common::setPropertyValue(instance, "BlockSize", Uint64(disk.blockSize));
    KSV_Common::setPropertyValue(instance, "NumberOfBlocks", Uint64(disk.numBlocks));
    KSV_Common::setPropertyValue(instance, "ConsumableBlocks", Uint64(disk.consumBlocks));
    KSV_DiskDriveProvider::_addOperationalStatus(disk, instance);
    KSV_Common::setPropertyValue(instance, "Primordial", Boolean(true));
    KSV_Common::setPropertyValue(instance, "HealthState", Uint16(disk.healthState));
    Array<String> discriminator;
    discriminator.append("SNIA:Pool Component");
    discriminator.append("SNIA:DiskDrive");
    KSV_Common::setPropertyValue(instance, "ExtentDiscriminator", discriminator);
    Array<Uint16> extentStatus;
    extentStatus.append(2); // None/Not Applicable
    KSV_Common::setPropertyValue(instance, "ExtentStatus", extentStatus);
    instance.setPath(buildObjectPath(hostAddr, disk.deviceID, systemName));
    return instance;
}

CIMObjectPath KSV_DiskStorageExtentProvider::buildObjectPath(const String& hostAddr,
                                                             const String& deviceID,
                                                             const String& systemName) const {
    Array<CIMKeyBinding> keys;
    keys.append(
        CIMKeyBinding("SystemCreationClassName", "KSV_StorageSystem", CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("SystemName", systemName, CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("CreationClassName", "KSV_DiskStorageExtent", CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("DeviceID", deviceID, CIMKeyBinding::STRING));
    return CIMObjectPath(hostAddr, KSV_NAMESPACE, EXTENT_CLASS, keys);
}

Array<CIMInstance>
KSV_DiskStorageExtentProvider::_build_instances(const String& deviceID, bool includeQualifiers,
                                                bool includeClassOrigin,
                                                const CIMPropertyList& propertyList) {
    log_message(4, "--> KSV_DiskStorageExtentProvider::_build_instances\n");
    const Array<CIMInstance> instances = KSV_DiskProviderSupport::describePresentDisks(
        _cimom, EXTENT_CLASS, deviceID, includeQualifiers, includeClassOrigin, propertyList,
        [&](CIMInstance skeleton, const api_Disk_t& disk) {
            return _describeExtent(skeleton, disk, _systemName, _hostAddr);
        });
    log_message(4, "<-- KSV_DiskStorageExtentProvider::_build_instances\n");
    return instances;
}

Array<CIMObjectPath> KSV_DiskStorageExtentProvider::_build_ref() const {
    log_message(4, "--> KSV_DiskStorageExtentProvider::_build_ref\n");
    const Array<CIMObjectPath> paths =
        KSV_DiskProviderSupport::namePresentDisks([&](const api_Disk_t& disk) {
            return buildObjectPath(_hostAddr, disk.deviceID, _systemName);
        });
    log_message(4, "<-- KSV_DiskStorageExtentProvider::_build_ref\n");
    return paths;
}

PEGASUS_NAMESPACE_END
