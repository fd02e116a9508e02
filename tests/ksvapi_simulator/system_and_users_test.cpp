// System identity, addresses, ports, the status record and the rights of users.
#include "simulator_test_support.h"

#include <arpa/inet.h>

namespace ksvsim::testing {
namespace {

class SystemIdentity : public SimulatorTest {};

TEST_F(SystemIdentity, IdentityAndAddressesOfTheModel) {
    api_SystemInfo_t info{};
    ASSERT_EQ(api_getSystemInfo(&info), API_OK);
    EXPECT_STREQ(info.name, "KSV-S1");
    EXPECT_STREQ(info.hostName, "ksv-s1.example.net");
    EXPECT_EQ(info.id, 1100234u);
    EXPECT_EQ(info.type, 7);
    EXPECT_EQ(info.isQuadPort, 0);
    EXPECT_EQ(getNumberOfNodes(), 2);
    api_DualIP_t addresses{};
    ASSERT_EQ(api_getSystemDualIP(&addresses), API_OK);
    EXPECT_EQ(addresses.addrCount, 3u);
    char text[INET6_ADDRSTRLEN];
    EXPECT_STREQ(inet_ntop(AF_INET, &addresses.ipv4, text, sizeof text), "192.0.2.10");
    EXPECT_STREQ(inet_ntop(AF_INET6, &addresses.ipv6, text, sizeof text), "2001:db8::a");

    loadModel(minimalModel());
    ASSERT_EQ(api_getSystemDualIP(&addresses), API_OK);
    EXPECT_EQ(addresses.addrCount, 2u) << "no IPv6 address";
    EXPECT_STREQ(inet_ntop(AF_INET, &addresses.ipv4, text, sizeof text), "192.0.2.1");
    ASSERT_FALSE(ksvsim::loadModelFile(examplePath("demo-quadport.json")));
    ASSERT_EQ(api_getSystemInfo(&info), API_OK);
    EXPECT_EQ(info.isQuadPort, 1);
    EXPECT_EQ(getNumberOfNodes(), 4);
}

TEST_F(SystemIdentity, ValidateConvertIpNormalisesAddressesOnly) {
    const struct {
        const char* text;
        int family;
        const char* normalised;
    } cases[] = {
        {"192.0.2.10", 2, "192.0.2.10"},
        {"2001:DB8:0:0:0:0:0:A", 10, "2001:db8::a"},
        {"::ffff:192.0.2.1", 10, "::ffff:192.0.2.1"},
        {"fe80:0000::0001", 10, "fe80::1"},
    };
    for (const auto& c : cases) {
        char normalised[API_IP_TEXT_SIZE] = "untouched";
        EXPECT_EQ(validateConvertIP(c.text, normalised), c.family) << c.text;
        EXPECT_STREQ(normalised, c.normalised) << c.text;
    }
    for (const char* text :
         {"", "ksv-s1.example.net", "192.0.2", "192.0.2.256", "2001:db8:::1", "[2001:db8::a]"}) {
        char normalised[API_IP_TEXT_SIZE] = "untouched";
        EXPECT_EQ(validateConvertIP(text, normalised), -1) << text;
        EXPECT_STREQ(normalised, "untouched") << text;
    }
    EXPECT_EQ(validateConvertIP(nullptr, nullptr), -1);
}

TEST_F(SystemIdentity, PortsAreFoundByWwnOrNameAndLocationsPacked) {
    uint16_t lpid = 0;
    ASSERT_EQ(api_getFCPortLPID(0x21210002AC00A001, &lpid), API_OK);
    EXPECT_EQ(lpid, (1 << 7) | (2 << 3) | 1);
    ASSERT_EQ(api_getiSCSIPortLPID("iqn.2000-05.net.example:ksv-s1.0.3.1", &lpid), API_OK);
    EXPECT_EQ(lpid, (0 << 7) | (3 << 3) | 1);
    lpid = 7;
    EXPECT_EQ(api_getFCPortLPID(0x21210002AC00A002, &lpid), API_E_NOT_FOUND);
    EXPECT_EQ(api_getiSCSIPortLPID("iqn.2000-05.net.example:other", &lpid), API_E_NOT_FOUND);
    EXPECT_EQ(lpid, 7);

    ASSERT_EQ(api_convertStrLPIDtoPortID("7:15:7", &lpid), API_OK);
    EXPECT_EQ(lpid, 0x3FF);
    ASSERT_EQ(api_convertStrLPIDtoPortID("1:6:1", &lpid), API_OK);
    EXPECT_EQ(lpid, 0x0B1);
    for (const char* text : {"", "1:6", "8:0:0", "0:16:0", "0:0:8", "1:6:1:0", "a:b:c", "-1:0:0"}) {
        lpid = 99;
        EXPECT_EQ(api_convertStrLPIDtoPortID(text, &lpid), API_E_INVALID) << text;
        EXPECT_EQ(lpid, 99) << text;
    }
}

TEST_F(SystemIdentity, StatusRecordKeepsCodeAndTextCutToFit) {
    api_status_t status;
    const std::string longText(400, 'x');
    errinfo_set_str(&status, 29, longText.c_str());
    EXPECT_EQ(status.code, 29);
    EXPECT_EQ(std::string(status.text), longText.substr(0, sizeof status.text - 1));
    api_initStatus(&status);
    EXPECT_EQ(status.code, 0);
    EXPECT_STREQ(status.text, "");
}

class UserRights : public SimulatorTest {};

TEST_F(UserRights, OpenGrantsUsersWithCimAccessUnlessRefused) {
    EXPECT_EQ(api_ksvOpenForCimserver("admin"), API_OK);
    EXPECT_EQ(api_ksvOpenForCimserver("monitor"), API_OK);
    for (const char* denied : {"guest", "nobody", ""}) {
        EXPECT_EQ(api_ksvOpenForCimserver(denied), API_E_DENIED) << denied;
    }
    EXPECT_EQ(api_ksvOpenForCimserver(nullptr), API_E_DENIED);
    ksvsim::refuseUser("admin");
    EXPECT_EQ(api_ksvOpenForCimserver("admin"), API_E_DENIED);
    EXPECT_EQ(api_authorizeCIMUser("admin", "192.0.2.99", "ksv_storagesetting.modifyinstance"),
              API_E_DENIED);
    EXPECT_EQ(api_ksvOpenForCimserver("monitor"), API_OK);
    ksvsim::clearRefusedUsers();
    EXPECT_EQ(api_ksvOpenForCimserver("admin"), API_OK);
}

TEST_F(UserRights, OperationKeysAreGrantedExactlyOrByPrefix) {
    const struct {
        const char* user;
        const char* key;
        int result;
    } cases[] = {
        {"admin", "ksv_storageconfigurationservice.deletestoragepool.deletedynamicstoragepool",
         API_OK},
        {"monitor", "ksv_storagesetting.modifyinstance", API_OK},
        {"monitor", "ksv_storagesetting.modifyinstance.more", API_E_DENIED},
        {"monitor", "ksv_replicationservice.modifyreplicasynchronization.abort ", API_OK},
        {"monitor", "ksv_replicationservicecapabilities", API_E_DENIED},
        {"monitor", "ksv_storageconfigurationservice.returntostoragepool.basevv", API_E_DENIED},
        {"guest", "ksv_storagesetting.modifyinstance", API_E_DENIED},
        {"nobody", "ksv_storagesetting.modifyinstance", API_E_DENIED},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(api_authorizeCIMUser(c.user, "192.0.2.99", c.key), c.result)
            << c.user << " " << c.key;
    }
}

TEST_F(UserRights, PasswordsAreCheckedExactly) {
    EXPECT_EQ(api_checkUserPassword("admin", "admin-pw"), API_OK);
    EXPECT_EQ(api_checkUserPassword("guest", "guest-pw"), API_OK) << "login is not CIM access";
    EXPECT_EQ(api_checkUserPassword("admin", "Admin-pw"), API_E_DENIED);
    EXPECT_EQ(api_checkUserPassword("admin", ""), API_E_DENIED);
    EXPECT_EQ(api_checkUserPassword("admin", nullptr), API_E_DENIED);
    EXPECT_EQ(api_checkUserPassword("nobody", "admin-pw"), API_E_DENIED);
}

} // namespace
} // namespace ksvsim::testing
