// Provider of the association of the storage system with its disk drives, class
// KSV_SystemDisk in root/ksv.
#ifndef KSV_SystemDiskProvider_h
#define KSV_SystemDiskProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

PEGASUS_NAMESPACE_BEGIN

class KSV_Association;
class KSV_SystemDevices;

class KSV_SystemDiskProvider : public CIMAssociationProvider, public CIMInstanceProvider {
public:
    KSV_SystemDiskProvider();
    ~KSV_SystemDiskProvider() override;

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
    // The texts, rules and ends of KSV_SystemDisk: GroupComponent is the system, PartComponent
    // a disk.
    KSV_Association _association();
    KSV_SystemDevices _systemDevices();
    // The far ends: the storage system seen from a disk, every present disk seen from the
    // system, nothing from any other class.
    Array<CIMInstance> _getRelatedInstances(const CIMObjectPath& objectName,
                                            const OperationContext& context, bool includeQualifiers,
                                            bool includeClassOrigin,
                                            const CIMPropertyList& propertyList);
    Array<CIMObjectPath> _getRelatedInstanceNames(const CIMObjectPath& objectName,
                                                  const OperationContext& context);
    // The disks whose associations references answers: the given disk as it stands, or every
    // present disk of the system.
    Array<CIMObjectPath> _referencedDisks(const CIMObjectPath& objectName,
                                          const OperationContext& context);
    // The associations of every present disk, or of the disk a non-empty DeviceID names.
    Array<CIMInstance> _getInstances(const String& deviceID, bool includeQualifiers,
                                     bool includeClassOrigin, const CIMPropertyList& propertyList);

    CIMOMHandle _cimom;
    CIMName _assoClassName;
    CIMName _sysClassName;
    Array<CIMName> _ddClassNames;
    CIMObjectPath _sysObjectPath;
    String _hostAddr;
    String _systemName;
    Uint8 _isQuadPort;
};

PEGASUS_NAMESPACE_END

#endif
