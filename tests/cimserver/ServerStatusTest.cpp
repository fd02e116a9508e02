// The status page that `ksv-cimserver --status` prints: served on the local socket only.
#include <gtest/gtest.h>

#include "RawHttp.h"
#include "TestServer.h"
#include "cimserver/ServerStatus.h"

#include <regex>
#include <sstream>

namespace ksv::test {
namespace {

std::uint64_t requestsServed(const std::string& page) {
    std::smatch match;
    EXPECT_TRUE(std::regex_search(page, match, std::regex("requests served: (\\d+)"))) << page;
    return match.empty() ? 0 : std::stoull(match[1]);
}

TEST(ServerStatusTest, LocalSocketTellsHowTheServerIs) {
    TestServer server;
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

    auto overTcp = RawConnection::toPort(server.port());
    overTcp.send("GET /status HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_EQ(overTcp.receive().status, 405u);
}

TEST(ServerStatusTest, NoServerOnTheSocketIsAFailure) {
    std::ostringstream out, err;
    EXPECT_EQ(server::printStatus("/nonexistent/ksv-cimserver.socket", out, err), 1);
    EXPECT_NE(err.str().find("no server answers on /nonexistent/ksv-cimserver.socket"),
              std::string::npos);
    EXPECT_EQ(server::printStatus("", out, err), 1);
}

} // namespace
} // namespace ksv::test
