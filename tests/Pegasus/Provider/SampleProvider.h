#ifndef KSV_TESTS_SAMPLE_PROVIDER_H
#define KSV_TESTS_SAMPLE_PROVIDER_H

// A small provider written the way the array's provider modules are: only OpenPegasus headers,
// so that it also compiles against a real OpenPegasus installation.
//
// It serves Sample_Disk in root/sample, one instance per disk ID given, keyed by SystemName
// (read from the internal cache at initialize) and DeviceID, to the permitted user only; and
// the names at the far end of Sample_SystemDisk: the disks of the system, asked through the
// server's handle, or the system of a disk, asked of the server over a local client connection.

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/MessageLoader.h>
#include <Pegasus/Common/InternalException.h>
#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>

PEGASUS_NAMESPACE_BEGIN

class SampleDiskProvider : public CIMInstanceProvider, public CIMAssociationProvider {
public:
    SampleDiskProvider(const String& permittedUser, const Array<String>& deviceIDs)
        : _permittedUser(permittedUser), _deviceIDs(deviceIDs) {}

    void initialize(CIMOMHandle& cimom) override {
        _cimom = cimom;
        Array<CIMKeyBinding> keys;
        keys.append(CIMKeyBinding("InstanceID", "localhost-InternalCache", CIMKeyBinding::STRING));
        const CIMObjectPath cache("localhost", "root/PG_Internal", "Sample_InternalCache", keys);
        Array<CIMParamValue> in;
        Array<CIMParamValue> out;
        _cimom.invokeMethod(OperationContext(), "root/PG_Internal", cache, "GetSystemName", in,
                            out);
        if (out.size() > 0 && !out[0].getValue().isNull()) {
            out[0].getValue().get(_systemName);
        }
    }

    void terminate() override {}

    void getInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                     const Boolean, const Boolean, const CIMPropertyList&,
                     InstanceResponseHandler& handler) override {
        _check(context, instanceReference);
        const Array<CIMKeyBinding> keys = instanceReference.getKeyBindings();
        for (Uint32 k = 0; k < keys.size(); k++) {
            for (Uint32 i = 0; keys[k].getName().equal("DeviceID") && i < _deviceIDs.size(); i++) {
                if (_deviceIDs[i] == keys[k].getValue()) {
                    handler.processing();
                    handler.deliver(_instanceOf(_deviceIDs[i]));
                    handler.complete();
                    return;
                }
            }
        }
        throw CIMObjectNotFoundException("SampleDiskProvider CIM Object not found.");
    }

    void enumerateInstances(const OperationContext& context, const CIMObjectPath& classReference,
                            const Boolean, const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        _check(context, classReference);
        handler.processing();
        for (Uint32 i = 0; i < _deviceIDs.size(); i++) {
            handler.deliver(_instanceOf(_deviceIDs[i]));
        }
        handler.complete();
    }

    void enumerateInstanceNames(const OperationContext& context,
                                const CIMObjectPath& classReference,
                                ObjectPathResponseHandler& handler) override {
        _check(context, classReference);
        Array<CIMObjectPath> paths;
        for (Uint32 i = 0; i < _deviceIDs.size(); i++) {
            paths.append(_instanceOf(_deviceIDs[i]).getPath());
        }
        handler.processing();
        handler.deliver(paths);
        handler.complete();
    }

    void modifyInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        const Boolean, const CIMPropertyList&, ResponseHandler&) override {
        throw CIMNotSupportedException("SampleDiskProvider does not support modifyInstance.");
    }

    void createInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        ObjectPathResponseHandler&) override {
        throw CIMNotSupportedException("SampleDiskProvider does not support createInstance.");
    }

    void deleteInstance(const OperationContext&, const CIMObjectPath&, ResponseHandler&) override {
        throw CIMNotSupportedException("SampleDiskProvider does not support deleteInstance.");
    }

    void associatorNames(const OperationContext& context, const CIMObjectPath& objectName,
                         const CIMName&, const CIMName&, const String&, const String&,
                         ObjectPathResponseHandler& handler) override {
        Array<CIMObjectPath> farEnds;
        if (objectName.getClassName().equal("Sample_System")) {
            farEnds = _cimom.enumerateInstanceNames(context, "root/sample", "Sample_Disk");
        } else {
            CIMClient client;
            client.connectLocal();
            farEnds = client.enumerateInstanceNames("root/sample", "Sample_System");
            client.disconnect();
        }
        handler.processing();
        handler.deliver(farEnds);
        handler.complete();
    }

    void associators(const OperationContext&, const CIMObjectPath&, const CIMName&, const CIMName&,
                     const String&, const String&, const Boolean, const Boolean,
                     const CIMPropertyList&, ObjectResponseHandler&) override {
        throw CIMNotSupportedException("SampleDiskProvider does not support associators.");
    }

    void references(const OperationContext&, const CIMObjectPath&, const CIMName&, const String&,
                    const Boolean, const Boolean, const CIMPropertyList&,
                    ObjectResponseHandler&) override {
        throw CIMNotSupportedException("SampleDiskProvider does not support references.");
    }

    void referenceNames(const OperationContext&, const CIMObjectPath&, const CIMName&,
                        const String&, ObjectPathResponseHandler&) override {
        throw CIMNotSupportedException("SampleDiskProvider does not support referenceNames.");
    }

private:
    void _check(const OperationContext& context, const CIMObjectPath& reference) const {
        IdentityContainer identity = context.get(IdentityContainer::NAME);
        if (identity.getUserName() != _permittedUser) {
            throw PEGASUS_CIM_EXCEPTION(CIM_ERR_ACCESS_DENIED,
                                        "Insufficient privilege for the user");
        }
        if (!reference.getClassName().equal("Sample_Disk")) {
            throw CIMNotSupportedException(String("SampleDiskProvider Invalid class name ") +
                                           reference.getClassName().getString());
        }
    }

    CIMInstance _instanceOf(const String& deviceID) const {
        CIMInstance disk("Sample_Disk");
        disk.addProperty(CIMProperty("SystemName", CIMValue(_systemName)));
        disk.addProperty(CIMProperty("DeviceID", CIMValue(deviceID)));
        Array<CIMKeyBinding> keys;
        keys.append(CIMKeyBinding("SystemName", _systemName, CIMKeyBinding::STRING));
        keys.append(CIMKeyBinding("DeviceID", deviceID, CIMKeyBinding::STRING));
        disk.setPath(CIMObjectPath(_systemName, "root/sample", "Sample_Disk", keys));
        return disk;
    }

    CIMOMHandle _cimom;
    String _permittedUser;
    Array<String> _deviceIDs;
    String _systemName;
};

PEGASUS_NAMESPACE_END

#endif
