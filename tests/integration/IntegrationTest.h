// What the end-to-end tests share: a server over the integration array (arrays/integration.json),
// started once per test suite, the names of the array's objects as the providers name them, and
// clients of it. wbemcli's own run of every operation is the CIM server suite's.
#ifndef KSV_TESTS_INTEGRATION_INTEGRATIONTEST_H
#define KSV_TESTS_INTEGRATION_INTEGRATIONTEST_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Client/CIMClient.h>

#include "ServerProcess.h"
#include "Wbemcli.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <string>

namespace ksv::test {

using namespace Pegasus;

extern const CIMNamespaceName KSV_NAMESPACE; // root/ksv

inline std::string text(const String& value) {
    return std::string(value.getCString());
}

// ---- The objects of the integration array ------------------------------------------------

// Disks 0 to 5; disk 2 is absent, disk 5 unusable (health 20) and without firmware.
CIMObjectPath diskPath(int disk);
CIMObjectPath extentPath(int disk);
CIMObjectPath packagePath(int disk);
CIMObjectPath identityPath(const std::string& version);
CIMObjectPath systemPath();
CIMObjectPath poolPath(const std::string& poolID);
// "60002AC00000000000000000004200" followed by the volume's two-digit number.
CIMObjectPath volumePath(int volume);
// "KSV_Magazine" or "KSV_DiskBay" with the magazine's DeviceID.
CIMObjectPath magazinePath(const std::string& className, const std::string& tag);
// The disk module's internal cache, in root/PG_Internal.
CIMObjectPath cachePath();

// Whether the instance is the object the name names: its class and key properties. A
// GetInstance answer carries no name of its own.
bool isNamedBy(const CIMInstance& instance, const CIMObjectPath& name);

// The path without host and namespace: what names the object in the namespace.
std::string bareText(CIMObjectPath path);

inline const CIMObjectPath& nameOf(const CIMObjectPath& path) {
    return path;
}
template <typename Object>
const CIMObjectPath& nameOf(const Object& object) {
    return object.getPath();
}

// The bare texts of the names of paths, instances or objects.
template <typename Objects>
std::set<std::string> bareTexts(const Objects& objects) {
    std::set<std::string> texts;
    for (Uint32 i = 0; i < objects.size(); i++)
        texts.insert(bareText(nameOf(objects[i])));
    return texts;
}

class IntegrationTest : public ::testing::Test {
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite();
    void SetUp() override;

    static ServerProcess& server() { return *_server; }
    static std::unique_ptr<CIMClient> client(const std::string& user = "admin",
                                             const std::string& password = "admin-pw") {
        return _server->client(user, password);
    }

private:
    static std::unique_ptr<ServerProcess> _server;
    static std::string _startFailure;
};

} // namespace ksv::test

#endif
