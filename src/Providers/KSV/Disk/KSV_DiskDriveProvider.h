// Provider of the array's physical disks, class KSV_DiskDrive in root/ksv.
#ifndef KSV_DiskDriveProvider_h
#define KSV_DiskDriveProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <ksvapi.h>

PEGASUS_NAMESPACE_BEGIN

// The steps that every disk instance provider's read operations share.
class KSV_DiskProviderSupport {
public:
    // Refuses a request for another class than the one the provider serves.
    static void checkClass(const CIMObjectPath& path, const CIMName& servedClass,
                           const String& providerName);
    // The value of the first key of that name; a path without one is refused.
    static String requiredKey(const CIMObjectPath& path, const String& keyName,
                              const String& providerName);
    // Delivers the first instance whose path names the requested object; throws the provider's
    // not-found error, ending with the requested key, when none does.
    static void deliverMatch(InstanceResponseHandler& handler, const CIMObjectPath& requestPath,
                             const Array<CIMInstance>& instances, const String& providerName,
                             const String& requestedKey);

    // processing(), one delivery per result in order, complete().
    template <typename Handler, typename Result>
    static void deliverAll(Handler& handler, const Array<Result>& results) {
        handler.processing();
        for (Uint32 i = 0; i < results.size(); i++)
            handler.deliver(results[i]);
        handler.complete();
    }
};

// The disk records of one read of the array, read under the global semaphore and released
// with this object. Every disk provider reads its disks through it.
class KSV_DiskList {
public:
    // No records until read.
    KSV_DiskList();
    ~KSV_DiskList();
    KSV_DiskList(const KSV_DiskList&) = delete;
    KSV_DiskList& operator=(const KSV_DiskList&) = delete;

    // The library's selector of every disk, or of the disk a non-empty DeviceID names; an
    // unknown DeviceID leaves the selector of every disk.
    static int64_t selectorOf(const String& deviceID);

    // Reads the disks of the selector under the global semaphore, in place of any earlier
    // read; true when the read succeeded. A failed read leaves the list empty.
    bool read(int64_t selector);

    Uint32 size() const { return _list.count; }
    const api_Disk_t& operator[](Uint32 index) const { return _list.disks[index]; }

private:
    void release();

    api_DiskList_t _list;
};

class KSV_DiskDriveProvider : public CIMInstanceProvider {
public:
    KSV_DiskDriveProvider();
    // Providers are made by the module entry only: always throws CIMNotSupportedException.
    explicit KSV_DiskDriveProvider(const CIMObjectPath& path);
    ~KSV_DiskDriveProvider() override;

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
    CIMInstance build_instance(CIMClass cimClass, const api_Disk_t& disk, const String& hostAddr,
                               const String& systemName, const Uint8& isQuadPort) const;
    CIMObjectPath buildObjectPath(CIMName className, const String& hostAddr, const String& deviceID,
                                  const String& systemName) const;
    // OperationalStatus of a disk; static because the storage extents report it too.
    static void _addOperationalStatus(const api_Disk_t& disk, CIMInstance& instance);

private:
    // The instances of the present disks, or of the one disk named by a non-empty deviceID.
    Array<CIMInstance> _build_instances(const String& deviceID, bool includeQualifiers,
                                        bool includeClassOrigin,
                                        const CIMPropertyList& propertyList);
    // The paths of the present disks when className is KSV_DiskDrive, else none.
    Array<CIMObjectPath> _build_ref(CIMName className) const;
    // Sets the disk's properties and path on a skeleton of the class.
    CIMInstance _describeDisk(CIMInstance skeleton, const api_Disk_t& disk, const String& hostAddr,
                              const String& systemName, Uint8 isQuadPort) const;

    CIMOMHandle _cimom;
    String _systemName;
    String _hostAddr;
    Uint8 _isQuadPort;
};

PEGASUS_NAMESPACE_END

#endif
