// Provider of the disks' physical packages (vendor, model, serial number), class
// KSV_DiskDrivePackage in root/ksv.
#ifndef KSV_DiskDrivePackageProvider_h
#define KSV_DiskDrivePackageProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <ksvapi.h>

PEGASUS_NAMESPACE_BEGIN

class KSV_DiskDrivePackageProvider : public CIMInstanceProvider {
public:
    KSV_DiskDrivePackageProvider();
    // Providers are made by the module entry only: always throws CIMNotSupportedException.
    explicit KSV_DiskDrivePackageProvider(const CIMObjectPath& path);
    ~KSV_DiskDrivePackageProvider() override;

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
    CIMObjectPath buildObjectPath(const String& hostAddr, const String& tag) const;

private:
    // The packages of the present disks, or of the one disk named by a non-empty selector.
    Array<CIMInstance> _build_instances(const String& selector, bool includeQualifiers,
                                        bool includeClassOrigin,
                                        const CIMPropertyList& propertyList);
    Array<CIMObjectPath> _build_ref() const;
    // Sets the package's properties and path on a skeleton of the class.
    CIMInstance _describePackage(CIMInstance skeleton, const api_Disk_t& disk,
                                 const String& hostAddr) const;

    CIMOMHandle _cimom;
    String _hostAddr;
};

PEGASUS_NAMESPACE_END

#endif
