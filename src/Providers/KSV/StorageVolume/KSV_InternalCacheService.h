// The process-wide internal cache of the array's provider modules: the array's identity, the
// caching policy and the store of class definitions that every instance is built from.
#ifndef KSV_InternalCacheService_h
#define KSV_InternalCacheService_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <atomic>
#include <ctime>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <unordered_map>

PEGASUS_NAMESPACE_BEGIN

typedef Uint32 cim_policy_t;

// The stored classes whose names fall into one quarter of the store. Each entry keeps the
// full class (all properties, qualifiers and class origins) and the filtered variants that
// requests asked for, keyed by their flags and property list.
struct KSV_CIMClassHashTable {
    struct StoredClass {
        CIMClass fullClass;
        std::map<std::string, CIMClass> variants;
    };

    mutable std::shared_mutex lock;
    std::unordered_map<std::string, StoredClass> classes; // key: "namespace:class", folded
};

class KSV_InternalCacheService {
public:
    // The one service of the process, created on first use.
    static KSV_InternalCacheService* getInstance();
    // Drops the service and everything it stores; only while no provider uses it.
    static void destroy();

    cim_policy_t getPolicy() const;
    void setPolicy(cim_policy_t policy);

    // Reads the array's identity unless it has been read; false when the array cannot be read
    // now (the next call tries again). The identity does not change while the array runs.
    bool initSystemInfo();
    // The service with the identity read: CIMOperationFailedException naming the requester
    // when the array cannot be read.
    static KSV_InternalCacheService& withSystemInfo(const String& requester);

    // The identity as last read: empty texts and zeros before it has been read.
    String getSystemAddress() const; // dotted IPv4 management address
    String getSystemName() const;
    Uint8 isQuadPortSystem() const;
    Uint32 getSystemID() const;
    int getSystemType() const;
    String getSystemHostName() const;

    // Which of the four class tables holds the class.
    static Uint32 getClassHashArrayIndex(const CIMName& className);

    // The full class definition (not local only, with qualifiers and class origins, all
    // properties) as the CIM server holds it.
    CIMClass getClassFromRepository(CIMOMHandle& cimom, const OperationContext& context,
                                    const CIMNamespaceName& nameSpace, const CIMName& className);

    // The class as a getClass request with these arguments answers it, served from the store
    // (filled through the server on first use). Local-only requests are passed to the server
    // unstored: no provider of the array makes them. The returned class is shared with the
    // store and must not be changed.
    CIMClass getStoredCIMClass(CIMOMHandle& cimom, const OperationContext& context,
                               const CIMNamespaceName& nameSpace, const CIMName& className,
                               bool localOnly, bool includeQualifiers, bool includeClassOrigin,
                               const CIMPropertyList& propertyList);

private:
    static const Uint32 CLASS_TABLE_COUNT = 4;

    KSV_InternalCacheService();
    ~KSV_InternalCacheService();
    KSV_InternalCacheService(const KSV_InternalCacheService&) = delete;
    KSV_InternalCacheService& operator=(const KSV_InternalCacheService&) = delete;

    // The array's identity, guarded by _identityLock.
    mutable std::mutex _identityLock;
    String _systemAddress;
    String _systemName;
    std::atomic<cim_policy_t> _policy;
    time_t _getStorageArrayUpdateTime; // when the identity was last read
    String _systemHostName;
    Uint8 _isQuadPort;
    Uint32 _systemID;
    int _systemType;
    KSV_CIMClassHashTable g_cimclassTable[CLASS_TABLE_COUNT];
};

PEGASUS_NAMESPACE_END

#endif
