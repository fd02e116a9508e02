// Provider of the association of the primordial storage pool with the extents of the
// usable disks, class KSV_AssociatedPrimordialDisks in root/ksv.
#ifndef KSV_AssociatedPrimordialDisksProvider_h
#define KSV_AssociatedPrimordialDisksProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <ksvapi.h>
#include <KSV_Common.h>

#include "KSV_DiskDriveProvider.h"

PEGASUS_NAMESPACE_BEGIN

class KSV_Association;

class KSV_AssociatedPrimordialDisksProvider : public CIMAssociationProvider,
                                              public CIMInstanceProvider {
public:
    KSV_AssociatedPrimordialDisksProvider();
    ~KSV_AssociatedPrimordialDisksProvider() override;

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
    // The texts, rules and ends of KSV_AssociatedPrimordialDisks: GroupComponent is the pool,
    // PartComponent a disk's extent.
    KSV_Association _association();
    // associators, associatorNames, references and referenceNames: delivers each result to the
    // handler as soon as it is built, between processing() and complete().
    void _getRelatedInstances(const CIMObjectPath& objectName, const OperationContext& context,
                              bool includeQualifiers, bool includeClassOrigin,
                              const CIMPropertyList& propertyList, cim_method_e method,
                              cim_handler_u handler);
    // The primordial pool of a usable disk's extent; the usable disks' extents of the pool.
    void _deliverPoolOf(const String& deviceID, const KSV_DiskList& disks,
                        const CIMObjectPath& poolPath, const OperationContext& context,
                        bool includeQualifiers, bool includeClassOrigin,
                        const CIMPropertyList& propertyList, cim_method_e method,
                        cim_handler_u handler);
    void _deliverExtentsOf(const KSV_DiskList& disks, const CIMObjectPath& poolPath,
                           bool includeQualifiers, bool includeClassOrigin,
                           const CIMPropertyList& propertyList, cim_method_e method,
                           cim_handler_u handler);
    // The far end itself, its path, the association or its path, by the operation.
    void _deliverRelated(const CIMInstance& farEnd, const CIMObjectPath& extentPath,
                         const CIMObjectPath& poolPath, bool includeQualifiers,
                         bool includeClassOrigin, const CIMPropertyList& propertyList,
                         cim_method_e method, cim_handler_u handler);
    // getInstance, enumerateInstances and enumerateInstanceNames: delivers as it builds and
    // answers how many results it delivered. A list too big for memory throws std::bad_alloc.
    Uint32 _getInstances(const CIMObjectPath& objectPath, const OperationContext& context,
                         bool includeQualifiers, bool includeClassOrigin,
                         const CIMPropertyList& propertyList, cim_method_e method,
                         cim_handler_u handler);
    static Uint32 _requestedDiskId(const CIMObjectPath& objectPath);
    static CIMObjectPath _requestedPool(const CIMObjectPath& objectPath);

    CIMOMHandle _cimom;
    CIMName _assoClassName;
    CIMName _poolClassName;
    CIMName _extClassName;
    String _hostAddr;
    String _systemName;
    hashtable_t* _intHashTable;
    hashtable_t* _stringHashTable;
    Uint32 _maxInstCount;
};

PEGASUS_NAMESPACE_END

#endif
