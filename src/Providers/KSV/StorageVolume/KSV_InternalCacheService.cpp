#include "KSV_InternalCacheService.h"

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Provider/ProviderException.h>

#include <KSV_Common.h>

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <functional>
#include <mutex>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

namespace {

// Requests differ mostly in their flags; property lists beyond this many per class are
// filtered for each request rather than stored.
const size_t MAX_VARIANTS_PER_CLASS = 16;

std::atomic<KSV_InternalCacheService*> theService(nullptr);
std::mutex theServiceLock;

// The service goes with this module: the server unloads the module after its providers (and
// the modules that link it) are gone, and what the service holds must not outlive the code
// that releases it.
struct ReleaseAtUnload {
    ~ReleaseAtUnload() { KSV_InternalCacheService::destroy(); }
} releaseAtUnload;

// CIM names compare without regard to case; the store keys on the folded text.
std::string folded(const String& name) {
    std::string text(static_cast<const char*>(name.getCString()));
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string classKeyOf(const CIMNamespaceName& nameSpace, const CIMName& className) {
    return folded(nameSpace.getString()) + ":" + folded(className.getString());
}

std::string variantKeyOf(bool includeQualifiers, bool includeClassOrigin,
                         const CIMPropertyList& propertyList) {
    std::string key;
    key += includeQualifiers ? 'q' : '-';
    key += includeClassOrigin ? 'o' : '-';
    if (propertyList.isNull())
        return key + "*";
    std::vector<std::string> names;
    for (Uint32 i = 0; i < propertyList.size(); i++)
        names.push_back(folded(propertyList[i].getString()));
    std::sort(names.begin(), names.end());
    for (const std::string& name : names)
        key += "," + name;
    return key;
}

bool isListed(const CIMName& name, const CIMPropertyList& propertyList) {
    for (Uint32 i = 0; i < propertyList.size(); i++) {
        if (propertyList[i].equal(name))
            return true;
    }
    return false;
}

void keepListedProperties(CIMClass& cimClass, const CIMPropertyList& propertyList) {
    for (Uint32 i = cimClass.getPropertyCount(); i > 0; i--) {
        if (!isListed(cimClass.getProperty(i - 1).getName(), propertyList))
            cimClass.removeProperty(i - 1);
    }
}

template <typename Element>
void removeAllQualifiers(Element element) {
    for (Uint32 i = element.getQualifierCount(); i > 0; i--)
        element.removeQualifier(i - 1);
}

void removeQualifiers(CIMClass& cimClass) {
    removeAllQualifiers<CIMClass&>(cimClass);
    for (Uint32 i = 0; i < cimClass.getPropertyCount(); i++)
        removeAllQualifiers(cimClass.getProperty(i));
    for (Uint32 i = 0; i < cimClass.getMethodCount(); i++) {
        CIMMethod method = cimClass.getMethod(i);
        removeAllQualifiers(method);
        for (Uint32 j = 0; j < method.getParameterCount(); j++)
            removeAllQualifiers(method.getParameter(j));
    }
}

void clearClassOrigins(CIMClass& cimClass) {
    for (Uint32 i = 0; i < cimClass.getPropertyCount(); i++)
        cimClass.getProperty(i).setClassOrigin(CIMName());
    for (Uint32 i = 0; i < cimClass.getMethodCount(); i++)
        cimClass.getMethod(i).setClassOrigin(CIMName());
}

CIMClass filteredClass(const CIMClass& fullClass, bool includeQualifiers, bool includeClassOrigin,
                       const CIMPropertyList& propertyList) {
    CIMClass variant = fullClass.clone();
    if (!propertyList.isNull())
        keepListedProperties(variant, propertyList);
    if (!includeQualifiers)
        removeQualifiers(variant);
    if (!includeClassOrigin)
        clearClassOrigins(variant);
    return variant;
}

// The stored variant, or an uninitialized class; fullClass gets the stored full class if any.
CIMClass storedVariant(const KSV_CIMClassHashTable& table, const std::string& classKey,
                       const std::string& variantKey, CIMClass& fullClass) {
    std::shared_lock<std::shared_mutex> reading(table.lock);
    auto entry = table.classes.find(classKey);
    if (entry == table.classes.end())
        return CIMClass();
    fullClass = entry->second.fullClass;
    auto variant = entry->second.variants.find(variantKey);
    return variant == entry->second.variants.end() ? CIMClass() : variant->second;
}

CIMClass storeFullClass(KSV_CIMClassHashTable& table, const std::string& classKey,
                        const CIMClass& fullClass) {
    std::unique_lock<std::shared_mutex> writing(table.lock);
    return table.classes.emplace(classKey, KSV_CIMClassHashTable::StoredClass{fullClass, {}})
        .first->second.fullClass;
}

// Keeps the variant unless the class holds enough of them; answers the stored one.
CIMClass storeVariant(KSV_CIMClassHashTable& table, const std::string& classKey,
                      const std::string& variantKey, const CIMClass& variant) {
    std::unique_lock<std::shared_mutex> writing(table.lock);
    auto entry = table.classes.find(classKey);
    if (entry == table.classes.end())
        return variant;
    std::map<std::string, CIMClass>& variants = entry->second.variants;
    auto stored = variants.find(variantKey);
    if (stored != variants.end())
        return stored->second;
    if (variants.size() < MAX_VARIANTS_PER_CLASS)
        variants.emplace(variantKey, variant);
    return variant;
}

// The identity and the management address are read as one: the identity counts as read only
// when both reads succeed.
bool readIdentity(api_SystemInfo_t& info, String& address) {
    api_DualIP_t addresses;
    const int result = KSV_Common::callUnderSemaphore([&] {
        const int infoResult = api_getSystemInfo(&info);
        return infoResult != API_OK ? infoResult : api_getSystemDualIP(&addresses);
    });
    if (result != API_OK)
        return false;
    char text[INET_ADDRSTRLEN] = {};
    inet_ntop(AF_INET, &addresses.ipv4, text, sizeof text);
    address = text;
    return true;
}

} // namespace

KSV_InternalCacheService::KSV_InternalCacheService()
    : _policy(0), _getStorageArrayUpdateTime(0), _isQuadPort(0), _systemID(0), _systemType(0) {}

KSV_InternalCacheService::~KSV_InternalCacheService() {}

KSV_InternalCacheService* KSV_InternalCacheService::getInstance() {
    KSV_InternalCacheService* service = theService.load(std::memory_order_acquire);
    if (service)
        return service;
    std::lock_guard<std::mutex> guard(theServiceLock);
    service = theService.load(std::memory_order_relaxed);
    if (!service) {
        service = new KSV_InternalCacheService();
        theService.store(service, std::memory_order_release);
    }
    return service;
}

void KSV_InternalCacheService::destroy() {
    std::lock_guard<std::mutex> guard(theServiceLock);
    delete theService.exchange(nullptr, std::memory_order_acq_rel);
}

cim_policy_t KSV_InternalCacheService::getPolicy() const {
    return _policy.load();
}

void KSV_InternalCacheService::setPolicy(cim_policy_t policy) {
    _policy.store(policy);
}

bool KSV_InternalCacheService::initSystemInfo() {
    {
        std::lock_guard<std::mutex> guard(_identityLock);
        if (_getStorageArrayUpdateTime != 0)
            return true;
    }
    // Read without the lock: callers that find the identity read are not held up by the
    // semaphore. Two first reads at once store the same identity twice.
    api_SystemInfo_t info;
    String address;
    if (!readIdentity(info, address))
        return false;
    std::lock_guard<std::mutex> guard(_identityLock);
    _systemName = info.name;
    _systemHostName = info.hostName;
    _systemID = info.id;
    _systemType = info.type;
    _isQuadPort = info.isQuadPort;
    _systemAddress = address;
    _getStorageArrayUpdateTime = time(nullptr);
    return true;
}

KSV_InternalCacheService& KSV_InternalCacheService::withSystemInfo(const String& requester) {
    KSV_InternalCacheService* service = getInstance();
    if (!service->initSystemInfo())
        throw CIMOperationFailedException(requester + " cannot read the array's identity");
    return *service;
}

String KSV_InternalCacheService::getSystemAddress() const {
    std::lock_guard<std::mutex> guard(_identityLock);
    return _systemAddress;
}

String KSV_InternalCacheService::getSystemName() const {
    std::lock_guard<std::mutex> guard(_identityLock);
    return _systemName;
}

Uint8 KSV_InternalCacheService::isQuadPortSystem() const {
    std::lock_guard<std::mutex> guard(_identityLock);
    return _isQuadPort;
}

Uint32 KSV_InternalCacheService::getSystemID() const {
    std::lock_guard<std::mutex> guard(_identityLock);
    return _systemID;
}

int KSV_InternalCacheService::getSystemType() const {
    std::lock_guard<std::mutex> guard(_identityLock);
    return _systemType;
}

String KSV_InternalCacheService::getSystemHostName() const {
    std::lock_guard<std::mutex> guard(_identityLock);
    return _systemHostName;
}

Uint32 KSV_InternalCacheService::getClassHashArrayIndex(const CIMName& className) {
    return static_cast<Uint32>(std::hash<std::string>()(folded(className.getString())) %
                               CLASS_TABLE_COUNT);
}

CIMClass KSV_InternalCacheService::getClassFromRepository(CIMOMHandle& cimom,
                                                          const OperationContext& context,
                                                          const CIMNamespaceName& nameSpace,
                                                          const CIMName& className) {
    return cimom.getClass(context, nameSpace, className, false, true, true, CIMPropertyList());
}

CIMClass KSV_InternalCacheService::getStoredCIMClass(
    CIMOMHandle& cimom, const OperationContext& context, const CIMNamespaceName& nameSpace,
    const CIMName& className, bool localOnly, bool includeQualifiers, bool includeClassOrigin,
    const CIMPropertyList& propertyList) {
    if (localOnly) {
        return cimom.getClass(context, nameSpace, className, true, includeQualifiers,
                              includeClassOrigin, propertyList);
    }
    KSV_CIMClassHashTable& table = g_cimclassTable[getClassHashArrayIndex(className)];
    const std::string classKey = classKeyOf(nameSpace, className);
    const std::string variantKey =
        variantKeyOf(includeQualifiers, includeClassOrigin, propertyList);

    CIMClass fullClass;
    CIMClass stored = storedVariant(table, classKey, variantKey, fullClass);
    if (!stored.isUninitialized())
        return stored;
    if (fullClass.isUninitialized()) {
        // Fetched without holding the table's lock: a class that two requests fetch at once is
        // stored once, by the first to finish.
        fullClass = storeFullClass(table, classKey,
                                   getClassFromRepository(cimom, context, nameSpace, className));
    }
    return storeVariant(
        table, classKey, variantKey,
        filteredClass(fullClass, includeQualifiers, includeClassOrigin, propertyList));
}

PEGASUS_NAMESPACE_END
