// Method authorization: the operation keys each authorize_ function passes to the library by
// parameter set, the code 3 where none is chosen, refusals, and the volume lookup of
// handleDeleteVolumeMethod.
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>

#include <ksvapi.h>

#include "ProviderTestSupport.h"

#include <cctype>
#include <set>

namespace ksv::test {
namespace {

// The rights model's vocabulary, written out independently of the code under test.
const std::vector<std::string> kAllKeys = {
    "ksv_storageconfigurationservice.createormodifyelementfromstoragepool.createvolume",
    "ksv_storageconfigurationservice.createormodifyelementfromstoragepool.growvolume",
    "ksv_storageconfigurationservice.createormodifyelementfromstoragepool.setvolume",
    "ksv_storageconfigurationservice.modifysynchronization.detach",
    "ksv_storageconfigurationservice.modifysynchronization.resync",
    "ksv_storageconfigurationservice.modifysynchronization.restore",
    "ksv_storageconfigurationservice.modifysynchronization.startcopy",
    "ksv_storageconfigurationservice.modifysynchronization.stopcopy",
    "ksv_allocatedfromstoragepool.modifyinstance.setcpg",
    "ksv_allocatedfromstoragepool.modifyinstance.setvv",
    "ksv_storageconfigurationservice.createormodifystoragepool.createcpg",
    "ksv_storageconfigurationservice.createormodifystoragepool.setcpg",
    "ksv_storageconfigurationservice.deletestoragepool.deletedynamicstoragepool",
    "ksv_storageconfigurationservice.deletestoragepool.deletedeltareplicastoragepool",
    "ksv_storageconfigurationservice.returntostoragepool",
    "ksv_storageconfigurationservice.returntostoragepool.basevv",
    "ksv_storageconfigurationservice.returntostoragepool.physcopyvv",
    "ksv_storageconfigurationservice.returntostoragepool.virtcopyvv",
    "ksv_replicationservice.createelementreplica.createsv",
    "ksv_replicationservice.createelementreplica.createvvcopy",
    "ksv_replicationservice.creategroupreplica.creategroupsv",
    "ksv_replicationservice.creategroupreplica.creategroupvvcopy",
    "ksv_replicationservice.creategroupreplica.createmirror",
    "ksv_replicationservice.modifyreplicasynchronization.abort ",
    "ksv_replicationservice.modifyreplicasynchronization.syncrcopy",
    "ksv_replicationservice.modifyreplicasynchronization.dissolve",
    "ksv_replicationservice.modifyreplicasynchronization.setrcopygroup",
    "ksv_replicationservice.modifyreplicasynchronization.resync",
    "ksv_replicationservice.modifyreplicasynchronization.restore",
    "ksv_replicationservice.modifyreplicasynchronization.split",
    "ksv_replicationservice.modifylistsynchronization.abort",
    "ksv_replicationservice.modifylistsynchronization.dissolve",
    "ksv_replicationservice.modifylistsynchronization.resync",
    "ksv_replicationservice.modifylistsynchronization.restore",
    "ksv_replicationservice.deletegroup",
    "ksv_replicationservicecapabilities",
    "ksv_storagesetting.modifyinstance",
};

// The one key ending in ".<tail>" (or equal to it).
std::string key(const std::string& tail) {
    std::vector<std::string> found;
    for (const std::string& candidate : kAllKeys) {
        const size_t at = candidate.size() - std::min(candidate.size(), tail.size());
        if (candidate == tail ||
            (candidate.compare(at, tail.size(), tail) == 0 && at > 0 && candidate[at - 1] == '.'))
            found.push_back(candidate);
    }
    EXPECT_EQ(found.size(), 1u) << tail;
    return found.empty() ? tail : found[0];
}

// "a|b" as full keys; empty for none.
std::vector<std::string> keys(const std::string& tails) {
    std::vector<std::string> result;
    std::istringstream list(tails);
    for (std::string tail; std::getline(list, tail, '|');)
        result.push_back(key(tail));
    return result;
}

// The test array's volumes, by name: their WWNs are the DeviceIDs, kind as api_getVVs tells.
const struct {
    const char* name;
    const char* wwn;
    int kind; // -1: not in the array
} kVolumes[] = {
    {"base", "60002AC0000000000000000100000001", 1},
    {"clone", "60002AC0000000000000000100000002", 2},
    {"snap", "60002AC0000000000000000100000003", 3},
    {"other", "60002AC0000000000000000100000004", 4},
    {"broken", "60002AC0000000000000000100000005", 0},
    {"missing", "60002AC00000000000000001000000FF", -1},
};

// admin may do anything, grower grow volumes and return base volumes, nobody nothing.
void loadArray() {
    std::string volumes;
    for (Uint32 i = 0; i < 5; i++) {
        volumes += std::string(i ? "," : "") + "{\"id\": " + std::to_string(i) + ", \"name\": \"" +
                   kVolumes[i].name + "\", \"wwn\": \"" + kVolumes[i].wwn +
                   "\", \"kind\": " + std::to_string(kVolumes[i].kind) +
                   ", \"runs\": [[], [], [[0, " + std::to_string(i) + "]]]}";
    }
    const auto error = ksvsim::loadModelText(R"({
        "system": {"name": "KSV-A", "id": 9, "hostName": "a.example.net", "ipv4": "192.0.2.30"},
        "users": [{"name": "admin", "password": "a", "operations": ["*"]},
                  {"name": "grower", "password": "g", "operations": [
          "ksv_storageconfigurationservice.createormodifyelementfromstoragepool.growvolume",
          "ksv_storageconfigurationservice.returntostoragepool.basevv"]},
                  {"name": "nobody", "password": "n"}],
        "cages": [{"name": "c0", "type": 1, "magazines": [{"position": 0}]}],
        "disks": [{"id": 0, "wwn": "5000CCA01A2B3C40", "cage": "c0", "magazine": 0,
                   "position": 0}],
        "volumes": [)" + volumes + "]}",
                                             "authorization");
    ASSERT_FALSE(error) << error->describe();
}

// Empty for a name the table lacks.
std::string wwnOf(const std::string& name) {
    for (const auto& volume : kVolumes) {
        if (name == volume.name)
            return volume.wwn;
    }
    return "";
}

// Without a DeviceID key for a name the table lacks.
CIMObjectPath volumePath(const std::string& name) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("CreationClassName", "KSV_StorageVolume", CIMKeyBinding::STRING));
    if (!wwnOf(name).empty())
        keys.append(CIMKeyBinding("DeviceID", wwnOf(name).c_str(), CIMKeyBinding::STRING));
    return CIMObjectPath("192.0.2.30", CIMNamespaceName("root/ksv"), CIMName("KSV_StorageVolume"),
                         keys);
}

CIMObjectPath instancePath(const std::string& className) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("InstanceID", "QUANOR:x", CIMKeyBinding::STRING));
    return CIMObjectPath("", CIMNamespaceName("root/ksv"), CIMName(className.c_str()), keys);
}

// A replica pair whose target is the volume.
CIMObjectPath synchronizationTo(const std::string& volume) {
    Array<CIMKeyBinding> keys;
    keys.append(
        CIMKeyBinding("SystemElement", volumePath("base").toString(), CIMKeyBinding::REFERENCE));
    keys.append(
        CIMKeyBinding("SyncedElement", volumePath(volume).toString(), CIMKeyBinding::REFERENCE));
    return CIMObjectPath("", CIMNamespaceName("root/ksv"), CIMName("KSV_StorageSynchronized"),
                         keys);
}

// "~volume" a synchronization to the volume, "Some_Class" an instance of the class, "()" a
// path without a class, anything else a volume.
CIMObjectPath referenceTo(const std::string& token) {
    if (token == "()")
        return CIMObjectPath();
    if (token[0] == '~')
        return synchronizationTo(token.substr(1));
    return token.find('_') != std::string::npos ? instancePath(token) : volumePath(token);
}

// "" a text, "null" a null value, "19" a uint16, "a,b" an array of references, "a" a reference.
CIMValue valueFor(const std::string& value) {
    if (value.empty())
        return CIMValue(String("x"));
    if (value == "null")
        return CIMValue(CIMTYPE_STRING, false);
    if (isdigit(value[0]))
        return CIMValue(Uint16(std::stoi(value)));
    if (value.find(',') == std::string::npos)
        return CIMValue(referenceTo(value));
    Array<CIMObjectPath> paths;
    std::istringstream list(value);
    for (std::string token; std::getline(list, token, ',');)
        paths.append(referenceTo(token));
    return CIMValue(paths);
}

// Space-separated "Name" or "Name=value" words; see valueFor.
Array<CIMParamValue> params(const std::string& described) {
    Array<CIMParamValue> result;
    std::istringstream words(described);
    for (std::string word; words >> word;) {
        const size_t equals = word.find('=');
        const std::string value = equals == std::string::npos ? "" : word.substr(equals + 1);
        result.append(CIMParamValue(word.substr(0, equals).c_str(), valueFor(value)));
    }
    return result;
}

// The keys that reached api_authorizeCIMUser for the user, in order.
std::vector<std::string> askedKeys(const std::string& user = "admin") {
    std::vector<std::string> asked;
    for (const ksvsim::CallRecord& call : ksvsim::calls()) {
        if (call.function == "api_authorizeCIMUser") {
            EXPECT_EQ(call.argument.compare(0, user.size() + 1, user + " "), 0) << call.argument;
            asked.push_back(call.argument.substr(user.size() + 1));
        }
    }
    return asked;
}

using Authorize = int (*)(const String&, const String&, const Array<CIMParamValue>&);

const struct Case {
    Authorize authorize;
    const char* params;
    int retCode;
    const char* keys; // tails of the keys asked for, in order, joined by "|"
} kCases[] = {
    {authorize_CreateOrModifyElemFromStoragePool, "", 0, "createvolume"},
    {authorize_CreateOrModifyElemFromStoragePool, "TheElement=base Size", 0, "growvolume"},
    {authorize_CreateOrModifyElemFromStoragePool, "ElementName TheElement=base Size", 0,
     "growvolume|setvolume"},
    {authorize_CreateOrModifyElemFromStoragePool, "TheElement=base ElementName", 0, "setvolume"},
    {authorize_CreateOrModifyElemFromStoragePool, "TheElement=base", 0, ""},
    {authorize_CreateOrModifyElemFromStoragePool, "theelement=base SIZE", 0, "growvolume"},
    {authorize_CreateOrModifyElemFromStoragePool, "TheElement=() Size", 0, "createvolume"},
    {authorize_CreateOrModifyElemFromStoragePool,
     "TheElement=null TheElement=base Size=null ElementName", 0, "setvolume"},
    {authorize_ModifySynchronization, "Operation=2", 0, "detach"},
    {authorize_ModifySynchronization, "operation=4", 0, "modifysynchronization.resync"},
    {authorize_ModifySynchronization, "Operation=5", 0, "modifysynchronization.restore"},
    {authorize_ModifySynchronization, "Operation=12", 0, "startcopy"},
    {authorize_ModifySynchronization, "Operation=13", 0, "stopcopy"},
    {authorize_ModifySynchronization, "Operation=3", 3, ""},
    {authorize_ModifySynchronization, "Operation=null", 3, ""},
    {authorize_AllocatedFromStoragePoolModifyInstance,
     "Antecedent=KSV_DynamicStoragePool Dependent=base", 0, "modifyinstance.setcpg|setvv"},
    {authorize_AllocatedFromStoragePoolModifyInstance,
     "Antecedent=ksv_dynamicstoragepool Dependent=KSV_StoragePool", 0, "modifyinstance.setcpg"},
    {authorize_AllocatedFromStoragePoolModifyInstance, "Antecedent=KSV_StoragePool Dependent=base",
     0, "setvv"},
    {authorize_AllocatedFromStoragePoolModifyInstance,
     "Antecedent=base Dependent=KSV_DynamicStoragePool", 3, ""},
    {authorize_CreateOrModifyStoragePool, "Pool=null", 0, "createcpg"},
    {authorize_CreateOrModifyStoragePool, "POOL=KSV_DynamicStoragePool", 0,
     "createormodifystoragepool.setcpg"},
    {authorize_DeleteStoragePool, "Pool=KSV_DynamicStoragePool", 0, "deletedynamicstoragepool"},
    {authorize_DeleteStoragePool, "Pool=KSV_DeltaReplicaStoragePool", 0,
     "deletedeltareplicastoragepool"},
    {authorize_DeleteStoragePool, "Pool=KSV_StoragePool", 3, ""},
    {authorize_DeleteStoragePool, "", 3, ""},
    {authorize_DeleteStorageVolume, "", 0, "returntostoragepool"},
    {authorize_DeleteStorageVolume, "TheElement=base", 0, "basevv"},
    {authorize_DeleteStorageVolume, "theElement=clone", 0, "physcopyvv"},
    {authorize_DeleteStorageVolume, "TheElement=snap", 0, "virtcopyvv"},
    {authorize_DeleteStorageVolume, "TheElement=other", 0, "returntostoragepool"},
    {authorize_DeleteStorageVolume, "TheElements=base,snap,base TheElement=clone", 0,
     "basevv|virtcopyvv|physcopyvv"},
    {authorize_CreateElementReplica, "SyncType=7 Mode", 0, "createsv"},
    {authorize_CreateElementReplica, "Mode SyncType=8", 0, "createvvcopy"},
    {authorize_CreateElementReplica, "SyncType=6 Mode", 3, ""},
    {authorize_CreateElementReplica, "SyncType=7 Mode=null", 0, "createvvcopy"},
    {authorize_CreateGroupReplica, "SyncType=7 Mode", 0, "creategroupsv"},
    {authorize_CreateGroupReplica, "SyncType=8 Mode", 0, "creategroupvvcopy"},
    {authorize_CreateGroupReplica, "synctype=6 Mode", 0, "createmirror"},
    {authorize_CreateGroupReplica, "SyncType=5 Mode", 3, ""},
    {authorize_CreateGroupReplica, "SyncType=6", 0, "creategroupvvcopy"},
    {authorize_ModifyReplicaSynchronization, "Operation=2", 0,
     "modifyreplicasynchronization.abort "},
    {authorize_ModifyReplicaSynchronization, "Operation=4", 0, "syncrcopy"},
    {authorize_ModifyReplicaSynchronization, "Operation=8", 0,
     "modifyreplicasynchronization.dissolve"},
    {authorize_ModifyReplicaSynchronization, "Operation=9", 0,
     "modifyreplicasynchronization.dissolve"},
    {authorize_ModifyReplicaSynchronization, "Operation=10", 0, "setrcopygroup"},
    {authorize_ModifyReplicaSynchronization, "Operation=11", 0, "setrcopygroup"},
    {authorize_ModifyReplicaSynchronization, "Operation=20", 0, "setrcopygroup"},
    {authorize_ModifyReplicaSynchronization, "Operation=14", 0,
     "modifyreplicasynchronization.resync"},
    {authorize_ModifyReplicaSynchronization, "Operation=15", 0,
     "modifyreplicasynchronization.restore"},
    {authorize_ModifyReplicaSynchronization, "Operation=21", 0, "split"},
    {authorize_ModifyReplicaSynchronization, "Operation=19 Synchronization=~snap", 0, "virtcopyvv"},
    {authorize_ModifyReplicaSynchronization, "synchronization=~base Operation=19", 0, "basevv"},
    {authorize_ModifyReplicaSynchronization, "Operation=19 Synchronization=KSV_Synchronized", 3,
     ""},
    {authorize_ModifyReplicaSynchronization, "Operation=3", 3, ""},
    {authorize_ModifyListSynchronization, "Operation=2", 0, "modifylistsynchronization.abort"},
    {authorize_ModifyListSynchronization, "Operation=8", 0, "modifylistsynchronization.dissolve"},
    {authorize_ModifyListSynchronization, "Operation=9", 0, "modifylistsynchronization.dissolve"},
    {authorize_ModifyListSynchronization, "Operation=14", 0, "modifylistsynchronization.resync"},
    {authorize_ModifyListSynchronization, "Operation=15", 0, "modifylistsynchronization.restore"},
    {authorize_ModifyListSynchronization,
     "Operation=19 TargetGroup=KSV_ReplicationGroup Synchronization=~clone", 0,
     "deletegroup|physcopyvv"},
    {authorize_ModifyListSynchronization, "Operation=19 Synchronization=~base,~snap", 0,
     "deletegroup|basevv|virtcopyvv"},
    {authorize_ModifyListSynchronization, "Operation=19", 0, "deletegroup"},
    {authorize_ModifyListSynchronization, "Operation=4", 3, ""},
    {authorize_ReplicationServiceCapabilitiesMethod, "Size", 0,
     "ksv_replicationservicecapabilities"},
    {authorize_ModifyStorageSetting_Transient, "", 0, "setvolume"},
    {authorize_ModifyStorageSetting_Persistent, "", 0, "ksv_storagesetting.modifyinstance"},
};

class Authorization : public ::testing::Test {
protected:
    void SetUp() override {
        ksvsim::reset();
        loadArray();
        ksvsim::clearCalls();
        ksvsim::setLogCapture(true);
    }
    void TearDown() override { ksvsim::reset(); }

    // Runs every case as admin, who may do anything; answers the keys asked for.
    static std::set<std::string> runCases() {
        std::set<std::string> seen;
        for (const Case& c : kCases) {
            SCOPED_TRACE(std::string("parameters \"") + c.params + "\", keys " + c.keys);
            ksvsim::clearCalls();
            EXPECT_EQ(c.authorize("admin", "198.51.100.7", params(c.params)), c.retCode);
            const std::vector<std::string> asked = askedKeys();
            EXPECT_EQ(asked, keys(c.keys));
            seen.insert(asked.begin(), asked.end());
            if (c.retCode == 3) {
                EXPECT_EQ(arrayCalls(), Strings{});
            }
        }
        return seen;
    }

    static int classify(const char* volume, String& operationKey) {
        CIMObjectPath element = volumePath(volume);
        return handleDeleteVolumeMethod(element, operationKey);
    }
};

// Together the parameter sets reach every key of the rights model, each exactly as written.
TEST_F(Authorization, EachParameterSetAsksForItsKeysOrNothing) {
    EXPECT_EQ(runCases(), std::set<std::string>(kAllKeys.begin(), kAllKeys.end()));
}

TEST_F(Authorization, TheFirstRefusalEndsTheCheck) {
    const struct {
        const char* user;
        Authorize authorize;
        const char* params;
        const char* keys;
    } cases[] = {
        {"grower", authorize_CreateOrModifyElemFromStoragePool, "TheElement=base Size ElementName",
         "growvolume|setvolume"},
        {"nobody", authorize_CreateOrModifyElemFromStoragePool, "TheElement=base Size ElementName",
         "growvolume"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.user) + " " + c.params);
        ksvsim::clearCalls();
        EXPECT_EQ(c.authorize(c.user, "", params(c.params)), API_E_DENIED);
        EXPECT_EQ(askedKeys(c.user), keys(c.keys));
    }
}

TEST_F(Authorization, VolumeMethodsTraceEveryParameterName) {
    authorize_CreateOrModifyElemFromStoragePool("admin", "", params("Size TheElement=null x"));
    authorize_ModifySynchronization("admin", "", params("Operation=2"));
    authorize_DeleteStorageVolume("admin", "", params("TheElement=base"));
    Strings traces = logTexts(4);
    traces.erase(
        std::remove_if(traces.begin(), traces.end(),
                       [](const std::string& line) { return line.rfind("Param ", 0) != 0; }),
        traces.end());
    EXPECT_EQ(traces, (Strings{"Param Size", "Param TheElement", "Param x", "Param TheElement"}));
}

TEST_F(Authorization, VolumeKindsAreLookedUpByDeviceIDUnderTheSemaphore) {
    for (const char* volume : {"base", "clone", "snap", "other"}) {
        ksvsim::clearCalls();
        String operationKey;
        EXPECT_EQ(classify(volume, operationKey), 0) << volume;
        EXPECT_EQ(arrayCalls(), (Strings{"cim_sem_wait()", "api_getVVs(" + wwnOf(volume) + ")",
                                         "cim_sem_post()"}));
    }
    EXPECT_FALSE(ksvsim::semaphoreHeld());
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
    EXPECT_EQ(logTexts(2), Strings{});
}

TEST_F(Authorization, VolumesThatCannotBeClassifiedFailAndAreReported) {
    String operationKey("untouched");
    EXPECT_EQ(classify("broken", operationKey), API_E_INVALID);
    EXPECT_EQ(classify("missing", operationKey), API_E_NOT_FOUND);
    // Without a DeviceID nothing is looked up: the library would answer every volume.
    ksvsim::clearCalls();
    EXPECT_EQ(classify("unnamed", operationKey), API_E_NOT_FOUND);
    EXPECT_EQ(arrayCalls(), Strings{});
    EXPECT_EQ(std::string(operationKey.getCString()), "untouched");
    const std::string notFound = "Cannot find the volume referenced to in ";
    EXPECT_EQ(logTexts(2), (Strings{"TheElement parameter is invalid",
                                    notFound + text(volumePath("missing").toString()),
                                    notFound + text(volumePath("unnamed").toString())}));
}

TEST_F(Authorization, FailedLookupsAnswerTheirCodeAndPostOnlyATakenSemaphore) {
    String operationKey;
    ksvsim::forceResult("cim_sem_wait", API_E_SEM_TIMEOUT, 1);
    EXPECT_EQ(classify("base", operationKey), API_E_SEM_TIMEOUT);
    EXPECT_EQ(arrayCalls(), Strings{"cim_sem_wait()"});
    ksvsim::clearCalls();
    ksvsim::forceResult("api_getVVs", API_E_NO_MEMORY, 1);
    EXPECT_EQ(classify("base", operationKey), API_E_NO_MEMORY);
    EXPECT_EQ(arrayCalls(),
              (Strings{"cim_sem_wait()", "api_getVVs(" + wwnOf("base") + ")", "cim_sem_post()"}));
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
    EXPECT_EQ(operationKey.size(), 0u);
}

// A volume that cannot be classified stops the check before any key is asked for.
TEST_F(Authorization, AFailedClassificationAsksForNoKey) {
    EXPECT_EQ(authorize_DeleteStorageVolume("admin", "", params("TheElements=base,broken")),
              API_E_INVALID);
    const Array<CIMParamValue> returnMissing = params("Operation=19 Synchronization=~missing");
    EXPECT_EQ(authorize_ModifyReplicaSynchronization("admin", "", returnMissing), API_E_NOT_FOUND);
    EXPECT_EQ(authorize_ModifyListSynchronization("admin", "", returnMissing), API_E_NOT_FOUND);
    EXPECT_EQ(askedKeys(), std::vector<std::string>{});
}

} // namespace
} // namespace ksv::test
