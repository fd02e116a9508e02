// Requests no proper client sends. Each gets its HTTP status or CIM error, or its connection
// closed, and the server goes on serving: every case is followed by a good request that succeeds.
#include <gtest/gtest.h>

#include <cimxml/Http.h>

#include "RawHttp.h"
#include "TestServer.h"

#include <thread>
#include <vector>

namespace ksv::test {
namespace {

using namespace Pegasus;

constexpr std::size_t kRequestLimit = 64 * 1024;

server::ServerConfig strictConfig() {
    server::ServerConfig config = testServerConfig(2);
    config.http.maxRequestBytes = kRequestLimit;
    config.http.maxConnections = 4;
    config.http.requestTimeoutSeconds = 1;
    config.http.requestDeadlineSeconds = 2;
    return config;
}

// `text` with its first `what` replaced.
std::string replaced(std::string text, const std::string& what, const std::string& with) {
    return text.replace(text.find(what), what.size(), with);
}

class BadInputTest : public ::testing::Test {
protected:
    void expectServerStillServes() {
        EXPECT_EQ(server.client()->enumerateInstanceNames(kTestNamespace, "KSV_TestDevice").size(),
                  3u);
    }

    TestServer server{strictConfig()};
};

TEST_F(BadInputTest, EachMalformedRequestGetsItsStatusOrCimError) {
    const std::string names = requestBody(cimxml::Operation::EnumerateInstanceNames);
    const std::string get = requestBody(cimxml::Operation::GetInstance);
    const std::string namesPost = cimPost(names, "EnumerateInstanceNames");
    const struct {
        const char* name;
        std::string request;
        unsigned status;
        const char* cimError;
        const char* bodyPart;
    } cases[] = {
        {"broken XML", cimPost("<CIM><MESSAGE", "EnumerateInstanceNames"), 400,
         "request-not-well-formed", ""},
        {"no CIM message", cimPost("<?xml version=\"1.0\"?><html/>", "X"), 400, "request-not-valid",
         ""},
        {"CIMMethod disagrees", cimPost(names, "GetInstance"), 400, "header-mismatch", ""},
        {"unknown CIMOperation", replaced(namesPost, "MethodCall", "Nonsense"), 400,
         "unsupported-operation", ""},
        {"unknown operation",
         cimPost(replaced(names, "EnumerateInstanceNames", "EnumerateEverything"),
                 "EnumerateEverything"),
         200, "", "CODE=\"7\""},
        {"key binding without name",
         cimPost(replaced(get, "<KEYBINDING NAME=\"Id\">", "<KEYBINDING>"), "GetInstance"), 200, "",
         "CODE=\"4\""},
        {"key beyond the limit",
         cimPost(replaced(get, ">dev-0<", ">" + std::string(4096, 'k') + "<"), "GetInstance"), 200,
         "", "CODE=\"27\""},
        {"declared body too large",
         replaced(cimPost("", "EnumerateInstanceNames"), "Content-Length: 0",
                  "Content-Length: " + std::to_string(kRequestLimit + 1)),
         413, "", ""},
        {"GET", "GET /cimom HTTP/1.1\r\nHost: localhost\r\n\r\n", 405, "", ""},
        {"M-POST", "M-POST /cimom HTTP/1.1\r\nHost: localhost\r\nContent-Length: 0\r\n\r\n", 501,
         "", ""},
    };
    for (const auto& c : cases) {
        HttpResponse response = exchange(server.port(), c.request);
        EXPECT_EQ(response.status, c.status) << c.name;
        EXPECT_EQ(response.header("cimerror"), c.cimError) << c.name;
        EXPECT_NE(response.body.find(c.bodyPart), std::string::npos) << c.name;
        expectServerStillServes();
    }
}

TEST_F(BadInputTest, OversizedTruncatedAndStalledRequestsAreDropped) {
    RawConnection chunked = RawConnection::toPort(server.port());
    chunked.send(replaced(cimPost("", "EnumerateInstanceNames"), "Content-Length: 0",
                          "Transfer-Encoding: chunked"));
    const std::string piece = "4000\r\n" + std::string(16 * 1024, 'x') + "\r\n";
    try {
        for (int i = 0; i < 8; ++i)
            chunked.send(piece);
        chunked.send("0\r\n\r\n");
    } catch (const std::runtime_error&) {
        // The server may close before everything is sent; closing is the answer.
    }
    EXPECT_TRUE(chunked.closedByServer(std::chrono::seconds(3)));
    expectServerStillServes();

    std::string request =
        cimPost(requestBody(cimxml::Operation::EnumerateInstanceNames), "EnumerateInstanceNames");
    RawConnection truncated = RawConnection::toPort(server.port());
    truncated.send(request.substr(0, request.size() - 20));
    truncated.closeSending();
    EXPECT_TRUE(truncated.closedByServer(std::chrono::seconds(3)));
    expectServerStillServes();

    RawConnection stalled = RawConnection::toPort(server.port());
    stalled.send(request.substr(0, 40));
    EXPECT_TRUE(stalled.closedByServer(std::chrono::seconds(4)));
    expectServerStillServes();

    // Never silent for a whole request time-out, yet cut off at the request deadline.
    RawConnection trickled = RawConnection::toPort(server.port());
    bool cutOff = false;
    for (std::size_t i = 0; i < 20 && !cutOff; ++i) {
        trickled.send(request.substr(i, 1));
        cutOff = trickled.closedByServer(std::chrono::milliseconds(400));
    }
    EXPECT_TRUE(cutOff);
    expectServerStillServes();
}

TEST(BadInputLimits, ConnectionsBeyondTheLimitOfOneAddressAreClosed) {
    server::ServerConfig config = strictConfig();
    config.http.maxConnectionsPerAddress = 2;
    TestServer server{config};
    std::vector<RawConnection> held;
    for (int i = 0; i < 3; ++i)
        held.push_back(RawConnection::toPort(server.port()));
    EXPECT_FALSE(held[0].closedByServer(std::chrono::milliseconds(200)));
    EXPECT_TRUE(held[2].closedByServer(std::chrono::seconds(1)));
    held.clear();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(server.client()->enumerateInstanceNames(kTestNamespace, "KSV_TestDevice").size(), 3u);
}

TEST_F(BadInputTest, ConnectionsBeyondTheLimitGet503) {
    std::vector<RawConnection> held;
    for (int i = 0; i < 4; ++i)
        held.push_back(RawConnection::toPort(server.port()));
    // Let the server register them before the one too many arrives.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(
        exchange(server.port(), cimPost(requestBody(cimxml::Operation::EnumerateInstanceNames),
                                        "EnumerateInstanceNames"))
            .status,
        503u);
    held.clear();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    expectServerStillServes();
}

} // namespace
} // namespace ksv::test
