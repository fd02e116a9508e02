#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Client/CIMXmlClientBackend.h>

#include <cimxml/Request.h>
#include <cimxml/Response.h>

#include "LoopbackResponder.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <stdlib.h>

using namespace Pegasus;
using ksv::cimxml::decodeRequest;
using ksv::cimxml::Operation;
using ksv::cimxml::testing::answerLikeACimServer;
using ksv::cimxml::testing::LoopbackResponder;
using ksv::cimxml::testing::TemporaryDirectory;
using ksv::cimxml::testing::utf8;

namespace {

const CIMNamespaceName ksv("root/ksv");

class TcpTransport : public ::testing::Test {
protected:
    void SetUp() override {
        server = LoopbackResponder::onLoopbackTcp(answerLikeACimServer);
        client.connect("127.0.0.1", server->port(), "alice", "s3cr:t");
    }

    std::unique_ptr<LoopbackResponder> server;
    CIMClient client;
};

TEST_F(TcpTransport, PostsCimXmlWithTheDsp0200HeadersAndBasicAuthentication) {
    client.enumerateInstanceNames(ksv, CIMName("KSV_DiskDrive"));
    Array<CIMParamValue> out;
    client.invokeMethod(ksv, CIMObjectPath("KSV_DiskDrive.DeviceID=\"D 1\""), CIMName("Locate"),
                        Array<CIMParamValue>(), out);
    const std::vector<LoopbackResponder::Request> seen = server->requests();
    ASSERT_EQ(2u, seen.size());
    for (const LoopbackResponder::Request& request : seen) {
        EXPECT_EQ("POST", request.method);
        EXPECT_EQ("/cimom", request.url);
        EXPECT_EQ("alice", request.user);
        EXPECT_EQ("s3cr:t", request.password);
        EXPECT_EQ("application/xml; charset=\"utf-8\"", request.headers.at("content-type"));
        EXPECT_EQ("MethodCall", request.headers.at("cimoperation"));
        EXPECT_EQ("1.0", request.headers.at("cimprotocolversion"));
        EXPECT_EQ(0u, request.headers.count("expect"));
        EXPECT_EQ(std::to_string(request.body.size()), request.headers.at("content-length"));
    }
    EXPECT_EQ("EnumerateInstanceNames", seen[0].headers.at("cimmethod"));
    EXPECT_EQ("root/ksv", seen[0].headers.at("cimobject"));
    EXPECT_EQ("Locate", seen[1].headers.at("cimmethod"));
    EXPECT_EQ("root/ksv:KSV_DiskDrive.DeviceID=%22D%201%22", seen[1].headers.at("cimobject"));
}

TEST_F(TcpTransport, OneConnectionServesEveryCallOfAClient) {
    for (int i = 0; i < 5; i++) {
        client.enumerateInstanceNames(ksv, CIMName("KSV_DiskDrive"));
    }
    // The probe at connect time, then the kept-alive connection.
    EXPECT_EQ(2, server->connectionsOpened());
    client.disconnect();
    client.connect("127.0.0.1", server->port(), "", "");
    client.enumerateClassNames(ksv);
    EXPECT_EQ(4, server->connectionsOpened());
    EXPECT_EQ("", server->requests().back().user);
    EXPECT_EQ(0u, server->requests().back().headers.count("authorization"));
}

TEST(LocalTransport, UsesTheServersUnixSocketWithoutCredentials) {
    const TemporaryDirectory directory;
    const std::string socketPath = directory.path() + "/cimserver.socket";
    const auto server = LoopbackResponder::onUnixSocket(socketPath, answerLikeACimServer);
    ASSERT_EQ(0, setenv("KSV_CIMSERVER_SOCKET", socketPath.c_str(), 1));
    EXPECT_EQ(String(socketPath.c_str()), CIMXmlClientConnector::localSocketPath());
    CIMClient client;
    client.connectLocal();
    EXPECT_EQ(3u, client.enumerateInstanceNames(ksv, CIMName("KSV_DiskDrive")).size());
    const LoopbackResponder::Request request = server->requests().back();
    EXPECT_EQ(0u, request.headers.count("authorization"));
    EXPECT_EQ("localhost", request.headers.at("host"));

    ASSERT_EQ(0, unsetenv("KSV_CIMSERVER_SOCKET"));
    EXPECT_EQ(String("/tmp/ksv-cimserver.socket"), CIMXmlClientConnector::localSocketPath());
    try {
        CIMXmlClientConnector::connectUnixSocket((directory.path() + "/absent.socket").c_str());
        ADD_FAILURE() << "connected to a socket that does not exist";
    } catch (const CannotConnectException& e) {
        EXPECT_NE(std::string::npos, utf8(e.getMessage()).find("absent.socket"));
    }
}

// Answers every request with one fixed answer.
std::unique_ptr<LoopbackResponder> answering(LoopbackResponder::Answer answer) {
    return LoopbackResponder::onLoopbackTcp(
        [answer](const LoopbackResponder::Request&) { return answer; });
}

std::string responseWithId(const std::string& id) {
    std::string body;
    ksv::cimxml::IMethodResponseWriter writer(body, id, Operation::EnumerateClassNames);
    writer.finish();
    return body;
}

// What a client sees when the server gives this answer to its call.
std::string failureOf(const LoopbackResponder::Answer& answer) {
    const auto server = answering(answer);
    CIMClient client;
    client.connect("127.0.0.1", server->port(), "", "");
    try {
        client.enumerateClassNames(ksv);
    } catch (const CIMClientHTTPErrorException& e) {
        return "HTTP " + std::to_string(e.getCode()) + " " + utf8(e.getCIMError()) + " " +
               utf8(e.getCIMErrorDetail());
    } catch (const CIMClientXmlException&) {
        return "CIMClientXmlException";
    } catch (const CIMClientResponseException&) {
        return "CIMClientResponseException";
    } catch (const CIMException& e) {
        return std::string(cimStatusCodeToString(e.getCode())) + " " + utf8(e.getMessage());
    }
    return "no error";
}

TEST(TransportErrors, BecomeTheExceptionsOpenPegasusClientsExpect) {
    std::string cimError;
    ksv::cimxml::appendErrorResponse(cimError, "1", "EnumerateClassNames", true, CIM_ERR_NOT_FOUND,
                                     "KSV_DiskDrive CIM Object not found.");
    EXPECT_EQ("CIM_ERR_NOT_FOUND KSV_DiskDrive CIM Object not found.",
              failureOf({200, cimError, {}, {}, 0}));
    EXPECT_EQ("HTTP 401  ",
              failureOf({401, "", {{"WWW-Authenticate", "Basic realm=\"ksv\""}}, {}, 0}));
    EXPECT_EQ("HTTP 400 request-not-valid bad body",
              failureOf({400,
                         "",
                         {{"CIMError", "request-not-valid"}, {"PGErrorDetail", "bad%20body"}},
                         {},
                         0}));
    EXPECT_EQ("CIMClientXmlException", failureOf({200, "<html>busy</html>", {}, {}, 0}));
    EXPECT_EQ("CIMClientResponseException", failureOf({200, responseWithId("999"), {}, {}, 0}));
    // A stream that breaks off reports the failure in its trailer.
    EXPECT_EQ(
        "CIM_ERR_FAILED provider failed",
        failureOf({200,
                   responseWithId("1"),
                   {},
                   {{"CIMStatusCode", "1"}, {"CIMStatusCodeDescription", "provider%20failed"}},
                   0}));
}

TEST(TransportErrors, RefusedConnectionsAndTimeOutsAreReported) {
    unsigned closedPort = 0;
    {
        const auto gone = answering({});
        closedPort = gone->port();
    }
    CIMClient client;
    EXPECT_THROW(client.connect("127.0.0.1", closedPort, "", ""), CannotConnectException);

    const auto slow = LoopbackResponder::onLoopbackTcp([](const LoopbackResponder::Request& r) {
        LoopbackResponder::Answer answer = answerLikeACimServer(r);
        answer.delayMilliseconds =
            decodeRequest(r.body).operation == Operation::GetClass ? 1500 : 0;
        return answer;
    });
    client.connect("127.0.0.1", slow->port(), "", "");
    client.setTimeout(300);
    EXPECT_THROW(client.getClass(ksv, CIMName("KSV_Thing")), ConnectionTimeoutException);
    // The next call opens a new connection and succeeds.
    EXPECT_EQ(2u, client.enumerateClassNames(ksv).size());
}

} // namespace
