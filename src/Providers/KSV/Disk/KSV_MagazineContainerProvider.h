// Provider of the association of each disk drive package with the drive-cage magazine
// that holds it, class KSV_MagazineContainer in root/ksv.
#ifndef KSV_MagazineContainerProvider_h
#define KSV_MagazineContainerProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <ksvapi.h>

PEGASUS_NAMESPACE_BEGIN

class KSV_Association;

class KSV_MagazineContainerProvider : public CIMAssociationProvider, public CIMInstanceProvider {
public:
    KSV_MagazineContainerProvider();
    ~KSV_MagazineContainerProvider() override;

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
    // The texts, rules and ends of KSV_MagazineContainer: GroupComponent is the magazine,
    // PartComponent the package.
    KSV_Association _association();
    // The far ends: the packages of a magazine's present disks, or a package's magazine.
    Array<CIMInstance> _getRelatedInstances(const CIMObjectPath& objectName,
                                            const OperationContext& context, bool includeQualifiers,
                                            bool includeClassOrigin,
                                            const CIMPropertyList& propertyList);
    Array<CIMInstance> _packagesIn(const String& magazineTag, bool includeQualifiers,
                                   bool includeClassOrigin, const CIMPropertyList& propertyList);
    Array<CIMInstance> _magazineHolding(const String& packageTag, const OperationContext& context,
                                        bool includeQualifiers, bool includeClassOrigin,
                                        const CIMPropertyList& propertyList);
    // The path of the magazine holding the disk, as the drive-cage module names it.
    CIMObjectPath _magazineOf(const api_Disk_t& disk) const;
    Array<CIMObjectPath> _getRelatedInstanceNames(const CIMObjectPath& objectName,
                                                  const OperationContext& context);
    // The associations of every present disk, or of the disk a non-empty DeviceID names.
    Array<CIMInstance> _getInstances(const String& deviceID, bool includeQualifiers,
                                     bool includeClassOrigin, const CIMPropertyList& propertyList);

    CIMOMHandle _cimom;
    CIMName _assoClassName;
    CIMName _ddpClassName;
    Array<CIMName> _magClassNames;
    String _hostAddr;
    String _systemName;
};

PEGASUS_NAMESPACE_END

#endif
