// KSV_DiskSoftwareIdentity: one identity per distinct firmware version of the present disks, in
// the order of first appearance, de-duplicated through the provider's string table, which every
// request must find unlocked and empty.
#include "InstanceProviderTestSupport.h"

#include "KSV_DiskSoftwareIdentityProvider.h"

namespace ksv::test {
namespace {

CIMObjectPath identityPath(const std::string& instanceID) {
    return pathOf("KSV_DiskSoftwareIdentity", {{"InstanceID", instanceID}});
}

// An array whose disks carry the firmware versions given, disk i of vendor "V<i>".
std::string arrayWithVersions(const Strings& versions) {
    std::string disks;
    for (size_t i = 0; i < versions.size(); i++) {
        const std::string id = std::to_string(i);
        disks += (i == 0 ? "" : ",") + std::string(R"({ "id": )") + id +
                 R"(, "wwn": "5000CCA00000010)" + id +
                 R"(", "cage": "c", "magazine": 0, "position": )" + id +
                 R"(, "manufacturer": { "vendor": "V)" + id + R"(" }, "firmware": { "version": ")" +
                 versions[i] + R"(" } })";
    }
    return R"({ "system": { "name": "F", "id": 3, "hostName": "f", "ipv4": "192.0.2.7" },
                "users": [ { "name": "admin", "password": "pw" } ],
                "cages": [ { "name": "c", "type": 2, "magazines": [ { "position": 0 } ] } ],
                "disks": [ )" +
           disks + "] }";
}

class DiskSoftwareIdentityProviderTest : public ArrayTest {
protected:
    DiskSoftwareIdentityProviderTest() : ArrayTest("disk-mappings.json") {}

    std::string identities(const std::string& names = "InstanceID") {
        std::string rendered;
        for (const CIMInstance& identity :
             enumerate(provider, "KSV_DiskSoftwareIdentity").instances)
            rendered += "{" + render(identity, names) + "}";
        return rendered;
    }

    InitializedProvider<KSV_DiskSoftwareIdentityProvider> provider{harness};
};

TEST_F(DiskSoftwareIdentityProviderTest, OneIdentityPerVersionDescribedByItsFirstDisk) {
    // "4.0" is on the first and third disk; the disk without a version and the absent disk's
    // "9.9" give none; versions are kept as stored, trailing blank included.
    EXPECT_EQ(identities("InstanceID VersionString Manufacturer FirmwareStatus"),
              "{InstanceID=QUANOR:4.0 VersionString=4.0 Manufacturer=SEAGATE FirmwareStatus=1}"
              "{InstanceID=QUANOR:4.02 VersionString=4.02 Manufacturer=STEC FirmwareStatus=2}"
              "{InstanceID=QUANOR:2.10  VersionString=2.10  Manufacturer=HGST "
              "FirmwareStatus=3}");
    const Answer names = enumerateNames(provider, "KSV_DiskSoftwareIdentity");
    ASSERT_EQ(names.paths.size(), 3u);
    EXPECT_EQ(render(names.paths[1]),
              "ksv-map.example.net root/ksv:KSV_DiskSoftwareIdentity InstanceID=QUANOR:4.02");

    loadArrayText(arrayWithVersions(Strings(10, "3.1")));
    EXPECT_EQ(identities(), "{InstanceID=QUANOR:3.1}");
    loadArrayText(arrayWithVersions({"3.1", "2.1", "3.1", "2.10", "2.1"}));
    EXPECT_EQ(identities("InstanceID Manufacturer"),
              "{InstanceID=QUANOR:3.1 Manufacturer=V0}{InstanceID=QUANOR:2.1 Manufacturer=V1}"
              "{InstanceID=QUANOR:2.10 Manufacturer=V3}");
}

TEST_F(DiskSoftwareIdentityProviderTest, TableIsLockedAfterTheReadAndLeftEmptyForTheNext) {
    ksvsim::clearCalls();
    identities();
    EXPECT_EQ(arrayCalls(),
              (Strings{"api_ksvOpenForCimserver(admin)", "cim_sem_wait()",
                       "api_getSystemDisks(-10)", "cim_sem_post()", "hashtable_lock()",
                       "hashtable_contains_key()", "hashtable_put()", "hashtable_contains_key()",
                       "hashtable_put()", "hashtable_contains_key()", "hashtable_contains_key()",
                       "hashtable_put()", "hashtable_clear()", "hashtable_unlock()"}));
    // Names walk the same table: a table left filled would hide every version here.
    EXPECT_EQ(enumerateNames(provider, "KSV_DiskSoftwareIdentity").paths.size(), 3u);

    ksvsim::forceResult("api_getSystemDisks", API_E_NO_MEMORY, 1);
    ksvsim::clearCalls();
    EXPECT_EQ(identities(), "");
    EXPECT_EQ(arrayCalls().back(), "cim_sem_post()") << "a failed read takes no table lock";
}

TEST_F(DiskSoftwareIdentityProviderTest, GetInstanceFindsVersionsOfPresentDisksOnly) {
    EXPECT_EQ(render(get(provider, identityPath("QUANOR:4.02")).instances.at(0), "Manufacturer"),
              "Manufacturer=STEC");
    EXPECT_EQ(cimErrorOf([&] { get(provider, identityPath("QUANOR:9.9")); }),
              "CIM_ERR_NOT_FOUND: KSV_DiskSoftwareIdentityProvider CIM Object not "
              "found.QUANOR:9.9");
    EXPECT_EQ(cimErrorOf([&] {
                  get(provider, pathOf("KSV_DiskSoftwareIdentity", {{"Version", "4.0"}}));
              }),
              "CIM_ERR_INVALID_PARAMETER: KSV_DiskSoftwareIdentityProvider InstanceID key not "
              "found.");
}

} // namespace
} // namespace ksv::test
