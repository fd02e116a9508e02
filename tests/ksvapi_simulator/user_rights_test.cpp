// The rights of users: who may open the library, which operations and which passwords.
#include "simulator_test_support.h"

#include <pwd.h>
#include <unistd.h>

namespace ksvsim::testing {
namespace {

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
    // The model trusts the account of the server that uses the library, and only that model.
    const std::string server = getpwuid(geteuid())->pw_name;
    EXPECT_EQ(api_ksvOpenForCimserver(server.c_str()), API_OK);
    loadModel(minimalModel());
    EXPECT_EQ(api_ksvOpenForCimserver(server.c_str()), API_E_DENIED);
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
