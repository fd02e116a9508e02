#ifndef KSV_TESTS_SAMPLE_PROVIDERS_H
#define KSV_TESTS_SAMPLE_PROVIDERS_H

// Two small providers written the way the array's provider modules are: only OpenPegasus
// headers, so this file also compiles against a real OpenPegasus installation.

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>

PEGASUS_NAMESPACE_BEGIN

/// Serves "Sample_Disk" in "root/sample": one instance per disk ID given at construction,
/// keyed by SystemName (read from the internal cache at initialize) and DeviceID. Only the
/// permitted user may read them.
class SampleDiskProvider : public CIMInstanceProvider {
public:
    SampleDiskProvider(const String& permittedUser, const Array<String>& deviceIDs);

    void initialize(CIMOMHandle& cimom) override;
    void terminate() override;

    void getInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                     const Boolean includeQualifiers, const Boolean includeClassOrigin,
                     const CIMPropertyList& propertyList,
                     InstanceResponseHandler& handler) override;
    void enumerateInstances(const OperationContext& context, const CIMObjectPath& classReference,
                            const Boolean includeQualifiers, const Boolean includeClassOrigin,
                            const CIMPropertyList& propertyList,
                            InstanceResponseHandler& handler) override;
    void enumerateInstanceNames(const OperationContext& context,
                                const CIMObjectPath& classReference,
                                ObjectPathResponseHandler& handler) override;
    void modifyInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                        const CIMInstance& instanceObject, const Boolean includeQualifiers,
                        const CIMPropertyList& propertyList, ResponseHandler& handler) override;
    void createInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                        const CIMInstance& instanceObject,
                        ObjectPathResponseHandler& handler) override;
    void deleteInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                        ResponseHandler& handler) override;

private:
    void _checkUser(const OperationContext& context) const;
    void _checkClass(const CIMObjectPath& reference) const;
    CIMObjectPath _pathOf(const String& deviceID) const;
    CIMInstance _instanceOf(const String& deviceID) const;

    CIMOMHandle _cimom;
    String _permittedUser;
    Array<String> _deviceIDs;
    String _systemName;
};

/// Serves "Sample_SystemDisk": the system (found through a local client connection) as
/// GroupComponent, each disk (found through the server handle) as PartComponent.
class SampleSystemDiskProvider : public CIMAssociationProvider {
public:
    void initialize(CIMOMHandle& cimom) override;
    void terminate() override;

    void associators(const OperationContext& context, const CIMObjectPath& objectName,
                     const CIMName& associationClass, const CIMName& resultClass,
                     const String& role, const String& resultRole, const Boolean includeQualifiers,
                     const Boolean includeClassOrigin, const CIMPropertyList& propertyList,
                     ObjectResponseHandler& handler) override;
    void associatorNames(const OperationContext& context, const CIMObjectPath& objectName,
                         const CIMName& associationClass, const CIMName& resultClass,
                         const String& role, const String& resultRole,
                         ObjectPathResponseHandler& handler) override;
    void references(const OperationContext& context, const CIMObjectPath& objectName,
                    const CIMName& resultClass, const String& role, const Boolean includeQualifiers,
                    const Boolean includeClassOrigin, const CIMPropertyList& propertyList,
                    ObjectResponseHandler& handler) override;
    void referenceNames(const OperationContext& context, const CIMObjectPath& objectName,
                        const CIMName& resultClass, const String& role,
                        ObjectPathResponseHandler& handler) override;

private:
    Array<CIMObjectPath> _farEnds(const OperationContext& context, const CIMObjectPath& objectName);
    Array<CIMInstance> _links(const OperationContext& context, const CIMObjectPath& objectName);

    CIMOMHandle _cimom;
};

PEGASUS_NAMESPACE_END

#endif
