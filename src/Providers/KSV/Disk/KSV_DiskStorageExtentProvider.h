// Provider of the primordial storage extent of every disk, class KSV_DiskStorageExtent
// in root/ksv.
#ifndef KSV_DiskStorageExtentProvider_h
#define KSV_DiskStorageExtentProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <ksvapi.h>

PEGASUS_NAMESPACE_BEGIN

class KSV_DiskStorageExtentProvider : public CIMInstanceProvider {
public:
    KSV_DiskStorageExtentProvider();
    // Providers are made by the module entry only: always throws CIMNotSupportedException.
    explicit KSV_DiskStorageExtentProvider(const CIMObjectPath& path);
    ~KSV_DiskStorageExtentProvider() override;

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
    CIMInstance buildInstance(const api_Disk_t* disk, const String& systemName,
                              const String& hostAddr, CIMClass& storedClass) const;
    CIMObjectPath buildObjectPath(const String& hostAddr, const String& deviceID,
                                  const String& systemName) const;

private:
    // The extents of the present disks, or of the one disk named by a non-empty deviceID.
    Array<CIMInstance> _build_instances(const String& deviceID, bool includeQualifiers,
                                        bool includeClassOrigin,
                                        const CIMPropertyList& propertyList);
    Array<CIMObjectPath> _build_ref() const;
    // Sets the extent's properties and path on a skeleton of the class.
    CIMInstance _describeExtent(CIMInstance skeleton, const api_Disk_t& disk,
                                const String& systemName, const String& hostAddr) const;

    CIMOMHandle _cimom;
    String _systemName;
    String _hostAddr;
};

PEGASUS_NAMESPACE_END

#endif
