// The system, pool and volume providers: what they serve from the array, and the paths they
// serve under, which the disk module's associations must meet.
#include "StorageVolume/KSV_StoragePoolProvider.h"
#include "StorageVolume/KSV_StorageSystemProvider.h"
#include "StorageVolume/KSV_StorageVolumeProvider.h"

#include "SiblingProviderTestSupport.h"

#include <algorithm>

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

std::string spaceOf(const CIMInstance& pool) {
    return valueOf(pool, "PoolID") + " primordial=" + valueOf(pool, "Primordial") +
           " total=" + valueOf(pool, "TotalManagedSpace") +
           " free=" + valueOf(pool, "RemainingManagedSpace");
}

bool loadArray(const char* json) {
    const auto error = ksvsim::loadModelText(json);
    EXPECT_FALSE(error) << error->describe();
    return !error;
}

class StoragePoolProviderTest : public ::testing::Test {
protected:
    ProviderHarness harness;
    // Before the provider reads the array's identity.
    bool loaded = loadArray(POOL_ARRAY);
    ModuleProvider<KSV_StoragePoolProvider> pools{KSV_STORAGE_VOLUME_MODULE,
                                                  "KSV_StoragePoolProvider", harness};
};

TEST_F(StoragePoolProviderTest, UsableDisksMakeThePrimordialPoolAndOnePoolPerTechnology) {
    const Answer answer = enumerate(*pools.operator->(), "KSV_StoragePool");
    ASSERT_EQ(answer.instances.size(), 3u);
    EXPECT_EQ(spaceOf(answer.instances[0]), "primordial primordial=TRUE total=1576960 free=14336");
    EXPECT_EQ(spaceOf(answer.instances[1]), "all-FC primordial=FALSE total=1536000 free=4096");
    EXPECT_EQ(spaceOf(answer.instances[2]), "all-NL primordial=FALSE total=40960 free=10240");
    EXPECT_EQ(render(answer.paths), Strings({"KSV_StoragePool InstanceID=QUANOR:primordial",
                                             "KSV_StoragePool InstanceID=QUANOR:all-FC",
                                             "KSV_StoragePool InstanceID=QUANOR:all-NL"}));
    EXPECT_EQ(text(answer.paths[0].getHost()), "ksv-p1.example.net");
}

TEST_F(StoragePoolProviderTest, ThePrimordialPoolIsWhereTheDiskModuleLooksForIt) {
    const CIMObjectPath primordial =
        KSV_StoragePoolProvider::buildInstanceName("QUANOR:primordial", "ksv-p1.example.net");
    const Answer answer = get(*pools.operator->(), primordial);
    ASSERT_EQ(answer.events, kDeliveredOnce);
    EXPECT_TRUE(answer.instances[0].getPath().identical(primordial));
    EXPECT_EQ(valueOf(answer.instances[0], "InstanceID"), "QUANOR:primordial");
}

TEST_F(StoragePoolProviderTest, PoolsWithoutUsableDisksAreNotFound) {
    EXPECT_EQ(
        cimErrorOf([&] {
            get(*pools.operator->(), pathOf("KSV_StoragePool", {{"InstanceID", "QUANOR:all-SSD"}}));
        }),
        "CIM_ERR_NOT_FOUND: KSV_StoragePoolProvider CIM Object not found.");
}

TEST_F(StoragePoolProviderTest, WithoutTheDisksThereAreNoPools) {
    ksvsim::forceResult("api_getSystemDisks", API_E_NO_MEMORY, 1);
    EXPECT_EQ(enumerate(*pools.operator->(), "KSV_StoragePool").events,
              Strings({"processing", "complete"}));
    ksvsim::forceResult("cim_sem_wait", API_E_SEM_TIMEOUT, 1);
    ksvsim::clearCalls();
    EXPECT_EQ(enumerateNames(*pools.operator->(), "KSV_StoragePool").paths.size(), 0u);
    EXPECT_EQ(arrayCalls(), Strings({"api_ksvOpenForCimserver(admin)", "cim_sem_wait()"}));
}

class StorageVolumeProviderTest : public ::testing::Test {
protected:
    ProviderHarness harness;
    ModuleProvider<KSV_StorageVolumeProvider> volumes{KSV_STORAGE_VOLUME_MODULE,
                                                      "KSV_StorageVolumeProvider", harness};

    // Every volume of the array as "WWN name".
    static Strings arrayVolumes() {
        api_VVList_t list = {0, nullptr};
        api_getVVs(nullptr, &list);
        Strings found;
        for (Uint32 i = 0; i < list.count; i++)
            found.push_back(std::string(list.vvs[i].wwn) + " " + list.vvs[i].name);
        free(list.vvs);
        return found;
    }
};

TEST_F(StorageVolumeProviderTest, OneVolumePerArrayVolumeNamedByItsWwn) {
    const Answer answer = enumerate(*volumes.operator->(), "KSV_StorageVolume");
    Strings served;
    for (const CIMInstance& volume : answer.instances) {
        served.push_back(valueOf(volume, "DeviceID") + " " + valueOf(volume, "ElementName"));
        EXPECT_EQ(valueOf(volume, "Name"), valueOf(volume, "DeviceID"));
        EXPECT_TRUE(volume.getPath().identical(KSV_StorageVolumeProvider::createObjectPath(
            valueOf(volume, "DeviceID").c_str(), "KSV-D7", "ksv-d7.example.net")));
    }
    EXPECT_EQ(served, arrayVolumes());
    EXPECT_EQ(served.size(), 10u);
    EXPECT_EQ(render(enumerateNames(*volumes.operator->(), "KSV_StorageVolume").paths),
              render(answer.paths));
}

TEST_F(StorageVolumeProviderTest, GetInstanceReadsOnlyTheVolumeItsDeviceIDNames) {
    const std::string wwn = "60002AC00000000010D7000000001005";
    ksvsim::clearCalls();
    const Answer answer =
        get(*volumes.operator->(),
            KSV_StorageVolumeProvider::createObjectPath(wwn.c_str(), "KSV-D7", "another.host"));
    ASSERT_EQ(answer.events, kDeliveredOnce);
    EXPECT_EQ(valueOf(answer.instances[0], "ElementName"), "vmware.ds1");
    Strings reads = arrayCalls();
    reads.erase(std::remove(reads.begin(), reads.end(), "api_wwnIntToString()"), reads.end());
    EXPECT_EQ(reads, Strings({"api_ksvOpenForCimserver(admin)", "cim_sem_wait()",
                              "api_getVVs(" + wwn + ")", "cim_sem_post()"}));
}

TEST_F(StorageVolumeProviderTest, KeysThatNameNoVolumeExactlyAreNotFound) {
    const char* const notFound =
        "CIM_ERR_NOT_FOUND: KSV_StorageVolumeProvider CIM Object not found.";
    // The library finds volumes by name and by WWN in any case; the keys are exact.
    for (const char* deviceID : {"vmware.ds1", "60002ac00000000010d7000000001005",
                                 "60002AC00000000010D70000000010FF", ""}) {
        EXPECT_EQ(cimErrorOf([&] {
                      get(*volumes.operator->(), KSV_StorageVolumeProvider::createObjectPath(
                                                     deviceID, "KSV-D7", "ksv-d7.example.net"));
                  }),
                  notFound)
            << deviceID;
    }
    EXPECT_EQ(cimErrorOf([&] {
                  get(*volumes.operator->(),
                      KSV_StorageVolumeProvider::createObjectPath(
                          "60002AC00000000010D7000000001005", "KSV-OTHER", "ksv-d7.example.net"));
              }),
              notFound);
}

TEST_F(StorageVolumeProviderTest, APropertyListLimitsThePropertiesButNotTheKeys) {
    Array<CIMName> names;
    names.append("ElementName");
    const Answer answer =
        get(*volumes.operator->(),
            KSV_StorageVolumeProvider::createObjectPath("60002AC00000000010D7000000001000",
                                                        "KSV-D7", "ksv-d7.example.net"),
            "admin", CIMPropertyList(names));
    ASSERT_EQ(answer.instances.size(), 1u);
    EXPECT_EQ(answer.instances[0].getPropertyCount(), 1u);
    EXPECT_EQ(valueOf(answer.instances[0], "ElementName"), "admin");
    EXPECT_EQ(answer.instances[0].getPath().getKeyBindings().size(), 4u);
}

class StorageSystemProviderTest : public ::testing::Test {
protected:
    ProviderHarness harness;
    ModuleProvider<KSV_StorageSystemProvider> system{KSV_STORAGE_VOLUME_MODULE,
                                                     "KSV_StorageSystemProvider", harness};
};

TEST_F(StorageSystemProviderTest, TheOneSystemIsNamedAsTheInternalCacheNamesIt) {
    const Answer answer = enumerate(*system.operator->(), "KSV_StorageSystem");
    ASSERT_EQ(answer.instances.size(), 1u);
    const CIMInstance& array = answer.instances[0];
    EXPECT_EQ(render(array.getPath()),
              "KSV_StorageSystem CreationClassName=KSV_StorageSystem Name=KSV-D7");
    EXPECT_EQ(text(array.getPath().getHost()), "ksv-d7.example.net");
    EXPECT_EQ(valueOf(array, "Name"), "KSV-D7");
    EXPECT_EQ(valueOf(array, "ElementName"), "KSV-D7");
    EXPECT_EQ(valueOf(array, "Dedicated"), "3 15 ");
    EXPECT_EQ(valueOf(array, "OtherIdentifyingInfo"), "ksv-d7.example.net 198.51.100.25 1400512 ");
    EXPECT_EQ(render(enumerateNames(*system.operator->(), "KSV_StorageSystem").paths),
              Strings({render(array.getPath())}));
}

TEST_F(StorageSystemProviderTest, GetInstanceMatchesBothKeys) {
    EXPECT_EQ(get(*system.operator->(),
                  KSV_StorageSystemProvider::buildObjectPath("KSV-D7", "another.host"))
                  .events,
              kDeliveredOnce);
    EXPECT_EQ(cimErrorOf([&] {
                  get(*system.operator->(),
                      KSV_StorageSystemProvider::buildObjectPath("KSV-D8", "ksv-d7.example.net"));
              }),
              "CIM_ERR_NOT_FOUND: KSV_StorageSystemProvider CIM Object not found.");
}

// Every read-only provider of the module: the gate, the served classes, the refused changes.
struct ProviderCase {
    const char* providerName;
    const char* className;
};

class ReadOnlyShapeTest : public ::testing::TestWithParam<ProviderCase> {
protected:
    ProviderHarness harness;
    ModuleProvider<CIMInstanceProvider> provider{KSV_STORAGE_VOLUME_MODULE, GetParam().providerName,
                                                 harness};

    // The first served object, to ask for it.
    CIMObjectPath anObject() {
        return enumerateNames(*provider.operator->(), GetParam().className).paths.at(0);
    }
};

TEST_P(ReadOnlyShapeTest, RefusedUsersGetAccessDeniedBeforeTheArrayIsRead) {
    const CIMObjectPath object = anObject();
    const std::string denied = "CIM_ERR_ACCESS_DENIED: Insufficient privilege for the user";
    ksvsim::clearCalls();
    for (const char* user : {"auditor", "nobody", ""}) {
        EXPECT_EQ(cimErrorOf([&] { get(*provider.operator->(), object, user); }), denied);
        EXPECT_EQ(
            cimErrorOf([&] { enumerate(*provider.operator->(), GetParam().className, user); }),
            denied);
        EXPECT_EQ(
            cimErrorOf([&] { enumerateNames(*provider.operator->(), GetParam().className, user); }),
            denied);
    }
    for (const ksvsim::CallRecord& call : ksvsim::calls())
        EXPECT_EQ(call.function, "api_ksvOpenForCimserver");
}

TEST_P(ReadOnlyShapeTest, OtherClassesAndChangesAreNotSupported) {
    const std::string provider = GetParam().providerName;
    EXPECT_EQ(cimErrorOf([&] { enumerateNames(*this->provider.operator->(), "KSV_DiskDrive"); }),
              "CIM_ERR_NOT_SUPPORTED: " + provider + " Invalid class nameKSV_DiskDrive");
    const CIMObjectPath object = anObject();
    CIMInstance instance(object.getClassName());
    RecordingResponseHandler done;
    RecordingObjectPathHandler created;
    const OperationContext context = ProviderHarness::context();
    EXPECT_EQ(cimErrorOf([&] {
                  this->provider->modifyInstance(context, object, instance, false,
                                                 CIMPropertyList(), done);
              }),
              "CIM_ERR_NOT_SUPPORTED: " + provider + " does not support modifyInstance.");
    EXPECT_EQ(
        cimErrorOf([&] { this->provider->createInstance(context, object, instance, created); }),
        "CIM_ERR_NOT_SUPPORTED: " + provider + " does not support createInstance.");
    EXPECT_EQ(cimErrorOf([&] { this->provider->deleteInstance(context, object, done); }),
              "CIM_ERR_NOT_SUPPORTED: " + provider + " does not support deleteInstance.");
}

INSTANTIATE_TEST_SUITE_P(
    SiblingProviders, ReadOnlyShapeTest,
    ::testing::Values(ProviderCase{"KSV_StorageSystemProvider", "KSV_StorageSystem"},
                      ProviderCase{"KSV_StoragePoolProvider", "KSV_StoragePool"},
                      ProviderCase{"KSV_StorageVolumeProvider", "KSV_StorageVolume"}),
    [](const auto& info) { return std::string(info.param.className); });

TEST(StorageVolumeModule, CreatesItsProvidersByNameInAnyCase) {
    ProviderModule module(KSV_STORAGE_VOLUME_MODULE);
    for (const char* name : {"KSV_StorageSystemProvider", "ksv_storagepoolprovider",
                             "KSV_STORAGEVOLUMEPROVIDER", "KSV_InternalCacheProvider"}) {
        CIMProvider* created = module.createProvider(name);
        EXPECT_NE(created, nullptr) << name;
        delete created;
    }
    EXPECT_EQ(module.createProvider("KSV_StorageSystem"), nullptr);
    EXPECT_EQ(module.createProvider("KSV_MagazineProvider"), nullptr);
}

} // namespace
} // namespace ksv::test
