// The system, pool and volume providers: what they serve from the array, and the paths they
// serve under, which the disk module's associations must meet.
#include "StorageVolume/KSV_StoragePoolProvider.h"
#include "StorageVolume/KSV_StorageSystemProvider.h"
#include "StorageVolume/KSV_StorageVolumeProvider.h"

#include "SiblingProviderTestSupport.h"

#include <KSV_Common.h>

namespace ksv::test {
namespace {

// Disks of every technology, with health around the usable limit; the SSD is unusable.
const char* const POOL_ARRAY = R"({
  "system": {"name": "KSV-P1", "id": 7, "hostName": "ksv-p1.example.net", "ipv4": "192.0.2.7"},
  "users": [{"name": "admin", "password": "pw"}],
  "cages": [{"name": "cage0", "type": 2, "magazines": [{"position": 0}]}],
  "disks": [
    {"id": 0, "wwn": "5000000000000A00", "cage": "cage0", "magazine": 0, "position": 0,
     "type": 1, "blockSize": 512, "numBlocks": 1000, "chunkSize": 1024, "chunks": {"free": 3}},
    {"id": 1, "wwn": "5000000000000A01", "cage": "cage0", "magazine": 0, "position": 1,
     "type": 2, "healthState": 19, "blockSize": 512, "numBlocks": 2000, "chunkSize": 1024,
     "chunks": {"free": 1}},
    {"id": 2, "wwn": "5000000000000A02", "cage": "cage0", "magazine": 0, "position": 2,
     "type": 5, "blockSize": 4096, "numBlocks": 10, "chunkSize": 2048, "chunks": {"free": 5}},
    {"id": 3, "wwn": "5000000000000A03", "cage": "cage0", "magazine": 0, "position": 3,
     "type": 4, "healthState": 20, "blockSize": 512, "numBlocks": 99, "chunks": {"free": 9}},
    {"id": 4, "wwn": "5000000000000A04", "cage": "cage0", "magazine": 0, "position": 4,
     "type": 4, "absent": true, "blockSize": 512, "numBlocks": 99}
  ]})";

const char* const NOT_FOUND = " CIM Object not found.";

class StoragePoolProviderTest : public ::testing::Test {
protected:
    ProviderHarness harness;
    // Before the provider reads the array's identity.
    bool loaded = !ksvsim::loadModelText(POOL_ARRAY);
    RunningProvider pools{harness, volumeModuleProvider("KSV_StoragePoolProvider"),
                          "KSV_StoragePool"};
};

TEST_F(StoragePoolProviderTest, UsableDisksMakeThePrimordialPoolAndOnePoolPerTechnology) {
    ASSERT_TRUE(loaded);
    Strings served;
    for (const CIMInstance& pool : pools.enumerateInstances().delivered) {
        served.push_back(render(pool.getPath()) + " " +
                         render(pool, "PoolID Primordial TotalManagedSpace RemainingManagedSpace"));
    }
    const std::string pool = "ksv-p1.example.net root/ksv:KSV_StoragePool InstanceID=QUANOR:";
    EXPECT_EQ(served, Strings({pool + "primordial PoolID=primordial Primordial=TRUE "
                                      "TotalManagedSpace=1576960 RemainingManagedSpace=14336",
                               pool + "all-FC PoolID=all-FC Primordial=FALSE "
                                      "TotalManagedSpace=1536000 RemainingManagedSpace=4096",
                               pool + "all-NL PoolID=all-NL Primordial=FALSE "
                                      "TotalManagedSpace=40960 RemainingManagedSpace=10240"}));
}

TEST_F(StoragePoolProviderTest, ThePrimordialPoolIsWhereTheDiskModuleLooksForIt) {
    const CIMObjectPath primordial =
        KSV_StoragePoolProvider::buildInstanceName("QUANOR:primordial", "ksv-p1.example.net");
    const RecordingInstanceHandler answer = pools.getInstance(primordial);
    ASSERT_EQ(answer.events(), kDeliveredOnce);
    EXPECT_TRUE(answer.delivered[0].getPath().identical(primordial));
    EXPECT_EQ(render(answer.delivered[0], "InstanceID"), "InstanceID=QUANOR:primordial");
    // A pool without usable disks is not served.
    EXPECT_EQ(failureOf([&] {
                  pools.getInstance(pathOf("KSV_StoragePool", {{"InstanceID", "QUANOR:all-SSD"}}));
              }),
              std::string("CIM_ERR_NOT_FOUND: KSV_StoragePoolProvider") + NOT_FOUND);
}

TEST_F(StoragePoolProviderTest, WithoutTheDisksThereAreNoPools) {
    ksvsim::forceResult("api_getSystemDisks", API_E_NO_MEMORY, 1);
    EXPECT_EQ(pools.enumerateInstances().events(), Strings({"processing", "complete"}));
    ksvsim::forceResult("cim_sem_wait", API_E_SEM_TIMEOUT, 1);
    ksvsim::clearCalls();
    EXPECT_TRUE(pools.enumerateInstanceNames().delivered.empty());
    EXPECT_EQ(arrayCalls(), Strings({"api_ksvOpenForCimserver(admin)", "cim_sem_wait()"}));
}

class StorageVolumeProviderTest : public ::testing::Test {
protected:
    CIMObjectPath volume(const char* deviceID, const char* system = "KSV-D7") {
        return KSV_StorageVolumeProvider::createObjectPath(deviceID, system, "another.host");
    }

    ProviderHarness harness;
    RunningProvider volumes{harness, volumeModuleProvider("KSV_StorageVolumeProvider"),
                            "KSV_StorageVolume"};
};

TEST_F(StorageVolumeProviderTest, OneVolumePerArrayVolumeNamedByTheSystemAndItsWwn) {
    EXPECT_EQ(
        text(KSV_StorageVolumeProvider::createObjectPath("60002AC0000000000000000A00015F3C",
                                                         "KSV-D7", "ksv-d7.example.net")
                 .toString()),
        "//ksv-d7.example.net/root/ksv:KSV_StorageVolume."
        "CreationClassName=\"KSV_StorageVolume\",DeviceID=\"60002AC0000000000000000A00015F3C\","
        "SystemCreationClassName=\"KSV_StorageSystem\",SystemName=\"KSV-D7\"");
    api_VVList_t list = {0, nullptr};
    api_getVVs(nullptr, &list);
    Strings inArray;
    for (Uint32 i = 0; i < list.count; i++)
        inArray.push_back(std::string(list.vvs[i].wwn) + " " + list.vvs[i].name);
    free(list.vvs);

    const std::vector<CIMInstance> served = volumes.enumerateInstances().delivered;
    Strings servedVolumes;
    for (const CIMInstance& volume : served) {
        const std::string deviceID = text(KSV_Common::getStringProperty(volume, "DeviceID"));
        servedVolumes.push_back(deviceID + " " +
                                text(KSV_Common::getStringProperty(volume, "ElementName")));
        EXPECT_EQ(render(volume, "Name"), "Name=" + deviceID);
        EXPECT_TRUE(volume.getPath().identical(KSV_StorageVolumeProvider::createObjectPath(
            deviceID.c_str(), "KSV-D7", "ksv-d7.example.net")));
        for (Uint32 i = 0; i < volume.getPath().getKeyBindings().size(); i++)
            EXPECT_EQ(volume.getPath().getKeyBindings()[i].getType(), CIMKeyBinding::STRING);
    }
    EXPECT_EQ(servedVolumes, inArray);
    EXPECT_EQ(served.size(), 10u);
    EXPECT_EQ(volumes.enumerateInstanceNames().delivered, pathsOf(served));
}

TEST_F(StorageVolumeProviderTest, GetInstanceReadsOnlyTheVolumeItsKeysNameExactly) {
    ksvsim::clearCalls();
    const RecordingInstanceHandler answer =
        volumes.getInstance(volume("60002AC00000000010D7000000001005"));
    ASSERT_EQ(answer.events(), kDeliveredOnce);
    EXPECT_EQ(render(answer.delivered[0], "ElementName"), "ElementName=vmware.ds1");
    Strings reads = arrayCalls();
    reads.erase(std::remove(reads.begin(), reads.end(), "api_wwnIntToString()"), reads.end());
    EXPECT_EQ(reads, Strings({"api_ksvOpenForCimserver(admin)", "cim_sem_wait()",
                              "api_getVVs(60002AC00000000010D7000000001005)", "cim_sem_post()"}));

    // The library finds volumes by name and by WWN in any case; the keys are exact.
    for (const CIMObjectPath& missing :
         {volume("vmware.ds1"), volume("60002ac00000000010d7000000001005"),
          volume("60002AC00000000010D70000000010FF"), volume(""),
          volume("60002AC00000000010D7000000001005", "KSV-OTHER")}) {
        EXPECT_EQ(failureOf([&] { volumes.getInstance(missing); }),
                  std::string("CIM_ERR_NOT_FOUND: KSV_StorageVolumeProvider") + NOT_FOUND)
            << render(missing);
    }

    // A property list limits the properties but not the keys.
    Query elementName;
    elementName.propertyList = CIMPropertyList(Array<CIMName>(1, CIMName("ElementName")));
    const std::vector<CIMInstance> narrowed =
        volumes.getInstance(volume("60002AC00000000010D7000000001000"), elementName).delivered;
    ASSERT_EQ(narrowed.size(), 1u);
    EXPECT_EQ(narrowed[0].getPropertyCount(), 1u);
    EXPECT_EQ(render(narrowed[0], "ElementName"), "ElementName=admin");
    EXPECT_EQ(narrowed[0].getPath().getKeyBindings().size(), 4u);
}

TEST(StorageSystemProvider, TheOneSystemIsNamedAsTheInternalCacheNamesIt) {
    ProviderHarness harness;
    RunningProvider system{harness, volumeModuleProvider("KSV_StorageSystemProvider"),
                           "KSV_StorageSystem"};
    const std::vector<CIMInstance> served = system.enumerateInstances().delivered;
    ASSERT_EQ(served.size(), 1u);
    EXPECT_EQ(render(served[0].getPath()), "ksv-d7.example.net root/ksv:KSV_StorageSystem "
                                           "CreationClassName=KSV_StorageSystem Name=KSV-D7");
    EXPECT_EQ(render(served[0], "Name ElementName Dedicated OtherIdentifyingInfo"),
              "Name=KSV-D7 ElementName=KSV-D7 Dedicated=[3 15] "
              "OtherIdentifyingInfo=[ksv-d7.example.net 198.51.100.25 1400512]");
    EXPECT_EQ(system.enumerateInstanceNames().delivered, pathsOf(served));

    // getInstance matches both keys, but not the host.
    EXPECT_EQ(
        system.getInstance(KSV_StorageSystemProvider::buildObjectPath("KSV-D7", "another.host"))
            .events(),
        kDeliveredOnce);
    EXPECT_EQ(failureOf([&] {
                  system.getInstance(
                      KSV_StorageSystemProvider::buildObjectPath("KSV-D8", "ksv-d7.example.net"));
              }),
              std::string("CIM_ERR_NOT_FOUND: KSV_StorageSystemProvider") + NOT_FOUND);
}

// Every read-only provider of the module: the gate, the served classes, the refused changes.
struct ProviderCase {
    const char* providerName;
    const char* className;
};

class ReadOnlyShapeTest : public ::testing::TestWithParam<ProviderCase> {
protected:
    ProviderHarness harness;
    RunningProvider provider{harness, volumeModuleProvider(GetParam().providerName),
                             GetParam().className};
    CIMInstanceProvider& instances = *provider.as<CIMInstanceProvider>();
};

TEST_P(ReadOnlyShapeTest, RefusedUsersAreDeniedBeforeTheArrayIsReadAndChangesAreNotSupported) {
    const CIMObjectPath object = provider.enumerateInstanceNames().delivered.at(0);
    const std::string denied = "CIM_ERR_ACCESS_DENIED: Insufficient privilege for the user";
    ksvsim::clearCalls();
    for (const char* user : {"auditor", "nobody", ""}) {
        EXPECT_EQ(failureOf([&] { provider.getInstance(object, byUser(user)); }), denied);
        EXPECT_EQ(failureOf([&] { provider.enumerateInstances(byUser(user)); }), denied);
        EXPECT_EQ(failureOf([&] { provider.enumerateInstanceNames(byUser(user)); }), denied);
    }
    for (const ksvsim::CallRecord& call : ksvsim::calls())
        EXPECT_EQ(call.function, "api_ksvOpenForCimserver");

    const std::string name = GetParam().providerName;
    Query otherClass;
    otherClass.className = "KSV_DiskDrive";
    EXPECT_EQ(failureOf([&] { provider.enumerateInstanceNames(otherClass); }),
              "CIM_ERR_NOT_SUPPORTED: " + name + " Invalid class nameKSV_DiskDrive");
    CIMInstance instance(object.getClassName());
    RecordingResponseHandler done;
    RecordingObjectPathHandler created;
    const OperationContext context = ProviderHarness::context();
    EXPECT_EQ(failureOf([&] {
                  instances.modifyInstance(context, object, instance, false, CIMPropertyList(),
                                           done);
              }),
              "CIM_ERR_NOT_SUPPORTED: " + name + " does not support modifyInstance.");
    EXPECT_EQ(failureOf([&] { instances.createInstance(context, object, instance, created); }),
              "CIM_ERR_NOT_SUPPORTED: " + name + " does not support createInstance.");
    EXPECT_EQ(failureOf([&] { instances.deleteInstance(context, object, done); }),
              "CIM_ERR_NOT_SUPPORTED: " + name + " does not support deleteInstance.");
}

INSTANTIATE_TEST_SUITE_P(
    SiblingProviders, ReadOnlyShapeTest,
    ::testing::Values(ProviderCase{"KSV_StorageSystemProvider", "KSV_StorageSystem"},
                      ProviderCase{"KSV_StoragePoolProvider", "KSV_StoragePool"},
                      ProviderCase{"KSV_StorageVolumeProvider", "KSV_StorageVolume"}),
    [](const auto& info) { return std::string(info.param.className); });

TEST(StorageVolumeModule, CreatesItsProvidersByNameInAnyCase) {
    for (const char* name : {"KSV_StorageSystemProvider", "ksv_storagepoolprovider",
                             "KSV_STORAGEVOLUMEPROVIDER", "KSV_InternalCacheProvider"}) {
        CIMProvider* created = volumeModuleProvider(name);
        EXPECT_NE(created, nullptr) << name;
        delete created;
    }
    EXPECT_EQ(volumeModuleProvider("KSV_StorageSystem"), nullptr);
    EXPECT_EQ(volumeModuleProvider("KSV_MagazineProvider"), nullptr);
}

} // namespace
} // namespace ksv::test
