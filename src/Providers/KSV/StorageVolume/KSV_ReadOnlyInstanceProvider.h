// The read-only instance providers of the array's sibling modules. Every read operation writes
// its trace lines, passes the array's user gate and refuses classes the provider does not serve;
// create, modify and delete are refused. A provider supplies its records, read from the array
// under the global semaphore, and how a record becomes an object path and an instance.
#ifndef KSV_ReadOnlyInstanceProvider_h
#define KSV_ReadOnlyInstanceProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/ProviderException.h>

#include <KSV_Common.h>

#include <cstdlib>
#include <initializer_list>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

template <typename Record>
class KSV_ReadOnlyInstanceProvider : public CIMInstanceProvider {
public:
    void initialize(CIMOMHandle& cimom) override { _cimom = cimom; }
    void terminate() override { delete this; }

    void getInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                     const Boolean includeQualifiers, const Boolean includeClassOrigin,
                     const CIMPropertyList& propertyList,
                     InstanceResponseHandler& handler) override {
        _enter("getInstance", context, instanceReference);
        for (const Record& record : _readRecordsNamed(instanceReference)) {
            const CIMObjectPath path = _pathOf(record);
            if (!KSV_Common::matchObjectPath(instanceReference, path))
                continue;
            const CIMInstance skeleton = _skeletonOf(path.getClassName(), includeQualifiers,
                                                     includeClassOrigin, propertyList);
            handler.processing();
            handler.deliver(_instanceOf(skeleton, record, path));
            handler.complete();
            _trace("<--", "getInstance");
            return;
        }
        throw CIMObjectNotFoundException(_providerName + " CIM Object not found.");
    }

    void enumerateInstances(const OperationContext& context, const CIMObjectPath& classReference,
                            const Boolean includeQualifiers, const Boolean includeClassOrigin,
                            const CIMPropertyList& propertyList,
                            InstanceResponseHandler& handler) override {
        _enter("enumerateInstances", context, classReference);
        const std::vector<Record> records = _readRecords(classReference.getClassName());
        const CIMInstance skeleton = _skeletonOf(classReference.getClassName(), includeQualifiers,
                                                 includeClassOrigin, propertyList);
        handler.processing();
        for (const Record& record : records)
            handler.deliver(_instanceOf(skeleton, record, _pathOf(record)));
        handler.complete();
        _trace("<--", "enumerateInstances");
    }

    void enumerateInstanceNames(const OperationContext& context,
                                const CIMObjectPath& classReference,
                                ObjectPathResponseHandler& handler) override {
        _enter("enumerateInstanceNames", context, classReference);
        const std::vector<Record> records = _readRecords(classReference.getClassName());
        handler.processing();
        for (const Record& record : records)
            handler.deliver(_pathOf(record));
        handler.complete();
        _trace("<--", "enumerateInstanceNames");
    }

    void modifyInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        const Boolean, const CIMPropertyList&, ResponseHandler&) override {
        throw CIMNotSupportedException(_providerName + " does not support modifyInstance.");
    }

    void createInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        ObjectPathResponseHandler&) override {
        throw CIMNotSupportedException(_providerName + " does not support createInstance.");
    }

    void deleteInstance(const OperationContext&, const CIMObjectPath&, ResponseHandler&) override {
        throw CIMNotSupportedException(_providerName + " does not support deleteInstance.");
    }

protected:
    KSV_ReadOnlyInstanceProvider(const String& providerName,
                                 std::initializer_list<const char*> servedClasses)
        : _providerName(providerName), _servedClasses(servedClasses) {}

    // The objects of one served class; none when the array cannot be read.
    virtual std::vector<Record> _readRecords(const CIMName& className) const = 0;
    // The objects among which getInstance looks for the one named; a provider whose keys
    // select one object in the array narrows the read.
    virtual std::vector<Record> _readRecordsNamed(const CIMObjectPath& name) const {
        return _readRecords(name.getClassName());
    }
    virtual CIMObjectPath _pathOf(const Record& record) const = 0;
    // Sets the properties other than the keys on a skeleton of the record's class.
    virtual void _describe(CIMInstance& instance, const Record& record) const = 0;

    CIMOMHandle _cimom;
    const String _providerName;

private:
    void _trace(const char* arrow, const char* operation) const {
        log_message(4, "%s %s::%s\n", arrow, (const char*)_providerName.getCString(), operation);
    }

    void _enter(const char* operation, const OperationContext& context,
                const CIMObjectPath& path) const {
        _trace("-->", operation);
        KSV_CHECK_USER_ACCESS(context, _providerName);
        if (!_serves(path.getClassName())) {
            throw CIMNotSupportedException(_providerName + " Invalid class name" +
                                           path.getClassName().getString());
        }
    }

    bool _serves(const CIMName& className) const {
        for (const char* served : _servedClasses) {
            if (className.equal(served))
                return true;
        }
        return false;
    }

    CIMInstance _skeletonOf(const CIMName& className, bool includeQualifiers,
                            bool includeClassOrigin, const CIMPropertyList& propertyList) {
        const CIMClass cimClass =
            KSV_Common::getStoredCIMClass(_cimom, OperationContext(), "root/ksv", className, false,
                                          includeQualifiers, includeClassOrigin, propertyList);
        return KSV_Common::buildInstanceSkeleton(cimClass);
    }

    // Keys come from the path, so that an instance and its name never disagree.
    CIMInstance _instanceOf(const CIMInstance& skeleton, const Record& record,
                            const CIMObjectPath& path) const {
        CIMInstance instance = skeleton.clone();
        const Array<CIMKeyBinding>& keys = path.getKeyBindings();
        for (Uint32 i = 0; i < keys.size(); i++)
            KSV_Common::setPropertyValue(instance, keys[i].getName().getString(),
                                         keys[i].getValue());
        _describe(instance, record);
        instance.setPath(path);
        return instance;
    }

    const std::vector<const char*> _servedClasses;
};

// Reads the present disks of the array, in the library's order, under the global semaphore;
// false (and no disks) when the read fails.
inline bool KSV_readPresentDisks(std::vector<api_Disk_t>& disks) {
    api_DiskList_t list = {0, nullptr};
    const int result =
        KSV_Common::callUnderSemaphore([&] { return api_getSystemDisks(API_ALL_DISKS, &list); });
    disks.clear();
    for (Uint32 i = 0; i < list.count; i++) {
        if (!list.disks[i].isAbsent)
            disks.push_back(list.disks[i]);
    }
    free(list.disks);
    return result == API_OK;
}

PEGASUS_NAMESPACE_END

#endif
