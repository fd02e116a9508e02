// Method authorization: turns a storage-management method call into the operation keys of the
// array's rights model and asks the management library whether the user may perform them.
#include "KSV_Common.h"

#include <cstdlib>
#include <initializer_list>

PEGASUS_NAMESPACE_BEGIN

namespace {

// The parameters select no operation: the caller reports an invalid parameter.
const int kNoOperationKey = 3;

const char* const kCreateVolumeKey =
    "ksv_storageconfigurationservice.createormodifyelementfromstoragepool.createvolume";
const char* const kGrowVolumeKey =
    "ksv_storageconfigurationservice.createormodifyelementfromstoragepool.growvolume";
const char* const kSetVolumeKey =
    "ksv_storageconfigurationservice.createormodifyelementfromstoragepool.setvolume";
const char* const kSetPoolKey = "ksv_allocatedfromstoragepool.modifyinstance.setcpg";
const char* const kSetPoolVolumeKey = "ksv_allocatedfromstoragepool.modifyinstance.setvv";
const char* const kCreatePoolKey =
    "ksv_storageconfigurationservice.createormodifystoragepool.createcpg";
const char* const kModifyPoolKey =
    "ksv_storageconfigurationservice.createormodifystoragepool.setcpg";
const char* const kDeleteDynamicPoolKey =
    "ksv_storageconfigurationservice.deletestoragepool.deletedynamicstoragepool";
const char* const kDeleteDeltaReplicaPoolKey =
    "ksv_storageconfigurationservice.deletestoragepool.deletedeltareplicastoragepool";
const char* const kReturnToPoolKey = "ksv_storageconfigurationservice.returntostoragepool";
const char* const kCreateVolumeCopyKey = "ksv_replicationservice.createelementreplica.createvvcopy";
const char* const kCreateGroupCopyKey =
    "ksv_replicationservice.creategroupreplica.creategroupvvcopy";
const char* const kDeleteGroupKey = "ksv_replicationservice.deletegroup";
const char* const kReplicationCapabilitiesKey = "ksv_replicationservicecapabilities";
const char* const kModifySettingKey = "ksv_storagesetting.modifyinstance";

const char* const kDynamicPoolClass = "KSV_DynamicStoragePool";
const char* const kDeltaReplicaPoolClass = "KSV_DeltaReplicaStoragePool";
const char* const kVolumeClass = "KSV_StorageVolume";

// An operation key per value of a method's uint16 selector.
struct CodeKey {
    Uint16 code;
    const char* key;
};

const CodeKey kModifySynchronizationKeys[] = {
    {2, "ksv_storageconfigurationservice.modifysynchronization.detach"},
    {4, "ksv_storageconfigurationservice.modifysynchronization.resync"},
    {5, "ksv_storageconfigurationservice.modifysynchronization.restore"},
    {12, "ksv_storageconfigurationservice.modifysynchronization.startcopy"},
    {13, "ksv_storageconfigurationservice.modifysynchronization.stopcopy"},
};

const char* const kReplicaDissolveKey =
    "ksv_replicationservice.modifyreplicasynchronization.dissolve";
const char* const kReplicaSetGroupKey =
    "ksv_replicationservice.modifyreplicasynchronization.setrcopygroup";

// Operation 19 (return to the pool) depends on the synced element; see below.
const CodeKey kModifyReplicaSynchronizationKeys[] = {
    // The array's rights model spells this key with a trailing blank.
    {2, "ksv_replicationservice.modifyreplicasynchronization.abort "},
    {4, "ksv_replicationservice.modifyreplicasynchronization.syncrcopy"},
    {8, kReplicaDissolveKey},
    {9, kReplicaDissolveKey},
    {10, kReplicaSetGroupKey},
    {11, kReplicaSetGroupKey},
    {20, kReplicaSetGroupKey},
    {14, "ksv_replicationservice.modifyreplicasynchronization.resync"},
    {15, "ksv_replicationservice.modifyreplicasynchronization.restore"},
    {21, "ksv_replicationservice.modifyreplicasynchronization.split"},
};

const char* const kListDissolveKey = "ksv_replicationservice.modifylistsynchronization.dissolve";

const CodeKey kModifyListSynchronizationKeys[] = {
    {2, "ksv_replicationservice.modifylistsynchronization.abort"},
    {8, kListDissolveKey},
    {9, kListDissolveKey},
    {14, "ksv_replicationservice.modifylistsynchronization.resync"},
    {15, "ksv_replicationservice.modifylistsynchronization.restore"},
};

const CodeKey kCreateElementReplicaKeys[] = {
    {7, "ksv_replicationservice.createelementreplica.createsv"},
    {8, kCreateVolumeCopyKey},
};

const CodeKey kCreateGroupReplicaKeys[] = {
    {7, "ksv_replicationservice.creategroupreplica.creategroupsv"},
    {8, kCreateGroupCopyKey},
    {6, "ksv_replicationservice.creategroupreplica.createmirror"},
};

const Uint16 kReturnToPool = 19;

template <size_t N>
const char* keyFor(const CodeKey (&table)[N], Uint16 code) {
    for (const CodeKey& entry : table) {
        if (entry.code == code)
            return entry.key;
    }
    return nullptr;
}

// The volume kinds of api_getVVs that have a key of their own.
const CodeKey kVolumeKindKeys[] = {
    {API_VV_BASE, "ksv_storageconfigurationservice.returntostoragepool.basevv"},
    {API_VV_PHYSICAL_COPY, "ksv_storageconfigurationservice.returntostoragepool.physcopyvv"},
    {API_VV_VIRTUAL_COPY, "ksv_storageconfigurationservice.returntostoragepool.virtcopyvv"},
    {API_VV_OTHER, kReturnToPoolKey},
};

// The kind of the volume whose WWN or name is the key; the library's code when there is none.
int lookUpVolumeKind(const String& volumeKey, int& kind) {
    // The library answers every volume to an empty key.
    if (volumeKey.size() == 0)
        return API_E_NOT_FOUND;
    api_VVList_t volumes = {0, nullptr};
    int retCode = KSV_Common::callUnderSemaphore(
        [&]() { return api_getVVs(volumeKey.getCString(), &volumes); });
    if (retCode == 0 && volumes.count == 0)
        retCode = API_E_NOT_FOUND;
    if (retCode == 0)
        kind = volumes.vvs[0].kind;
    free(volumes.vvs);
    return retCode;
}

// ---- Parameter scan ----------------------------------------------------------------------------

// A null value, or a reference without a class, names nothing.
bool isUsable(const CIMValue& value) {
    if (value.isNull())
        return false;
    if (value.getType() != CIMTYPE_REFERENCE || value.isArray())
        return true;
    CIMObjectPath path;
    value.get(path);
    return !path.getClassName().isNull();
}

// The first usable value of the parameter, compared by name without regard to case; a null
// value when there is none.
CIMValue findParameter(const Array<CIMParamValue>& params, const char* name) {
    for (Uint32 i = 0; i < params.size(); i++) {
        if (String::equalNoCase(params[i].getParameterName(), name) &&
            isUsable(params[i].getValue()))
            return params[i].getValue();
    }
    return CIMValue();
}

bool hasParameter(const Array<CIMParamValue>& params, const char* name) {
    return !findParameter(params, name).isNull();
}

// The Operation and SyncType selectors are uint16; any other value selects nothing.
bool findSelector(const Array<CIMParamValue>& params, const char* name, Uint16& code) {
    const CIMValue value = findParameter(params, name);
    if (value.isNull() || value.getType() != CIMTYPE_UINT16 || value.isArray())
        return false;
    value.get(code);
    return true;
}

bool findReference(const Array<CIMParamValue>& params, const char* name, CIMObjectPath& path) {
    const CIMValue value = findParameter(params, name);
    if (value.isNull() || value.getType() != CIMTYPE_REFERENCE || value.isArray())
        return false;
    value.get(path);
    return true;
}

void appendUsable(Array<CIMObjectPath>& paths, const CIMObjectPath& path) {
    if (!path.getClassName().isNull())
        paths.append(path);
}

bool isOneOf(const String& name, std::initializer_list<const char*> names) {
    for (const char* candidate : names) {
        if (String::equalNoCase(name, candidate))
            return true;
    }
    return false;
}

// Every usable reference under the names, whether passed alone or in an array, in the order
// of the parameters.
Array<CIMObjectPath> collectReferences(const Array<CIMParamValue>& params,
                                       std::initializer_list<const char*> names) {
    Array<CIMObjectPath> paths;
    for (Uint32 i = 0; i < params.size(); i++) {
        const CIMValue value = params[i].getValue();
        if (!isOneOf(params[i].getParameterName(), names) || value.isNull() ||
            value.getType() != CIMTYPE_REFERENCE)
            continue;
        if (value.isArray()) {
            Array<CIMObjectPath> many;
            value.get(many);
            for (Uint32 j = 0; j < many.size(); j++)
                appendUsable(paths, many[j]);
        } else {
            CIMObjectPath one;
            value.get(one);
            appendUsable(paths, one);
        }
    }
    return paths;
}

void traceParameterNames(const Array<CIMParamValue>& params) {
    for (Uint32 i = 0; i < params.size(); i++) {
        log_message(4, "Param %s", (const char*)params[i].getParameterName().getCString());
    }
}

// The volumes that the synchronizations replicate to.
Array<CIMObjectPath> syncedElements(const Array<CIMParamValue>& params) {
    const Array<CIMObjectPath> synchronizations = collectReferences(params, {"Synchronization"});
    Array<CIMObjectPath> elements;
    for (Uint32 i = 0; i < synchronizations.size(); i++) {
        const String element = KSV_Common::getStringProperty(synchronizations[i], "SyncedElement");
        if (element.size() != 0)
            appendUsable(elements, CIMObjectPath(element));
    }
    return elements;
}

// ---- Asking the library ------------------------------------------------------------------------

int authorizeKey(const String& userName, const String& ipAddr, const String& key) {
    return api_authorizeCIMUser(userName.getCString(), ipAddr.getCString(), key.getCString());
}

// Every key must be granted; the first refusal ends the check.
int authorizeKeys(const String& userName, const String& ipAddr, const Array<String>& keys) {
    for (Uint32 i = 0; i < keys.size(); i++) {
        const int retCode = authorizeKey(userName, ipAddr, keys[i]);
        if (retCode != 0)
            return retCode;
    }
    return 0;
}

void appendOnce(Array<String>& keys, const String& key) {
    if (!KSV_Common::isPartOfArray(key, keys))
        keys.append(key);
}

// The return-to-pool key of each volume, each key once. Deleting several volumes needs the
// right for every kind among them; a volume that cannot be classified stops the check
// before anything is asked.
int returnToPoolKeys(const Array<CIMObjectPath>& volumes, Array<String>& keys) {
    for (Uint32 i = 0; i < volumes.size(); i++) {
        CIMObjectPath volume = volumes[i];
        String key;
        const int retCode = handleDeleteVolumeMethod(volume, key);
        if (retCode != 0)
            return retCode;
        appendOnce(keys, key);
    }
    return 0;
}

int authorizeCode(const String& userName, const String& ipAddr, const char* key) {
    return key ? authorizeKey(userName, ipAddr, key) : kNoOperationKey;
}

// A replica's SyncType selects the key when a Mode comes with it; otherwise it is a copy.
template <size_t N>
int authorizeReplicaCreation(const String& userName, const String& ipAddr,
                             const Array<CIMParamValue>& inParameters, const CodeKey (&table)[N],
                             const char* copyKey) {
    Uint16 syncType = 0;
    if (!findSelector(inParameters, "SyncType", syncType) || !hasParameter(inParameters, "Mode"))
        return authorizeKey(userName, ipAddr, copyKey);
    return authorizeCode(userName, ipAddr, keyFor(table, syncType));
}

bool isReferenceTo(const Array<CIMParamValue>& params, const char* name, const char* className) {
    CIMObjectPath path;
    return findReference(params, name, path) && path.getClassName().equal(className);
}

} // namespace

int handleDeleteVolumeMethod(CIMObjectPath& element, String& operationKey) {
    int kind = API_VV_INVALID;
    const int retCode = lookUpVolumeKind(KSV_Common::getStringProperty(element, "DeviceID"), kind);
    if (retCode != 0) {
        log_message(2, "Cannot find the volume referenced to in %s",
                    (const char*)element.toString().getCString());
        return retCode;
    }
    if (kind == API_VV_INVALID) {
        log_message(2, "TheElement parameter is invalid");
        return API_E_INVALID;
    }
    const char* key = keyFor(kVolumeKindKeys, Uint16(kind));
    if (!key)
        return kNoOperationKey;
    operationKey = key;
    return 0;
}

int authorize_CreateOrModifyElemFromStoragePool(const String& userName, const String& ipAddr,
                                                const Array<CIMParamValue>& inParameters) {
    traceParameterNames(inParameters);
    if (!hasParameter(inParameters, "TheElement"))
        return authorizeKey(userName, ipAddr, kCreateVolumeKey);
    Array<String> keys;
    if (hasParameter(inParameters, "Size"))
        keys.append(kGrowVolumeKey);
    if (hasParameter(inParameters, "ElementName"))
        keys.append(kSetVolumeKey);
    return authorizeKeys(userName, ipAddr, keys);
}

int authorize_ModifySynchronization(const String& userName, const String& ipAddr,
                                    const Array<CIMParamValue>& inParameters) {
    Uint16 operation = 0;
    if (!findSelector(inParameters, "Operation", operation))
        return kNoOperationKey;
    return authorizeCode(userName, ipAddr, keyFor(kModifySynchronizationKeys, operation));
}

// Changing a volume's allocation from a dynamic pool changes both: the pool's and the
// volume's rights are needed, the pool's first.
int authorize_AllocatedFromStoragePoolModifyInstance(const String& userName, const String& ipAddr,
                                                     const Array<CIMParamValue>& inParameters) {
    Array<String> keys;
    if (isReferenceTo(inParameters, "Antecedent", kDynamicPoolClass))
        keys.append(kSetPoolKey);
    if (isReferenceTo(inParameters, "Dependent", kVolumeClass))
        keys.append(kSetPoolVolumeKey);
    if (keys.size() == 0)
        return kNoOperationKey;
    return authorizeKeys(userName, ipAddr, keys);
}

int authorize_CreateOrModifyStoragePool(const String& userName, const String& ipAddr,
                                        const Array<CIMParamValue>& inParameters) {
    return authorizeKey(userName, ipAddr,
                        hasParameter(inParameters, "Pool") ? kModifyPoolKey : kCreatePoolKey);
}

int authorize_DeleteStoragePool(const String& userName, const String& ipAddr,
                                const Array<CIMParamValue>& inParameters) {
    CIMObjectPath pool;
    if (!findReference(inParameters, "Pool", pool))
        return kNoOperationKey;
    if (pool.getClassName().equal(kDynamicPoolClass))
        return authorizeKey(userName, ipAddr, kDeleteDynamicPoolKey);
    if (pool.getClassName().equal(kDeltaReplicaPoolClass))
        return authorizeKey(userName, ipAddr, kDeleteDeltaReplicaPoolKey);
    return kNoOperationKey;
}

// Without an element the general return-to-pool right is asked for.
int authorize_DeleteStorageVolume(const String& userName, const String& ipAddr,
                                  const Array<CIMParamValue>& inParameters) {
    traceParameterNames(inParameters);
    const Array<CIMObjectPath> volumes =
        collectReferences(inParameters, {"TheElement", "TheElements"});
    Array<String> keys;
    if (volumes.size() == 0)
        keys.append(kReturnToPoolKey);
    const int retCode = returnToPoolKeys(volumes, keys);
    if (retCode != 0)
        return retCode;
    return authorizeKeys(userName, ipAddr, keys);
}

int authorize_CreateElementReplica(const String& userName, const String& ipAddr,
                                   const Array<CIMParamValue>& inParameters) {
    return authorizeReplicaCreation(userName, ipAddr, inParameters, kCreateElementReplicaKeys,
                                    kCreateVolumeCopyKey);
}

int authorize_CreateGroupReplica(const String& userName, const String& ipAddr,
                                 const Array<CIMParamValue>& inParameters) {
    return authorizeReplicaCreation(userName, ipAddr, inParameters, kCreateGroupReplicaKeys,
                                    kCreateGroupCopyKey);
}

int authorize_ModifyReplicaSynchronization(const String& userName, const String& ipAddr,
                                           const Array<CIMParamValue>& inParameters) {
    Uint16 operation = 0;
    if (!findSelector(inParameters, "Operation", operation))
        return kNoOperationKey;
    if (operation != kReturnToPool)
        return authorizeCode(userName, ipAddr,
                             keyFor(kModifyReplicaSynchronizationKeys, operation));
    const Array<CIMObjectPath> elements = syncedElements(inParameters);
    if (elements.size() == 0)
        return kNoOperationKey;
    Array<String> keys;
    const int retCode = returnToPoolKeys(elements, keys);
    return retCode != 0 ? retCode : authorizeKeys(userName, ipAddr, keys);
}

// Returning a group's replicas to the pool deletes the group and the synced volumes: each
// needs its right, the group's always.
int authorize_ModifyListSynchronization(const String& userName, const String& ipAddr,
                                        const Array<CIMParamValue>& inParameters) {
    Uint16 operation = 0;
    if (!findSelector(inParameters, "Operation", operation))
        return kNoOperationKey;
    if (operation != kReturnToPool)
        return authorizeCode(userName, ipAddr, keyFor(kModifyListSynchronizationKeys, operation));
    Array<String> keys;
    keys.append(kDeleteGroupKey);
    const int retCode = returnToPoolKeys(syncedElements(inParameters), keys);
    if (retCode != 0)
        return retCode;
    return authorizeKeys(userName, ipAddr, keys);
}

int authorize_ReplicationServiceCapabilitiesMethod(const String& userName, const String& ipAddr,
                                                   const Array<CIMParamValue>&) {
    return authorizeKey(userName, ipAddr, kReplicationCapabilitiesKey);
}

int authorize_ModifyStorageSetting_Transient(const String& userName, const String& ipAddr,
                                             const Array<CIMParamValue>&) {
    return authorizeKey(userName, ipAddr, kSetVolumeKey);
}

int authorize_ModifyStorageSetting_Persistent(const String& userName, const String& ipAddr,
                                              const Array<CIMParamValue>&) {
    return authorizeKey(userName, ipAddr, kModifySettingKey);
}

PEGASUS_NAMESPACE_END
