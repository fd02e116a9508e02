#include "KSV_DiskDrivePackageProvider.h"

#include <KSV_Common.h>

#include "KSV_DiskDriveProvider.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_DiskDrivePackageProvider");

namespace {

const CIMNamespaceName KSV_NAMESPACE("root/ksv");
const CIMName PACKAGE_CLASS("KSV_DiskDrivePackage");

const KSV_TraceTexts GET_INSTANCE = {"--> KSV_DiskDrivePackageProvider::getInstance\n",
                                     "<-- KSV_DiskDrivePackageProvider::getInstance\n"};
const KSV_TraceTexts ENUMERATE_INSTANCES = {
    "--> KSV_DiskDrivePackageProvider::enumerateInstances\n",
    "<-- KSV_DiskDrivePackageProvider::enumerateInstances\n"};
const KSV_TraceTexts ENUMERATE_INSTANCE_NAMES = {
    "--> KSV_DiskDrivePackageProvider::enumerateInstanceNames\n",
    "<-- KSV_DiskDrivePackageProvider::enumerateInstanceNames\n"};

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

// A package path has no DeviceID, so every present disk is built and the path match picks the
// package; a DeviceID key narrows the read to that disk.
void KSV_DiskDrivePackageProvider::getInstance(const OperationContext& context,
                                               const CIMObjectPath& instanceReference,
                                               const Boolean includeQualifiers,
                                               const Boolean includeClassOrigin,
                                               const CIMPropertyList& propertyList,
                                               InstanceResponseHandler& handler) {
    KSV_DiskProviderSupport::getInstance(
        ClassName, GET_INSTANCE, PACKAGE_CLASS, context, instanceReference, handler,
        [&] { return KSV_DiskProviderSupport::requiredKey(instanceReference, "Tag", ClassName); },
        [&](const String&) {
            return _build_instances(KSV_Common::getStringProperty(instanceReference, "DeviceID"),
                                    includeQualifiers, includeClassOrigin, propertyList);
        });
}

void KSV_DiskDrivePackageProvider::enumerateInstances(const OperationContext& context,
                                                      const CIMObjectPath& classReference,
                                                      const Boolean includeQualifiers,
                                                      const Boolean includeClassOrigin,
                                                      const CIMPropertyList& propertyList,
                                                      InstanceResponseHandler& handler) {
    KSV_DiskProviderSupport::enumerate(
        ClassName, ENUMERATE_INSTANCES, PACKAGE_CLASS, context, classReference, handler, [&] {
            return _build_instances(String(), includeQualifiers, includeClassOrigin, propertyList);
        });
}

void KSV_DiskDrivePackageProvider::enumerateInstanceNames(const OperationContext& context,
                                                          const CIMObjectPath& classReference,
                                                          ObjectPathResponseHandler& handler) {
    KSV_DiskProviderSupport::enumerate(ClassName, ENUMERATE_INSTANCE_NAMES, PACKAGE_CLASS, context,
                                       classReference, handler, [&] { return _build_ref(); });
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
    const Array<CIMInstance> instances = KSV_DiskProviderSupport::describePresentDisks(
        _cimom, PACKAGE_CLASS, selector, includeQualifiers, includeClassOrigin, propertyList,
        [&](CIMInstance skeleton, const api_Disk_t& disk) {
            return _describePackage(skeleton, disk, _hostAddr);
        });
    log_message(4, "<-- KSV_DiskDrivePackageProvider::_build_instances\n");
    return instances;
}

Array<CIMObjectPath> KSV_DiskDrivePackageProvider::_build_ref() const {
    log_message(4, "--> KSV_DiskDrivePackageProvider::_build_ref\n");
    const Array<CIMObjectPath> paths = KSV_DiskProviderSupport::namePresentDisks(
        [&](const api_Disk_t& disk) { return buildObjectPath(_hostAddr, disk.deviceID); });
    log_message(4, "<-- KSV_DiskDrivePackageProvider::_build_ref\n");
    return paths;
}

PEGASUS_NAMESPACE_END
