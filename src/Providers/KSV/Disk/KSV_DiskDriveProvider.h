// Provider of the array's physical disks, class KSV_DiskDrive in root/ksv.
#ifndef KSV_DiskDriveProvider_h
#define KSV_DiskDriveProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <ksvapi.h>
#include <KSV_Common.h>

PEGASUS_NAMESPACE_BEGIN

// The entry and exit lines of one operation or walk.
struct KSV_TraceTexts {
    const char* entry;
    const char* exit;
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
    static bool hasDeviceID(const api_Disk_t& disk, const String& deviceID);

    // Reads the disks of the selector under the global semaphore, in place of any earlier
    // read; true when the read succeeded. A failed read leaves the list empty.
    bool read(int64_t selector);

    Uint32 size() const { return _list.count; }
    const api_Disk_t& operator[](Uint32 index) const { return _list.disks[index]; }

    // Visits the present disks in list order.
    template <typename Visit>
    void forEachPresent(Visit&& visit) const {
        for (Uint32 i = 0; i < size(); i++) {
            if (!_list.disks[i].isAbsent)
                visit(_list.disks[i]);
        }
    }

    // Reads the disks of a selector (a failed read reads none) and visits the present ones.
    template <typename Visit>
    static void forEachPresentDisk(int64_t selector, Visit&& visit) {
        KSV_DiskList disks;
        disks.read(selector);
        disks.forEachPresent(visit);
    }
    // The same for the first present disk that matches, if any.
    template <typename Match, typename Use>
    static void forFirstPresentDisk(int64_t selector, Match&& match, Use&& use) {
        KSV_DiskList disks;
        disks.read(selector);
        for (Uint32 i = 0; i < disks.size(); i++) {
            if (!disks[i].isAbsent && match(disks[i])) {
                use(disks[i]);
                return;
            }
        }
    }
    // The first present disk of that DeviceID, reading only that disk where the library knows
    // it.
    template <typename Use>
    static void forPresentDisk(const String& deviceID, Use&& use) {
        forFirstPresentDisk(
            selectorOf(deviceID),
            [&deviceID](const api_Disk_t& disk) { return hasDeviceID(disk, deviceID); }, use);
    }

private:
    void release();

    api_DiskList_t _list;
};

// The steps that the disk providers' read operations share.
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

    // A class definition of root/ksv from the stored class cache, as a request asks for it.
    static CIMClass storedClass(CIMOMHandle& cimom, const CIMName& className,
                                bool includeQualifiers, bool includeClassOrigin,
                                const CIMPropertyList& propertyList);

    // getInstance of an instance provider: entry line, user gate and class check, then the
    // requested key, the instances built for it and the delivery of the one the path names.
    template <typename Key, typename Build>
    static void getInstance(const String& providerName, const KSV_TraceTexts& lines,
                            const CIMName& servedClass, const OperationContext& context,
                            const CIMObjectPath& path, InstanceResponseHandler& handler,
                            Key&& requestedKey, Build&& build) {
        log_message(4, "%s", lines.entry);
        KSV_CHECK_USER_ACCESS(context, providerName);
        checkClass(path, servedClass, providerName);
        const String key = requestedKey();
        deliverMatch(handler, path, build(key), providerName, key);
        log_message(4, "%s", lines.exit);
    }
    // An enumeration of an instance provider: the same steps, then every result built.
    template <typename Handler, typename Build>
    static void enumerate(const String& providerName, const KSV_TraceTexts& lines,
                          const CIMName& servedClass, const OperationContext& context,
                          const CIMObjectPath& classReference, Handler& handler, Build&& build) {
        log_message(4, "%s", lines.entry);
        KSV_CHECK_USER_ACCESS(context, providerName);
        checkClass(classReference, servedClass, providerName);
        deliverAll(handler, build());
        log_message(4, "%s", lines.exit);
    }

    // One instance per present disk of the DeviceID's selector (every disk for an empty one),
    // each described on its own copy of one skeleton of the class: copying a skeleton is much
    // cheaper than building one from the class for every disk.
    template <typename Describe>
    static Array<CIMInstance>
    describePresentDisks(CIMOMHandle& cimom, const CIMName& className, const String& deviceID,
                         bool includeQualifiers, bool includeClassOrigin,
                         const CIMPropertyList& propertyList, Describe&& describe) {
        const CIMInstance skeleton = KSV_Common::buildInstanceSkeleton(
            storedClass(cimom, className, includeQualifiers, includeClassOrigin, propertyList));
        Array<CIMInstance> instances;
        KSV_DiskList disks;
        disks.read(KSV_DiskList::selectorOf(deviceID));
        instances.reserveCapacity(disks.size());
        disks.forEachPresent(
            [&](const api_Disk_t& disk) { instances.append(describe(skeleton.clone(), disk)); });
        return instances;
    }
    // The objects that present disks describe, on the class fetched from the stored class
    // cache: the disk of a DeviceID (reading only that disk where the library knows it), or
    // every disk of the array that matches.
    template <typename Describe>
    static Array<CIMInstance>
    describeDiskOf(CIMOMHandle& cimom, const CIMName& className, const String& deviceID,
                   bool includeQualifiers, bool includeClassOrigin,
                   const CIMPropertyList& propertyList, Describe&& describe) {
        CIMClass definition =
            storedClass(cimom, className, includeQualifiers, includeClassOrigin, propertyList);
        Array<CIMInstance> described;
        KSV_DiskList::forPresentDisk(deviceID, [&](const api_Disk_t& disk) {
            described.append(describe(definition, disk));
        });
        return described;
    }
    // The KSV_DiskDrive instance of the present disk of a DeviceID, as the disk provider
    // describes it; none for any other DeviceID.
    static Array<CIMInstance> describeDiskDrive(CIMOMHandle& cimom, const String& deviceID,
                                                bool includeQualifiers, bool includeClassOrigin,
                                                const CIMPropertyList& propertyList,
                                                const String& hostAddr, const String& systemName,
                                                Uint8 isQuadPort);
    template <typename Match, typename Describe>
    static Array<CIMInstance> describeDisksWhere(CIMOMHandle& cimom, const CIMName& className,
                                                 bool includeQualifiers, bool includeClassOrigin,
                                                 const CIMPropertyList& propertyList, Match&& match,
                                                 Describe&& describe) {
        CIMClass definition =
            storedClass(cimom, className, includeQualifiers, includeClassOrigin, propertyList);
        Array<CIMInstance> described;
        KSV_DiskList::forEachPresentDisk(API_ALL_DISKS, [&](const api_Disk_t& disk) {
            if (match(disk))
                described.append(describe(definition, disk));
        });
        return described;
    }
    // One path per present disk of the array.
    template <typename Name>
    static Array<CIMObjectPath> namePresentDisks(Name&& name) {
        Array<CIMObjectPath> paths;
        KSV_DiskList disks;
        disks.read(API_ALL_DISKS);
        paths.reserveCapacity(disks.size());
        disks.forEachPresent([&](const api_Disk_t& disk) { paths.append(name(disk)); });
        return paths;
    }
};

// Holds a library hash table locked for one walk; empties and unlocks it once, on release or
// when left, also when the walk throws, so that every request starts from an empty table.
class KSV_LockedTable {
public:
    explicit KSV_LockedTable(hashtable_t* table);
    ~KSV_LockedTable();
    KSV_LockedTable(const KSV_LockedTable&) = delete;
    KSV_LockedTable& operator=(const KSV_LockedTable&) = delete;

    void release();

private:
    hashtable_t* _table;
    bool _held;
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
