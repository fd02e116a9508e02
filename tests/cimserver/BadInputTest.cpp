// Requests no proper client sends. Each gets its HTTP status or CIM error, and the server goes
// on serving: every case ends with a good request that succeeds.
#include <gtest/gtest.h>

#include <cimxml/Http.h>
#include <cimxml/Request.h>

#include "RawHttp.h"
#include "TestServer.h"

#include <thread>
#include <vector>

using namespace Pegasus;
using ksv::test::HttpResponse;
using ksv::test::kTestNamespace;
using ksv::test::RawConnection;

namespace {

constexpr std::size_t kRequestLimit = 64 * 1024;

ksv::server::ServerConfig strictConfig() {
    ksv::server::ServerConfig config = ksv::test::testServerConfig(2);
    config.http.maxRequestBytes = kRequestLimit;
    config.http.maxConnections = 4;
    config.http.connectionTimeoutSeconds = 1;
    return config;
}

std::string enumerateDevicesBody() {
    auto request = ksv::cimxml::OperationRequest::make(
        ksv::cimxml::Operation::EnumerateInstanceNames, kTestNamespace);
    request.className = "KSV_TestDevice";
    return ksv::cimxml::encodeRequest(request);
}

class BadInputTest : public ::testing::Test {
protected:
    HttpResponse exchange(const std::string& request) {
        RawConnection connection = RawConnection::toPort(server.port());
        connection.send(request);
        return connection.receive();
    }

    void expectServerStillServes() {
        EXPECT_EQ(server.client()->enumerateInstanceNames(kTestNamespace, "KSV_TestDevice").size(),
                  3u);
    }

    ksv::test::TestServer server{strictConfig()};
};

TEST_F(BadInputTest, BodiesThatAreNoCimMessagesGet400WithCimError) {
    HttpResponse broken = exchange(ksv::test::cimPost("<CIM><MESSAGE", "EnumerateInstanceNames"));
    EXPECT_EQ(broken.status, 400u);
    EXPECT_EQ(broken.header("cimerror"), "request-not-well-formed");

    std::string truncated = enumerateDevicesBody();
    truncated.resize(truncated.size() / 2);
    EXPECT_EQ(exchange(ksv::test::cimPost(truncated, "EnumerateInstanceNames")).status, 400u);

    HttpResponse foreign = exchange(ksv::test::cimPost("<?xml version=\"1.0\"?><html/>", "X"));
    EXPECT_EQ(foreign.status, 400u);
    EXPECT_EQ(foreign.header("cimerror"), "request-not-valid");
    expectServerStillServes();
}

TEST_F(BadInputTest, HeadersThatDisagreeWithTheBodyGet400) {
    std::string body = enumerateDevicesBody();
    HttpResponse mismatch = exchange(ksv::test::cimPost(body, "GetInstance"));
    EXPECT_EQ(mismatch.status, 400u);
    EXPECT_EQ(mismatch.header("cimerror"), "header-mismatch");

    std::string request = ksv::test::cimPost(body, "EnumerateInstanceNames");
    request.replace(request.find("CIMOperation: MethodCall"), 24, "CIMOperation: Nonsense");
    EXPECT_EQ(exchange(request).header("cimerror"), "unsupported-operation");
    expectServerStillServes();
}

TEST_F(BadInputTest, UnknownOperationsAndMalformedPathsAreCimErrors) {
    std::string unknown = enumerateDevicesBody();
    unknown.replace(unknown.find("EnumerateInstanceNames"), 22, "EnumerateEverything");
    HttpResponse notSupported = exchange(ksv::test::cimPost(unknown, "EnumerateEverything"));
    EXPECT_EQ(notSupported.status, 200u);
    EXPECT_NE(notSupported.body.find("CODE=\"7\""), std::string::npos);

    auto request =
        ksv::cimxml::OperationRequest::make(ksv::cimxml::Operation::GetInstance, kTestNamespace);
    request.objectName = ksv::test::devicePath("dev-0");
    std::string body = ksv::cimxml::encodeRequest(request);
    body.replace(body.find("<KEYBINDING NAME=\"Id\">"), 22, "<KEYBINDING>");
    HttpResponse malformed = exchange(ksv::test::cimPost(body, "GetInstance"));
    EXPECT_EQ(malformed.status, 200u);
    EXPECT_NE(malformed.body.find("CODE=\"4\""), std::string::npos);
    expectServerStillServes();
}

TEST_F(BadInputTest, OversizedRequestsAreRefused) {
    std::string declared = ksv::test::cimPost("", "EnumerateInstanceNames");
    declared.replace(declared.find("Content-Length: 0"), 17,
                     "Content-Length: " + std::to_string(kRequestLimit + 1));
    EXPECT_EQ(exchange(declared).status, 413u);

    RawConnection chunked = RawConnection::toPort(server.port());
    std::string request = ksv::test::cimPost("", "EnumerateInstanceNames");
    request.replace(request.find("Content-Length: 0"), 17, "Transfer-Encoding: chunked");
    chunked.send(request);
    std::string piece(16 * 1024, 'x');
    char size[16];
    std::snprintf(size, sizeof size, "%zx\r\n", piece.size());
    try {
        for (int i = 0; i < 8; ++i)
            chunked.send(size + piece + "\r\n");
    } catch (const std::runtime_error&) {
        // The server may close before everything is sent; closing is the answer.
    }
    EXPECT_TRUE(chunked.closedByServer(std::chrono::seconds(3)));
    expectServerStillServes();
}

TEST_F(BadInputTest, TruncatedAndStalledRequestsAreDropped) {
    std::string request = ksv::test::cimPost(enumerateDevicesBody(), "EnumerateInstanceNames");
    RawConnection truncated = RawConnection::toPort(server.port());
    truncated.send(request.substr(0, request.size() - 20));
    truncated.closeSending();
    EXPECT_TRUE(truncated.closedByServer(std::chrono::seconds(3)));

    RawConnection stalled = RawConnection::toPort(server.port());
    stalled.send(request.substr(0, 40));
    EXPECT_TRUE(stalled.closedByServer(std::chrono::seconds(4)));
    expectServerStillServes();
}

TEST_F(BadInputTest, ConnectionsBeyondTheLimitGet503) {
    std::vector<RawConnection> held;
    for (int i = 0; i < 4; ++i)
        held.push_back(RawConnection::toPort(server.port()));
    // Let the server register them before the one too many arrives.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    HttpResponse refused =
        exchange(ksv::test::cimPost(enumerateDevicesBody(), "EnumerateInstanceNames"));
    EXPECT_EQ(refused.status, 503u);
    held.clear();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    expectServerStillServes();
}

TEST_F(BadInputTest, OnlyPostCarriesOperations) {
    EXPECT_EQ(exchange("GET /cimom HTTP/1.1\r\nHost: localhost\r\n\r\n").status, 405u);
    EXPECT_EQ(
        exchange("M-POST /cimom HTTP/1.1\r\nHost: localhost\r\nContent-Length: 0\r\n\r\n").status,
        501u);
    expectServerStillServes();
}

} // namespace
