// KSV_Common: the static helpers that every provider module of the array shares.
//
// Each group of helpers below has its own source file (named in the group's banner); a new
// group gets a banner here and a file of its own. The class holds no data: state that must
// outlive a call lives in the internal cache service of the StorageVolume module or, for the
// few process-wide caches, in the group's source file behind a lock.
#ifndef KSV_Common_h
#define KSV_Common_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <ksvapi.h>

#include <ctime>
#include <utility>

PEGASUS_NAMESPACE_BEGIN

// The response handler a streaming provider was given, by the kind of operation.
union cim_handler_u {
    ObjectResponseHandler* objectHandler;         // associators, references
    ObjectPathResponseHandler* objectPathHandler; // associatorNames, referenceNames, names
    InstanceResponseHandler* instanceHandler;     // getInstance, enumerateInstances
};

// The operation for which a cim_handler_u was received; selects the union's member.
enum cim_method_e {
    KSVCIM_ASSOCIATORS = 0,
    KSVCIM_ASSOCIATORNAMES = 1,
    KSVCIM_REFERENCES = 2,
    KSVCIM_REFERENCENAMES = 3,
    KSVCIM_GETINSTANCE = 4,
    KSVCIM_ENUMERATEINSTANCES = 5,
    KSVCIM_ENUMERATEINSTANCENAMES = 6
};

// Refuses the request's user with the access-denied CIM error unless the management library
// grants it; names the calling provider's source and line in the error.
#define KSV_CHECK_USER_ACCESS(context, sourceName)                                                 \
    KSV_Common::checkUserAccess((context), (sourceName), __LINE__)

// Status codes of the typed readers.
enum {
    KSV_FOUND = 0,     // found and not null: the output holds the value
    KSV_NOT_FOUND = 3, // no such property or parameter
    KSV_NULL_VALUE = 4 // present, but null: the output is untouched
};

class KSV_Common {
public:
    KSV_Common() {}
    ~KSV_Common() {}

    // ---- Provider services (KSV_CommonServices.cpp) -----------------------------------------

    // The user on whose behalf the request runs; empty when the context names none.
    static String getUserName(const OperationContext& context);

    // Opens the management library for the request's user. A refusal throws
    // TraceableCIMException(CIM_ERR_ACCESS_DENIED, "Insufficient privilege for the user",
    // sourceName, line). Use KSV_CHECK_USER_ACCESS.
    static void checkUserAccess(const OperationContext& context, const String& sourceName,
                                Uint32 line);

    // Makes one array call under the library's global semaphore. A failed wait makes no call
    // and answers the wait's code without posting; otherwise the semaphore is posted exactly
    // once, after the call, and the call's code is answered.
    template <typename ArrayCall>
    static int callUnderSemaphore(ArrayCall&& arrayCall);

    // processing(), complete() or one delivery on the handler held for the operation kind;
    // other kinds are ignored. Name operations get the instance's path delivered.
    static void handleProcessing(cim_handler_u handler, cim_method_e method);
    static void handleComplete(cim_handler_u handler, cim_method_e method);
    static void handleDeliver(cim_handler_u handler, cim_method_e method,
                              const CIMInstance& instance);

    // The caching policy held by the internal cache service.
    static Uint32 getPolicy();
    static void setPolicy(Uint32 policy);

    // ---- System identity (KSV_CommonIdentity.cpp) --------------------------------------------

    // root/PG_Internal:KSV_InternalCache.InstanceID="<systemName>-InternalCache" on host.
    static CIMObjectPath buildInternalCacheObjectPath(const String& host, const String& systemName);

    // One call through a local CIM client connection; client errors pass to the caller.
    static CIMValue invokeMethod(const CIMNamespaceName& nameSpace, const CIMObjectPath& path,
                                 const CIMName& methodName,
                                 const Array<CIMParamValue>& inParameters,
                                 Array<CIMParamValue>& outParameters);
    static Array<CIMObjectPath> enumerateInstanceNames(const CIMNamespaceName& nameSpace,
                                                       const CIMName& className);

    // The array's identity as the internal cache provider answers it. The forms taking the
    // server handle retry through it when the local client fails (except getSystemHostName).
    // A missing, renamed or null answer leaves the result empty (0 for numbers).
    static String getSystemName(CIMOMHandle& cimom);
    static String getSystemName();
    static Uint32 getSystemID();
    static Uint8 isQuadPortSystem(CIMOMHandle& cimom);
    static int getSystemType();
    static String getSystemHostName(CIMOMHandle& cimom);
    static String getSystemAddress(CIMOMHandle& cimom);

    // The path of the one KSV_StorageSystem, KSV_SystemPackage and KSV_StorageSystemView
    // instance, with the system's host and namespace root/ksv; empty when there is none.
    static CIMObjectPath getSystemObjectPath(CIMOMHandle& cimom);
    static CIMObjectPath getSystemPkgObjectPath(CIMOMHandle& cimom);
    static CIMObjectPath getSystemViewObjectPath(CIMOMHandle& cimom);

    // ---- Property and parameter accessors (KSV_CommonAccessors.cpp) --------------------------

    // Typed property readers: KSV_FOUND, KSV_NOT_FOUND or KSV_NULL_VALUE.
    static int getProperty(const CIMInstance& instance, const String& propertyName, Uint8& value);
    static int getProperty(const CIMInstance& instance, const String& propertyName, Uint16& value);
    static int getProperty(const CIMInstance& instance, const String& propertyName, Uint32& value);
    static int getProperty(const CIMInstance& instance, const String& propertyName, Uint64& value);
    static int getProperty(const CIMInstance& instance, const String& propertyName, Boolean& value);
    static int getProperty(const CIMInstance& instance, const String& propertyName,
                           CIMDateTime& value);
    static int getProperty(const CIMInstance& instance, const String& propertyName,
                           Array<String>& value);
    static int getProperty(const CIMInstance& instance, const String& propertyName,
                           CIMObjectPath& value);
    static int getProperty(const CIMInstance& instance, const String& propertyName,
                           Array<Sint32>& value);
    static int getProperty(const CIMInstance& instance, const String& propertyName,
                           Array<Uint16>& value);

    // Typed method-parameter readers. A parameter that is present only with a null value
    // answers KSV_NOT_FOUND.
    static int getParameter(const Array<CIMParamValue>& params, const String& paramName,
                            Uint8& value);
    static int getParameter(const Array<CIMParamValue>& params, const String& paramName,
                            Uint16& value);
    static int getParameter(const Array<CIMParamValue>& params, const String& paramName,
                            Uint32& value);
    static int getParameter(const Array<CIMParamValue>& params, const String& paramName,
                            Uint64& value);
    static int getParameter(const Array<CIMParamValue>& params, const String& paramName,
                            Boolean& value);
    static int getParameter(const Array<CIMParamValue>& params, const String& paramName,
                            CIMDateTime& value);
    static int getParameter(const Array<CIMParamValue>& params, const String& paramName,
                            CIMObjectPath& value);
    static int getParameter(const Array<CIMParamValue>& params, const String& paramName,
                            String& value);
    static int getParameter(const Array<CIMParamValue>& params, const String& paramName,
                            Array<Uint16>& value);
    static int getParameter(const Array<CIMParamValue>& params, const String& paramName,
                            Array<String>& value);

    // A property's value as a string (empty when absent or null), or a key's value.
    static String getStringProperty(const CIMInstance& instance, const String& propertyName);
    static String getStringProperty(const CIMObjectPath& path, const String& keyName);
    // A property's value; an empty value when the property is absent or the name is empty.
    static CIMValue getPropertyValue(const CIMInstance& instance, const String& propertyName);

    // Writers replace the value of a property the instance has and never add one.
    static void setPropertyValue(CIMInstance& instance, CIMName name, const String& value);
    // Keeps a literal from binding to the Boolean writer.
    static void setPropertyValue(CIMInstance& instance, CIMName name, const char* value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const Boolean& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const Uint8& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const Uint16& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const Uint32& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const Uint64& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const Sint16& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const Array<String>& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const Array<Uint16>& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const Array<Sint32>& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const Array<Uint64>& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const Array<Boolean>& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name,
                                 const Array<CIMDateTime>& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const CIMObjectPath& value);
    static void setPropertyValue(CIMInstance& instance, CIMName name, const CIMDateTime& value);
    // Replaces (or adds) the property with one holding the embedded instance.
    static void setPropertyValue(CIMInstance& instance, CIMName name, const CIMInstance& embedded);
    static void setPropertyValueToNull(CIMInstance& instance, CIMName name, CIMType type);

    // An instance of the class holding every property with its default value, qualifiers
    // and class origins included.
    static CIMInstance buildInstanceSkeleton(const CIMClass& cimClass);

    // The class definition from the internal cache service's class store. The class is
    // shared with the store: read it, or clone() it before changing it.
    static CIMClass getStoredCIMClass(CIMOMHandle& cimom, const OperationContext& context,
                                      const CIMNamespaceName& nameSpace, const CIMName& className,
                                      bool localOnly, bool includeQualifiers,
                                      bool includeClassOrigin, const CIMPropertyList& propertyList);

    // ---- Object-path matching and association builders (KSV_CommonPaths.cpp) -----------------

    // Whether two paths name the same object: hosts never matter (neither the paths' own nor
    // those inside reference keys); namespaces, class names and keys do.
    static bool matchObjectPath(const CIMObjectPath& path1, const CIMObjectPath& path2);
    // The same match of many candidates against one path, which is prepared once: keys as long
    // as a request may carry then cost one comparison per candidate, not one preparation.
    class PathMatcher {
    public:
        explicit PathMatcher(const CIMObjectPath& path);
        bool matches(const CIMObjectPath& candidate) const;

    private:
        CIMObjectPath _comparable;
    };

    // Checks a reference passed to a method: the namespace (set when missing) and the host,
    // which must be this system's by name or address.
    static bool verifyRefMethodParam(CIMObjectPath& ref, const CIMNamespaceName& nameSpace,
                                     const String& hostName);
    static bool verifyRefMethodParam(CIMObjectPath& ref, const CIMNamespaceName& nameSpace,
                                     const String& hostName, const CIMName& className);
    static bool verifyRefMethodParam(CIMObjectPath& ref, const CIMNamespaceName& nameSpace,
                                     const String& hostName, const Array<CIMName>& classNames);

    // Whether a reference of the association (the one named by role, if any) names objectName.
    // A role that names no reference property throws CIM_ERR_INVALID_PARAMETER.
    static bool _isInstanceValidReference(const CIMObjectPath& objectName,
                                          const CIMInstance& assocInstance, const String& role);
    static Array<CIMInstance> filterReferenceNames(const Array<CIMInstance>& assocInstances,
                                                   const CIMObjectPath& objectName,
                                                   const CIMName& resultClass, const String& role);
    // The far ends of an association instance seen from objectName.
    static Array<CIMObjectPath>
    filterAssocInstanceToTargetPaths(const CIMInstance& assocInstance,
                                     const CIMObjectPath& objectName,
                                     const Array<CIMName>& targetClassNames, const String& role);
    static Array<CIMInstance> filterAssocInstanceToTargetInstances(
        const CIMInstance& assocInstance, const CIMObjectPath& objectName,
        const Array<CIMInstance>& candidates, const Array<CIMName>& targetClassNames,
        const String& role);

    // Whether any key of the path holds the pool identifier (any letter case).
    static bool isPoolPath(const CIMObjectPath& path, const String& poolID);

    // Antecedent/Dependent associations in root/ksv; the references keep their hosts.
    static CIMObjectPath buildDepAssocPath(const String& host, const CIMName& className,
                                           const CIMObjectPath& antecedent,
                                           const CIMObjectPath& dependent);
    static CIMInstance buildDepAssocInstance(const String& host, const CIMName& className,
                                             const CIMObjectPath& antecedent,
                                             const CIMObjectPath& dependent,
                                             const CIMClass& assocClass);

    // Association paths whose keys are the references named by the roles, in the roles' order;
    // each reference gets the host given for it.
    static CIMObjectPath buildAssocPath(const CIMName& assocClassName, const String& role1,
                                        const String& role2, const CIMObjectPath& ref1,
                                        const CIMObjectPath& ref2, const String& host,
                                        const String& nameSpace);
    static CIMObjectPath buildAssocPath(const CIMName& assocClassName, const String& role1,
                                        const String& role2, const CIMObjectPath& ref1,
                                        const CIMObjectPath& ref2, const String& ref1Host,
                                        const String& ref2Host, const String& assocHost,
                                        const String& nameSpace);
    static CIMObjectPath buildAssocPath(const CIMName& assocClassName, const String& role1,
                                        const String& role2, const String& role3,
                                        const CIMObjectPath& ref1, const CIMObjectPath& ref2,
                                        const CIMObjectPath& ref3, const String& host,
                                        const String& nameSpace);
    // The association instance: the class's skeleton with the references set and the path
    // of the matching buildAssocPath.
    static CIMInstance buildAssocInstance(const CIMName& assocClassName, const String& role1,
                                          const String& role2, const CIMObjectPath& ref1,
                                          const CIMObjectPath& ref2, const CIMClass& assocClass,
                                          const String& host, const String& nameSpace);
    static CIMInstance buildAssocInstance(const CIMName& assocClassName, const String& role1,
                                          const String& role2, const CIMObjectPath& ref1,
                                          const CIMObjectPath& ref2, const CIMClass& assocClass,
                                          const String& ref1Host, const String& ref2Host,
                                          const String& assocHost, const String& nameSpace);
    static CIMInstance buildAssocInstance(const CIMName& assocClassName, const String& role1,
                                          const String& role2, const String& role3,
                                          const CIMObjectPath& ref1, const CIMObjectPath& ref2,
                                          const CIMObjectPath& ref3, const CIMClass& assocClass,
                                          const String& host, const String& nameSpace);

    // One reference of an association, made once for every instance that shares it: the path
    // with the host it is given, the value of its role's property and the key that names it in
    // the association's path, whose text is written once here rather than for each instance.
    class AssocEnd {
    public:
        AssocEnd(const String& role, const CIMObjectPath& path, const String& host);
        // Sets the role's property of the instance (when its class has one) and appends the
        // key to those of the instance's path.
        void addTo(CIMInstance& instance, Array<CIMKeyBinding>& keys) const;

    private:
        CIMName _role;
        CIMValue _value;
        CIMKeyBinding _key;
    };
    // The same instance as the two-reference, one-host buildAssocInstance, from prepared ends.
    static CIMInstance buildAssocInstance(const CIMName& assocClassName, const AssocEnd& end1,
                                          const AssocEnd& end2, const CIMClass& assocClass,
                                          const String& host, const String& nameSpace);

    // Membership: strings exactly, paths by matchObjectPath, class names without case.
    static bool isPartOfArray(const String& value, const Array<String>& values);
    static bool isPartOfArray(const CIMObjectPath& path, const Array<CIMObjectPath>& paths);
    static bool isPartOfArray(const CIMObjectPath& path, const Array<CIMInstance>& instances);
    static bool isPartOfArray(const CIMName& name, const Array<CIMName>& names);

    // ---- Utilities (KSV_CommonUtilities.cpp) -------------------------------------------------

    // The cap on association instances per response: the process's address-space soft limit
    // in decimal megabytes times the scale, both as wrapping 32-bit numbers.
    static Uint32 getInstanceThreshold(Uint32 maxInstScale);
    // The same arithmetic for a given soft limit in bytes.
    static Uint32 instanceThresholdFor(Uint64 softLimitBytes, Uint32 maxInstScale);

    // Local time as a CIM date-time with its UTC offset, and back.
    static CIMDateTime getCIMDateTime(time_t t);
    static time_t getDateTime(const CIMDateTime& dateTime);
    // Reads the date and time fields of a CIM date-time text: 0 for an interval or an empty
    // year, -1 for a negative field, a positive value otherwise.
    static int _formatDateTime(const char* text, struct tm* out);
    // "GMT+<hours>" east of UTC, "GMT-<hours>" at or west of it.
    static String getTimeZone();

    // Fills str with len - 1 random characters of [a-zA-Z0-9_] and a terminator; panics on
    // an empty buffer.
    static void generate_random_string(char* str, Uint32 len);

    // 0 for nodes 0 and 1, 1 for 2 and 3, ... 3 for 6 and 7; -1 otherwise.
    static int getNodePairIndex(int node);

    // What follows "QUANOR:" in the identifier; empty without it.
    static String extractFromInstanceID(const String& instanceID);

    // The system's IPv4 (ipType 1) or IPv6 (ipType 2) address, fetched once per process.
    static String getSystemIPAddr(int ipType);

    // Port conversions. They read the array's port table: callers hold the semaphore as they
    // do for any other array call.
    static Uint16 getPortLPID(Uint64 portWWN);
    static Uint16 getPortLPID(String& iscsiName);
    // The count and a new[] array of packed port IDs, released by the caller with delete[].
    static std::pair<Uint32, Uint16*> getPortIDs(Array<String> lpids);
    static Uint16 getPortOperationalStatus(api_port_status_t status);
    static Uint16 getPortHealthState(api_port_status_t status);

    // ---- Storage settings and RAID properties (KSV_CommonSettings.cpp) ------------------------

    // One RAID level with its CIM redundancy pair and the array's layout defaults.
    struct RaidMapping {
        int raidType;
        Uint16 packageRedundancy;
        Uint16 dataRedundancy;
        Boolean noSinglePointOfFailure;
        Uint16 extentStripeLengthDefault;
        Uint64 userDataStripeDepthDefaultFCNL; // bytes, Fibre Channel and nearline disks
        Uint64 userDataStripeDepthDefaultSSD;  // bytes, solid-state disks
    };
    // RAID 0, 10, 50 and 60, searched in this order.
    static const RaidMapping raidMappingTable[4];

    // "RAID0", "RAID10", "RAID50" or "RAID60"; empty for any other level.
    static String getRaidTypeStr(int raidType);
    // The level of a redundancy pair: 0, 10, 50, 60, or 99 when none matches.
    static int returnRAIDType(Uint16 packageRedundancy, Uint16 dataRedundancy);
    // Whether two pairs map to the same level (two unmatched pairs count as the same). Data
    // redundancy comes first here, unlike in returnRAIDType.
    static bool isSameRAID(Uint16 dataRedundancy1, Uint16 packageRedundancy1,
                           Uint16 dataRedundancy2, Uint16 packageRedundancy2);
    static bool isSameRAID(Uint16 raidType, Uint16 dataRedundancy, Uint16 packageRedundancy);

    // Kinds of setting identifiers, recognised anywhere in the text (case-sensitive).
    static bool isLegacyVolumeFixedSettingFromConcretePoolCap(const String& instanceID);
    static bool isDSPFixedSettingFromConcreteOrPrimordialPoolCap(const String& instanceID);
    static bool isFixedSettingFromConcretePoolCap(const String& instanceID);
    static bool isGenDefSettingFromConcretePoolCap(const String& instanceID);
    static bool isGenGoalSettingFromConcretePoolCap(const String& instanceID);
    static bool isGenSettingFromConcretePoolCap(const String& instanceID);

    // The bounds of a dynamic pool's allocation unit in bytes, by the array's node count.
    // Beyond eight nodes min and def are left as passed.
    static void getDSPAllocUnitBoundaryValues(Uint64& max, Uint64& min, Uint64& def);

    // root/ksv:<className>.InstanceID="<instanceID>" on the system's address.
    static CIMObjectPath buildSettingCapObjectPath(const String& systemAddress,
                                                   const CIMName& className,
                                                   const String& instanceID);

    // Fills a setting or capabilities instance (a skeleton of its class) for the RAID level:
    // identity, caption, redundancy and the properties that the identifier's kind and the
    // instance's class call for, and sets the instance's path. Only properties the class has
    // are written, with these types: the delta reservations uint8 in settings and uint16 in
    // capabilities, stripe depths, allocation units, SpaceLimit and DSPSnapSpaceGrowWarning
    // uint64, geometry and Policy uint32, NoSinglePointOfFailure(Default), ThinlyProvisioned
    // and SpaceLimitSupported boolean, every other number uint16.
    static void fillInRAIDProperties(CIMInstance& instance, const String& systemAddress,
                                     const String& instanceID, const String& elementName,
                                     int raidType);
    // ---- End of storage settings and RAID properties ----------------------------------------
};

template <typename ArrayCall>
int KSV_Common::callUnderSemaphore(ArrayCall&& arrayCall) {
    const int waitResult = cim_sem_wait();
    if (waitResult != 0)
        return waitResult;
    struct PostOnExit {
        ~PostOnExit() { cim_sem_post(); }
    } postOnExit;
    return arrayCall();
}

// ---- Method authorization (KSV_CommonAuthorization.cpp) ----------------------------------------
//
// Whether the user, calling from ipAddr, may perform the storage-management method that the
// input parameters describe: 0 when every operation key the method needs is granted, 3 when
// the parameters select no key (nothing is asked), otherwise the first refusal's code or the
// failure of classifying a volume. Parameters are matched by name without regard to case;
// null values and references without a class name count as absent.

// The return-to-pool key for the volume whose DeviceID the element carries (looked up under
// the semaphore): 0 with the key, 3 for a kind without a key, API_E_INVALID for an invalid
// volume, the lookup's code (API_E_NOT_FOUND when nothing matches) otherwise.
int handleDeleteVolumeMethod(CIMObjectPath& element, String& operationKey);

int authorize_CreateOrModifyElemFromStoragePool(const String& userName, const String& ipAddr,
                                                const Array<CIMParamValue>& inParameters);
int authorize_ModifySynchronization(const String& userName, const String& ipAddr,
                                    const Array<CIMParamValue>& inParameters);
int authorize_AllocatedFromStoragePoolModifyInstance(const String& userName, const String& ipAddr,
                                                     const Array<CIMParamValue>& inParameters);
int authorize_CreateOrModifyStoragePool(const String& userName, const String& ipAddr,
                                        const Array<CIMParamValue>& inParameters);
int authorize_DeleteStoragePool(const String& userName, const String& ipAddr,
                                const Array<CIMParamValue>& inParameters);
int authorize_DeleteStorageVolume(const String& userName, const String& ipAddr,
                                  const Array<CIMParamValue>& inParameters);
int authorize_CreateElementReplica(const String& userName, const String& ipAddr,
                                   const Array<CIMParamValue>& inParameters);
int authorize_CreateGroupReplica(const String& userName, const String& ipAddr,
                                 const Array<CIMParamValue>& inParameters);
int authorize_ModifyReplicaSynchronization(const String& userName, const String& ipAddr,
                                           const Array<CIMParamValue>& inParameters);
int authorize_ModifyListSynchronization(const String& userName, const String& ipAddr,
                                        const Array<CIMParamValue>& inParameters);
int authorize_ReplicationServiceCapabilitiesMethod(const String& userName, const String& ipAddr,
                                                   const Array<CIMParamValue>& inParameters);
int authorize_ModifyStorageSetting_Transient(const String& userName, const String& ipAddr,
                                             const Array<CIMParamValue>& inParameters);
int authorize_ModifyStorageSetting_Persistent(const String& userName, const String& ipAddr,
                                              const Array<CIMParamValue>& inParameters);
// ---- End of method authorization ---------------------------------------------------------------

PEGASUS_NAMESPACE_END

#endif
