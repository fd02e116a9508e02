// Provider of the association of each disk drive with its storage extent, class
// KSV_DiskPresent in root/ksv.
#ifndef KSV_DiskPresentProvider_h
#define KSV_DiskPresentProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

PEGASUS_NAMESPACE_BEGIN

class KSV_Association;

class KSV_DiskPresentProvider : public CIMAssociationProvider, public CIMInstanceProvider {
public:
    KSV_DiskPresentProvider();
    ~KSV_DiskPresentProvider() override;

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
    // The texts, rules and ends of KSV_DiskPresent: Antecedent is the disk, Dependent its extent.
    KSV_Association _association();
    // The far end of one disk: its extent seen from the disk, the disk seen from the extent.
    Array<CIMInstance> _getRelatedInstances(const CIMObjectPath& objectName, bool includeQualifiers,
                                            bool includeClassOrigin,
                                            const CIMPropertyList& propertyList);
    Array<CIMObjectPath> _getRelatedInstanceNames(const CIMObjectPath& objectName);
    // The associations of every present disk, or of the disk a non-empty DeviceID names.
    Array<CIMInstance> _getInstances(const String& deviceID, bool includeQualifiers,
                                     bool includeClassOrigin, const CIMPropertyList& propertyList);

    CIMOMHandle _cimom;
    CIMName _assoClassName;
    Array<CIMName> _ddClassNames;
    CIMName _extClassName;
    String _hostAddr;
    String _systemName;
    Uint8 _isQuadPort;
};

PEGASUS_NAMESPACE_END

#endif
