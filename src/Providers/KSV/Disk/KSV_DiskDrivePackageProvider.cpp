#include "KSV_DiskDrivePackageProvider.h"

#include <KSV_Common.h>

#include "KSV_DiskDriveProvider.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_DiskDrivePackageProvider");

namespace {

const CIMNamespaceName KSV_NAMESPACE("root/ksv");
const CIMName PACKAGE_CLASS("KSV_DiskDrivePackage");

} // namespace

KSV_DiskDrivePackageProvider::KSV_DiskDrivePackageProvider() {}

KSV_DiskDrivePackageProvider::KSV_DiskDrivePackageProvider(const CIMObjectPath&) {
    throw CIMNotSupportedException(ClassName + " does not support constructor with object path.");
}

KSV_DiskDrivePackageProvider::~KSV_DiskDrivePackageProvider() {}

void KSV_DiskDrivePackageProvider::initialize(CIMOMHandle& cimom) {
    log_message(4, "-->KSV_DiskDrivePackageProvider::initialize()\n");
    _cimom = cimom;
    _hostAddr = KSV_Common::getSystemHostName(cimom);
    log_message(4, "<--KSV_DiskDrivePackageProvider::initialize()\n");
}

void KSV_DiskDrivePackageProvider::terminate() {
    delete this;
}

void KSV_DiskDrivePackageProvider::getInstance(const OperationContext& context,
                                               const CIMObjectPath& instanceReference,
                                               const Boolean includeQualifiers,
                                               const Boolean includeClassOrigin,
                                               const CIMPropertyList& propertyList,
                                               InstanceResponseHandler& handler) {
    log_message(4, "--> KSV_DiskDrivePackageProvider::getInstance\n");
    KSV_CHECK_USER_ACCESS(context, ClassName);
    KSV_DiskProviderSupport::checkClass(instanceReference, PACKAGE_CLASS, ClassName);
    const String tag = KSV_DiskProviderSupport::requiredKey(instanceReference, "Tag", ClassName);
    // A package path has no DeviceID, so every present disk is built and the path match picks
    // the package; a DeviceID key narrows the read to that disk.
    const String selector = KSV_Common::getStringProperty(instanceReference, "DeviceID");
    const Array<CIMInstance> instances =
        _build_instances(selector, includeQualifiers, includeClassOrigin, propertyList);
    KSV_DiskProviderSupport::deliverMatch(handler, instanceReference, instances, ClassName, tag);
    log_message(4, "<-- KSV_DiskDrivePackageProvider::getInstance\n");
}

void KSV_DiskDrivePackageProvider::enumerateInstances(const OperationContext& context,
                                                      const CIMObjectPath& classReference,
                                                      const Boolean includeQualifiers,
                                                      const Boolean includeClassOrigin,
                                                      const CIMPropertyList& propertyList,
                                                      InstanceResponseHandler& handler) {
    log_message(4, "--> KSV_DiskDrivePackageProvider::enumerateInstances\n");
    KSV_CHECK_USER_ACCESS(context, ClassName);
    KSV_DiskProviderSupport::checkClass(classReference, PACKAGE_CLASS, ClassName);
    KSV_DiskProviderSupport::deliverAll(
        handler, _build_instances(String(), includeQualifiers, includeClassOrigin, propertyList));
    log_message(4, "<-- KSV_DiskDrivePackageProvider::enumerateInstances\n");
}

void KSV_DiskDrivePackageProvider::enumerateInstanceNames(const OperationContext& context,
                                                          const CIMObjectPath& classReference,
                                                          ObjectPathResponseHandler& handler) {
    log_message(4, "--> KSV_DiskDrivePackageProvider::enumerateInstanceNames\n");
    KSV_CHECK_USER_ACCESS(context, ClassName);
    KSV_DiskProviderSupport::checkClass(classReference, PACKAGE_CLASS, ClassName);
    KSV_DiskProviderSupport::deliverAll(handler, _build_ref());
    log_message(4, "<-- KSV_DiskDrivePackageProvider::enumerateInstanceNames\n");
}

void KSV_DiskDrivePackageProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                                  const CIMInstance&, const Boolean,
                                                  const CIMPropertyList&, ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support modifyInstance.");
}

void KSV_DiskDrivePackageProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                                  const CIMInstance&, ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support createInstance.");
}

void KSV_DiskDrivePackageProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                                  ResponseHandler&) {
    throw CIMNotSupportedException(ClassName + " does not support deleteInstance.");
}

CIMInstance KSV_DiskDrivePackageProvider::build_instance(CIMClass cimClass, const api_Disk_t& disk,
                                                         const String& hostAddr) const {
    return _describePackage(KSV_Common::buildInstanceSkeleton(cimClass), disk, hostAddr);
}

CIMInstance KSV_DiskDrivePackageProvider::_describePackage(CIMInstance instance,
                                                           const api_Disk_t& disk,
                                                           const String& hostAddr) const {
    KSV_Common::setPropertyValue(instance, "CreationClassName", "KSV_DiskDrivePackage");
    KSV_Common::setPropertyValue(instance, "Tag", disk.deviceID);
    KSV_Common::setPropertyValue(instance, "Manufacturer", disk.mfg.vendor);
    KSV_Common::setPropertyValue(instance, "Model", disk.mfg.model);
    KSV_Common::setPropertyValue(instance, "SerialNumber", disk.mfg.serial);
    instance.setPath(buildObjectPath(hostAddr, disk.deviceID));
    return instance;
}

CIMObjectPath KSV_DiskDrivePackageProvider::buildObjectPath(const String& hostAddr,
                                                            const String& tag) const {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("CreationClassName", "KSV_DiskDrivePackage", CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("Tag", tag, CIMKeyBinding::STRING));
    return CIMObjectPath(hostAddr, KSV_NAMESPACE, PACKAGE_CLASS, keys);
}

Array<CIMInstance>
KSV_DiskDrivePackageProvider::_build_instances(const String& selector, bool includeQualifiers,
                                               bool includeClassOrigin,
                                               const CIMPropertyList& propertyList) {
    log_message(4, "--> KSV_DiskDrivePackageProvider::_build_instances\n");
    const CIMClass packageClass =
        KSV_Common::getStoredCIMClass(_cimom, OperationContext(), KSV_NAMESPACE, PACKAGE_CLASS,
                                      false, includeQualifiers, includeClassOrigin, propertyList);
    // Copying one skeleton is much cheaper than building one from the class for every disk.
    const CIMInstance skeleton = KSV_Common::buildInstanceSkeleton(packageClass);
    Array<CIMInstance> instances;
    KSV_DiskList disks;
    disks.read(KSV_DiskList::selectorOf(selector));
    instances.reserveCapacity(disks.size());
    for (Uint32 i = 0; i < disks.size(); i++) {
        if (!disks[i].isAbsent)
            instances.append(_describePackage(skeleton.clone(), disks[i], _hostAddr));
    }
    log_message(4, "<-- KSV_DiskDrivePackageProvider::_build_instances\n");
    return instances;
}

Array<CIMObjectPath> KSV_DiskDrivePackageProvider::_build_ref() const {
    log_message(4, "--> KSV_DiskDrivePackageProvider::_build_ref\n");
    Array<CIMObjectPath> paths;
    KSV_DiskList disks;
    disks.read(API_ALL_DISKS);
    paths.reserveCapacity(disks.size());
    for (Uint32 i = 0; i < disks.size(); i++) {
        if (!disks[i].isAbsent)
            paths.append(buildObjectPath(_hostAddr, disks[i].deviceID));
    }
    log_message(4, "<-- KSV_DiskDrivePackageProvider::_build_ref\n");
    return paths;
}

PEGASUS_NAMESPACE_END
