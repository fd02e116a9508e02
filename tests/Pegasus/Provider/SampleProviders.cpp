#include "SampleProviders.h"

#include <Pegasus/Common/MessageLoader.h>
#include <Pegasus/Common/InternalException.h>
#include <Pegasus/Client/CIMClient.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

const String diskProviderName = "SampleDiskProvider";
const String systemDiskProviderName = "SampleSystemDiskProvider";
const CIMNamespaceName sampleNamespace("root/sample");
const CIMName diskClass("Sample_Disk");
const CIMName systemClass("Sample_System");
const CIMName systemDiskClass("Sample_SystemDisk");
const CIMName groupComponent("GroupComponent");
const CIMName partComponent("PartComponent");

String readSystemName(CIMOMHandle& cimom) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("InstanceID", "localhost-InternalCache", CIMKeyBinding::STRING));
    const CIMObjectPath cache("localhost", "root/PG_Internal", "Sample_InternalCache", keys);
    Array<CIMParamValue> in;
    Array<CIMParamValue> out;
    cimom.invokeMethod(OperationContext(), "root/PG_Internal", cache, "GetSystemName", in, out);
    String name;
    if (out.size() > 0 && !out[0].getValue().isNull()) {
        out[0].getValue().get(name);
    }
    return name;
}

String keyValue(const CIMObjectPath& path, const CIMName& key) {
    const Array<CIMKeyBinding> keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        if (keys[i].getName().equal(key)) {
            return keys[i].getValue();
        }
    }
    throw CIMInvalidParameterException(diskProviderName + String(" DeviceID key not found."));
}

void refuseUnlessPermitted(const OperationContext& context, const String& permittedUser) {
    IdentityContainer identity = context.get(IdentityContainer::NAME);
    if (identity.getUserName() != permittedUser) {
        throw PEGASUS_CIM_EXCEPTION(CIM_ERR_ACCESS_DENIED, "Insufficient privilege for the user");
    }
}

CIMInstance buildLink(const CIMObjectPath& system, const CIMObjectPath& disk) {
    CIMInstance link(systemDiskClass);
    link.addProperty(CIMProperty(groupComponent, CIMValue(system), 0, systemClass));
    link.addProperty(CIMProperty(partComponent, CIMValue(disk), 0, diskClass));
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(groupComponent, system.toString(), CIMKeyBinding::REFERENCE));
    keys.append(CIMKeyBinding(partComponent, disk.toString(), CIMKeyBinding::REFERENCE));
    link.setPath(CIMObjectPath(String(), sampleNamespace, systemDiskClass, keys));
    return link;
}

// The one system, asked of the server over a local client connection as the array's
// providers do.
CIMObjectPath findSystem() {
    CIMClient client;
    client.connectLocal();
    Array<CIMObjectPath> systems = client.enumerateInstanceNames(sampleNamespace, systemClass);
    client.disconnect();
    if (systems.size() == 0) {
        throw CIMObjectNotFoundException(systemDiskProviderName + String(" no system"));
    }
    return systems[0];
}

} // namespace

SampleDiskProvider::SampleDiskProvider(const String& permittedUser, const Array<String>& deviceIDs)
    : _permittedUser(permittedUser), _deviceIDs(deviceIDs) {}

void SampleDiskProvider::initialize(CIMOMHandle& cimom) {
    _cimom = cimom;
    _systemName = readSystemName(_cimom);
}

void SampleDiskProvider::terminate() {}

void SampleDiskProvider::_checkUser(const OperationContext& context) const {
    refuseUnlessPermitted(context, _permittedUser);
}

void SampleDiskProvider::_checkClass(const CIMObjectPath& reference) const {
    if (!reference.getClassName().equal(diskClass)) {
        throw CIMNotSupportedException(diskProviderName + String(" Invalid class name") +
                                       reference.getClassName().getString());
    }
}

CIMObjectPath SampleDiskProvider::_pathOf(const String& deviceID) const {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("SystemName", _systemName, CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("DeviceID", deviceID, CIMKeyBinding::STRING));
    return CIMObjectPath(_systemName, sampleNamespace, diskClass, keys);
}

CIMInstance SampleDiskProvider::_instanceOf(const String& deviceID) const {
    CIMInstance disk(diskClass);
    disk.addProperty(CIMProperty("SystemName", CIMValue(_systemName)));
    disk.addProperty(CIMProperty("DeviceID", CIMValue(deviceID)));
    disk.setPath(_pathOf(deviceID));
    return disk;
}

void SampleDiskProvider::getInstance(const OperationContext& context,
                                     const CIMObjectPath& instanceReference, const Boolean,
                                     const Boolean, const CIMPropertyList&,
                                     InstanceResponseHandler& handler) {
    _checkUser(context);
    _checkClass(instanceReference);
    const String wanted = keyValue(instanceReference, "DeviceID");
    for (Uint32 i = 0; i < _deviceIDs.size(); i++) {
        if (_deviceIDs[i] == wanted) {
            handler.processing();
            handler.deliver(_instanceOf(wanted));
            handler.complete();
            return;
        }
    }
    throw CIMObjectNotFoundException(diskProviderName + String(" CIM Object not found."));
}

void SampleDiskProvider::enumerateInstances(const OperationContext& context,
                                            const CIMObjectPath& classReference, const Boolean,
                                            const Boolean, const CIMPropertyList&,
                                            InstanceResponseHandler& handler) {
    _checkUser(context);
    _checkClass(classReference);
    handler.processing();
    for (Uint32 i = 0; i < _deviceIDs.size(); i++) {
        handler.deliver(_instanceOf(_deviceIDs[i]));
    }
    handler.complete();
}

void SampleDiskProvider::enumerateInstanceNames(const OperationContext& context,
                                                const CIMObjectPath& classReference,
                                                ObjectPathResponseHandler& handler) {
    _checkUser(context);
    _checkClass(classReference);
    Array<CIMObjectPath> paths;
    for (Uint32 i = 0; i < _deviceIDs.size(); i++) {
        paths.append(_pathOf(_deviceIDs[i]));
    }
    handler.processing();
    handler.deliver(paths);
    handler.complete();
}

void SampleDiskProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                        const CIMInstance&, const Boolean, const CIMPropertyList&,
                                        ResponseHandler&) {
    throw CIMNotSupportedException(diskProviderName + String(" does not support modifyInstance."));
}

void SampleDiskProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                        const CIMInstance&, ObjectPathResponseHandler&) {
    throw CIMNotSupportedException(diskProviderName + String(" does not support createInstance."));
}

void SampleDiskProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                        ResponseHandler&) {
    throw CIMNotSupportedException(diskProviderName + String(" does not support deleteInstance."));
}

void SampleSystemDiskProvider::initialize(CIMOMHandle& cimom) {
    _cimom = cimom;
}

void SampleSystemDiskProvider::terminate() {}

Array<CIMObjectPath> SampleSystemDiskProvider::_farEnds(const OperationContext& context,
                                                        const CIMObjectPath& objectName) {
    if (objectName.getClassName().equal(systemClass)) {
        return _cimom.enumerateInstanceNames(context, sampleNamespace, diskClass);
    }
    Array<CIMObjectPath> system;
    if (objectName.getClassName().equal(diskClass)) {
        system.append(findSystem());
    }
    return system;
}

Array<CIMInstance> SampleSystemDiskProvider::_links(const OperationContext& context,
                                                    const CIMObjectPath& objectName) {
    const Array<CIMObjectPath> farEnds = _farEnds(context, objectName);
    const Boolean fromSystem = objectName.getClassName().equal(systemClass);
    Array<CIMInstance> links;
    for (Uint32 i = 0; i < farEnds.size(); i++) {
        links.append(fromSystem ? buildLink(objectName, farEnds[i])
                                : buildLink(farEnds[i], objectName));
    }
    return links;
}

void SampleSystemDiskProvider::associators(const OperationContext& context,
                                           const CIMObjectPath& objectName, const CIMName&,
                                           const CIMName&, const String&, const String&,
                                           const Boolean includeQualifiers,
                                           const Boolean includeClassOrigin,
                                           const CIMPropertyList& propertyList,
                                           ObjectResponseHandler& handler) {
    const Array<CIMObjectPath> farEnds = _farEnds(context, objectName);
    handler.processing();
    for (Uint32 i = 0; i < farEnds.size(); i++) {
        CIMInstance farEnd =
            _cimom.getInstance(context, farEnds[i].getNameSpace(), farEnds[i], false,
                               includeQualifiers, includeClassOrigin, propertyList);
        handler.deliver(CIMObject(farEnd));
    }
    handler.complete();
}

void SampleSystemDiskProvider::associatorNames(const OperationContext& context,
                                               const CIMObjectPath& objectName, const CIMName&,
                                               const CIMName&, const String&, const String&,
                                               ObjectPathResponseHandler& handler) {
    const Array<CIMObjectPath> farEnds = _farEnds(context, objectName);
    handler.processing();
    handler.deliver(farEnds);
    handler.complete();
}

void SampleSystemDiskProvider::references(const OperationContext& context,
                                          const CIMObjectPath& objectName, const CIMName&,
                                          const String&, const Boolean, const Boolean,
                                          const CIMPropertyList&, ObjectResponseHandler& handler) {
    const Array<CIMInstance> links = _links(context, objectName);
    handler.processing();
    for (Uint32 i = 0; i < links.size(); i++) {
        handler.deliver(CIMObject(links[i]));
    }
    handler.complete();
}

void SampleSystemDiskProvider::referenceNames(const OperationContext& context,
                                              const CIMObjectPath& objectName, const CIMName&,
                                              const String&, ObjectPathResponseHandler& handler) {
    const Array<CIMInstance> links = _links(context, objectName);
    handler.processing();
    for (Uint32 i = 0; i < links.size(); i++) {
        handler.deliver(links[i].getPath());
    }
    handler.complete();
}

PEGASUS_NAMESPACE_END
