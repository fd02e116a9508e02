// Who may call, who the providers are told is calling, and what the local socket tells. One
// worker: nested calls must run on the calling thread.
#include <gtest/gtest.h>

#include <Pegasus/Client/CIMXmlClientBackend.h>

#include <unistd.h>

#include "Probes.h"
#include "RawHttp.h"
#include "TestServer.h"
#include "cimserver/Caller.h"
#include "cimserver/ServerLog.h"
#include "cimserver/ServerStatus.h"

#include <ksvapi.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

namespace ksv::test {
namespace {

using namespace Pegasus;

class AuthenticationTest : public ::testing::Test {
protected:
    // The HTTP status a client with these credentials gets for a device enumeration.
    unsigned statusFor(const std::string& user, const std::string& password) {
        try {
            server.client(user, password)->enumerateInstanceNames(kTestNamespace, "KSV_TestDevice");
        } catch (const CIMClientHTTPErrorException& error) {
            return error.getCode();
        }
        return 200;
    }

    TestServer server{1};
};

TEST_F(AuthenticationTest, MissingOrWrongCredentialsAreRefusedBeforeAnyProviderCall) {
    unsigned before = ksvtest_count(KSVTEST_OPERATIONS);
    EXPECT_EQ(statusFor("", ""), 401u);
    EXPECT_EQ(statusFor("admin", "wrong"), 401u);
    EXPECT_EQ(statusFor("nobody", "admin-pw"), 401u);
    EXPECT_EQ(ksvtest_count(KSVTEST_OPERATIONS), before);
    EXPECT_EQ(statusFor("admin", "admin-pw"), 200u);

    HttpResponse response =
        exchange(server.port(), "POST /cimom HTTP/1.1\r\nHost: localhost\r\n"
                                "CIMOperation: MethodCall\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(response.status, 401u);
    EXPECT_EQ(response.header("www-authenticate").rfind("Basic realm=", 0), 0u);
}

TEST_F(AuthenticationTest, FailedLoginsAreLoggedWithUserAndAddressButNeverThePassword) {
    const std::string log = ::testing::TempDir() + "ksv-login-" + std::to_string(getpid());
    server::configureServerLog(KSV_LOG_WARNING, "file:" + log);
    statusFor("admin", "secret-guess");
    statusFor("admin", "admin-pw");
    server::configureServerLog(std::nullopt, std::nullopt);
    std::ifstream file(log);
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    std::remove(log.c_str());
    EXPECT_EQ(text, "ksv-cimserver[3] login failed: user \"admin\" from 127.0.0.1\n");
}

TEST_F(AuthenticationTest, NestedCallsCompleteAsTheServersOwnAccountOrNoUser) {
    auto monitor = server.client("monitor", "monitor-pw");
    // Nested calls are not the client's: connectLocal() is the server's own account, as the peer
    // of the local socket, and a handle call without an identity is the empty user.
    CIMInstance nested = monitor->getInstance(kTestNamespace, pathOf("KSV_TestNested", "nested"));
    EXPECT_EQ(stringProperty(nested, "NestedUser"), ksv::server::userNameOf(geteuid()));
    EXPECT_EQ(stringProperty(nested, "HandleUser"), "");
    EXPECT_EQ(nested.getProperty(nested.findProperty("GadgetsAtStart")).getValue().toString(), "2")
        << "from initialize";
    EXPECT_EQ(nested.getProperty(nested.findProperty("ViaHandle")).getValue().toString(), "3");
    EXPECT_EQ(nested.getProperty(nested.findProperty("ViaClient")).getValue().toString(), "3");
    // The association provider reads the devices and the far end through the server.
    EXPECT_EQ(monitor->associators(kTestNamespace, devicePath("dev-2")).size(), 1u);
}

TEST_F(AuthenticationTest, LocalSocketClientsAreTheirOwnUserWithoutPassword) {
    std::unique_ptr<CIMClientBackend> local =
        CIMXmlClientConnector::connectUnixSocket(server.socketPath().c_str());
    CIMInstance device = local->getInstance(kTestNamespace, devicePath("dev-0"), true, false, false,
                                            CIMPropertyList());
    EXPECT_EQ(stringProperty(device, "RequestedBy"), ksv::server::userNameOf(geteuid()));
}

std::uint64_t requestsServed(const std::string& page) {
    std::smatch match;
    EXPECT_TRUE(std::regex_search(page, match, std::regex("requests served: (\\d+)"))) << page;
    return match.empty() ? 0 : std::stoull(match[1]);
}

TEST_F(AuthenticationTest, OnlyTheLocalSocketTellsHowTheServerIs) {
    const std::uint64_t before = requestsServed(server.server().status());
    server.client()->enumerateInstanceNames(kTestNamespace, "KSV_TestDevice");
    server.client()->getInstance(kTestNamespace, devicePath("dev-0"));

    std::ostringstream out, err;
    ASSERT_EQ(server::printStatus(server.socketPath(), out, err), 0) << err.str();
    EXPECT_TRUE(std::regex_match(out.str(), std::regex("server: .+\nuptime: 0d 0h 0m \\d+s\n"
                                                       "requests served: \\d+\n"
                                                       "connections open: [1-9]\\d*\n"
                                                       "resident memory: [1-9]\\d* kB\n"
                                                       "array: simulated, model .+\n")))
        << out.str();
    EXPECT_EQ(requestsServed(out.str()), before + 2);

    EXPECT_EQ(exchange(server.port(), "GET /status HTTP/1.1\r\nHost: localhost\r\n\r\n").status,
              405u);
    EXPECT_EQ(server::printStatus("/nonexistent/ksv-cimserver.socket", out, err), 1);
    EXPECT_NE(err.str().find("no server answers on /nonexistent/ksv-cimserver.socket"),
              std::string::npos);
    EXPECT_EQ(server::printStatus("", out, err), 1);
}

} // namespace
} // namespace ksv::test
