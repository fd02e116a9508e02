// Provider of the disks' firmware, one identity per firmware version, class
// KSV_DiskSoftwareIdentity in root/ksv.
#ifndef KSV_DiskSoftwareIdentityProvider_h
#define KSV_DiskSoftwareIdentityProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <ksvapi.h>

PEGASUS_NAMESPACE_BEGIN

class KSV_DiskSoftwareIdentityProvider : public CIMInstanceProvider {
public:
    KSV_DiskSoftwareIdentityProvider();
    // Providers are made by the module entry only: always throws CIMNotSupportedException.
    explicit KSV_DiskSoftwareIdentityProvider(const CIMObjectPath& path);
    ~KSV_DiskSoftwareIdentityProvider() override;

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

    // Builders shared with the association providers; they read only their arguments.
    CIMInstance build_instance(CIMClass cimClass, const api_Disk_t& disk,
                               const String& hostAddr) const;
    CIMObjectPath buildObjectPath(const String& hostAddr, const String& instanceID) const;
    // The key of the identity of one firmware version.
    String makeInstanceID(const String& version) const;

private:
    // One identity per distinct firmware version among the present disks, in the order of
    // first appearance.
    Array<CIMInstance> _build_instances(bool includeQualifiers, bool includeClassOrigin,
                                        const CIMPropertyList& propertyList);
    Array<CIMObjectPath> _build_ref() const;

    CIMOMHandle _cimom;
    String _hostAddr;
    hashtable_t* _stringHashTable;
};

PEGASUS_NAMESPACE_END

#endif
