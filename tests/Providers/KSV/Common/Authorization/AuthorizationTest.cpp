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

std::vector<std::string> split(const std::string& list, char separator) {
    std::vector<std::string> parts;
    std::istringstream in(list);
    for (std::string part; std::getline(in, part, separator);)
        parts.push_back(part);
    return parts;
}

// The rights model's vocabulary, written out independently of the code under test: each prefix
// with the endings it takes, "|"-separated; an empty ending is the prefix alone.
std::vector<std::string> allKeys() {
    const std::string config = "ksv_storageconfigurationservice.";
    const std::string replication = "ksv_replicationservice.";
    const std::pair<std::string, std::string> groups[] = {
        {config + "createormodifyelementfromstoragepool.", "createvolume|growvolume|setvolume"},
        {config + "modifysynchronization.", "detach|resync|restore|startcopy|stopcopy"},
        {"ksv_allocatedfromstoragepool.modifyinstance.", "setcpg|setvv"},
        {config + "createormodifystoragepool.", "createcpg|setcpg"},
        {config + "deletestoragepool.", "deletedynamicstoragepool|deletedeltareplicastoragepool"},
        {config + "returntostoragepool", "|.basevv|.physcopyvv|.virtcopyvv"},
        {replication + "createelementreplica.", "createsv|createvvcopy"},
        {replication + "creategroupreplica.", "creategroupsv|creategroupvvcopy|createmirror"},
        {replication + "modifyreplicasynchronization.",
         "abort |syncrcopy|dissolve|setrcopygroup|resync|restore|split"},
        {replication + "modifylistsynchronization.", "abort|dissolve|resync|restore"},
        {"", replication + "deletegroup|ksv_replicationservicecapabilities"},
        {"", "ksv_storagesetting.modifyinstance"},
    };
    std::vector<std::string> all;
    for (const auto& group : groups) {
        for (const std::string& ending : split(group.second, '|'))
            all.push_back(group.first + ending);
    }
    return all;
}
const std::vector<std::string> kAllKeys = allKeys();

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
    for (const std::string& tail : split(tails, '|'))
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
    const std::string wwn = wwnOf(name);
    return path(("//192.0.2.30/root/ksv:KSV_StorageVolume.CreationClassName=\"KSV_StorageVolume\"" +
                 (wwn.empty() ? "" : ",DeviceID=\"" + wwn + "\""))
                    .c_str());
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
    if (token.find('_') != std::string::npos)
        return path(("root/ksv:" + token + ".InstanceID=\"QUANOR:x\"").c_str());
    return volumePath(token);
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
    for (const std::string& token : split(value, ','))
        paths.append(referenceTo(token));
    return CIMValue(paths);
}

// Space-separated "Name" or "Name=value" words; see valueFor.
Array<CIMParamValue> params(const std::string& described) {
    Array<CIMParamValue> result;
    for (const std::string& word : split(described, ' ')) {
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

// Short names keep each case on one line.
const Authorize elementFromPool = authorize_CreateOrModifyElemFromStoragePool;
const Authorize allocatedFrom = authorize_AllocatedFromStoragePoolModifyInstance;
const Authorize modifyReplica = authorize_ModifyReplicaSynchronization;
const Authorize modifyList = authorize_ModifyListSynchronization;
const Authorize deletePool = authorize_DeleteStoragePool;
const Authorize modifyPool = authorize_CreateOrModifyStoragePool;
const Authorize capabilities = authorize_ReplicationServiceCapabilitiesMethod;

const struct Case {
    Authorize authorize;
    const char* params;
    int retCode;
    const char* keys; // tails of the keys asked for, in order, joined by "|"
} kCases[] = {
    {elementFromPool, "", 0, "createvolume"},
    {elementFromPool, "TheElement=base Size", 0, "growvolume"},
    {elementFromPool, "ElementName TheElement=base Size", 0, "growvolume|setvolume"},
    {elementFromPool, "TheElement=base ElementName", 0, "setvolume"},
    {elementFromPool, "TheElement=base", 0, ""},
    {elementFromPool, "theelement=base SIZE", 0, "growvolume"},
    {elementFromPool, "TheElement=() Size", 0, "createvolume"},
    {elementFromPool, "TheElement=null TheElement=base Size=null ElementName", 0, "setvolume"},
    {authorize_ModifySynchronization, "Operation=2", 0, "detach"},
    {authorize_ModifySynchronization, "operation=4", 0, "modifysynchronization.resync"},
    {authorize_ModifySynchronization, "Operation=5", 0, "modifysynchronization.restore"},
    {authorize_ModifySynchronization, "Operation=12", 0, "startcopy"},
    {authorize_ModifySynchronization, "Operation=13", 0, "stopcopy"},
    {authorize_ModifySynchronization, "Operation=3", 3, ""},
    {authorize_ModifySynchronization, "Operation=null", 3, ""},
    {allocatedFrom, "Antecedent=KSV_DynamicStoragePool Dependent=base", 0,
     "modifyinstance.setcpg|setvv"},
    {allocatedFrom, "Antecedent=ksv_dynamicstoragepool Dependent=KSV_StoragePool", 0,
     "modifyinstance.setcpg"},
    {allocatedFrom, "Antecedent=KSV_StoragePool Dependent=base", 0, "setvv"},
    {allocatedFrom, "Antecedent=base Dependent=KSV_DynamicStoragePool", 3, ""},
    {modifyPool, "Pool=null", 0, "createcpg"},
    {modifyPool, "POOL=KSV_DynamicStoragePool", 0, "createormodifystoragepool.setcpg"},
    {deletePool, "Pool=KSV_DynamicStoragePool", 0, "deletedynamicstoragepool"},
    {deletePool, "Pool=KSV_DeltaReplicaStoragePool", 0, "deletedeltareplicastoragepool"},
    {deletePool, "Pool=KSV_StoragePool", 3, ""},
    {deletePool, "", 3, ""},
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
    {modifyReplica, "Operation=2", 0, "modifyreplicasynchronization.abort "},
    {modifyReplica, "Operation=4", 0, "syncrcopy"},
    {modifyReplica, "Operation=8", 0, "modifyreplicasynchronization.dissolve"},
    {modifyReplica, "Operation=9", 0, "modifyreplicasynchronization.dissolve"},
    {modifyReplica, "Operation=10", 0, "setrcopygroup"},
    {modifyReplica, "Operation=11", 0, "setrcopygroup"},
    {modifyReplica, "Operation=20", 0, "setrcopygroup"},
    {modifyReplica, "Operation=14", 0, "modifyreplicasynchronization.resync"},
    {modifyReplica, "Operation=15", 0, "modifyreplicasynchronization.restore"},
    {modifyReplica, "Operation=21", 0, "split"},
    {modifyReplica, "Operation=19 Synchronization=~snap", 0, "virtcopyvv"},
    {modifyReplica, "synchronization=~base Operation=19", 0, "basevv"},
    {modifyReplica, "Operation=19 Synchronization=KSV_Synchronized", 3, ""},
    {modifyReplica, "Operation=3", 3, ""},
    {modifyList, "Operation=2", 0, "modifylistsynchronization.abort"},
    {modifyList, "Operation=8", 0, "modifylistsynchronization.dissolve"},
    {modifyList, "Operation=9", 0, "modifylistsynchronization.dissolve"},
    {modifyList, "Operation=14", 0, "modifylistsynchronization.resync"},
    {modifyList, "Operation=15", 0, "modifylistsynchronization.restore"},
    {modifyList, "Operation=19 TargetGroup=KSV_ReplicationGroup Synchronization=~clone", 0,
     "deletegroup|physcopyvv"},
    {modifyList, "Operation=19 Synchronization=~base,~snap", 0, "deletegroup|basevv|virtcopyvv"},
    {modifyList, "Operation=19", 0, "deletegroup"},
    {modifyList, "Operation=4", 3, ""},
    {capabilities, "Size", 0, "ksv_replicationservicecapabilities"},
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
    const Array<CIMParamValue> growAndRename = params("TheElement=base Size ElementName");
    EXPECT_EQ(elementFromPool("grower", "", growAndRename), API_E_DENIED);
    EXPECT_EQ(askedKeys("grower"), keys("growvolume|setvolume"));
    ksvsim::clearCalls();
    EXPECT_EQ(elementFromPool("nobody", "", growAndRename), API_E_DENIED);
    EXPECT_EQ(askedKeys("nobody"), keys("growvolume"));
}

TEST_F(Authorization, VolumeMethodsTraceEveryParameterName) {
    authorize_CreateOrModifyElemFromStoragePool("admin", "", params("Size TheElement=null x"));
    authorize_ModifySynchronization("admin", "", params("Operation=2"));
    authorize_DeleteStorageVolume("admin", "", params("TheElement=base"));
    Strings traces;
    for (const std::string& line : logTexts(4)) {
        if (line.rfind("Param ", 0) == 0)
            traces.push_back(line);
    }
    EXPECT_EQ(traces, (Strings{"Param Size", "Param TheElement", "Param x", "Param TheElement"}));
}

TEST_F(Authorization, VolumesThatCannotBeClassifiedFailAndAreReported) {
    String baseKey; // classified without a report
    EXPECT_EQ(classify("base", baseKey), 0);
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
