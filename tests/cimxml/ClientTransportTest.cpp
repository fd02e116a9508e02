#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Client/CIMXmlClientBackend.h>

#include <cimxml/Response.h>

#include "TestServer.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <mutex>
#include <stdexcept>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

using namespace Pegasus;
using ksv::cimxml::testing::utf8;
using ksv::test::kTestNamespace;

namespace {

// The value of a field in an HTTP message's text; empty when absent.
std::string fieldOf(const std::string& message, const std::string& nameAndColon) {
    const size_t at = message.find(nameAndColon);
    const size_t start = at + nameAndColon.size();
    return at == std::string::npos ? "" : message.substr(start, message.find('\r', at) - start);
}

// Answers the n-th request it reads with the n-th canned byte string, for the answers a real
// server never gives. An empty answer hangs up without a reply, "Connection: close" after one.
class CannedServer {
public:
    explicit CannedServer(std::vector<std::string> answers) : _answers(std::move(answers)) {
        sockaddr_in address{AF_INET, 0, {htonl(INADDR_LOOPBACK)}, {}};
        socklen_t length = sizeof(address);
        if (bind(_listener, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
            listen(_listener, 8) != 0)
            throw std::runtime_error("cannot listen on the loopback interface");
        getsockname(_listener, reinterpret_cast<sockaddr*>(&address), &length);
        _port = ntohs(address.sin_port);
        _acceptor = std::thread([this] { accept(); });
    }
    ~CannedServer() {
        _stop = true;
        _acceptor.join();
        close(_listener);
    }
    unsigned port() const { return _port; }
    int connectionsOpened() const { return _connections; }
    std::vector<std::string> requests() const {
        std::lock_guard<std::mutex> lock(_mutex);
        return _requests;
    }

private:
    // False on close or stop.
    bool readMore(int fd, std::string& into) const {
        char buffer[4096];
        const ssize_t got = readable(fd) ? read(fd, buffer, sizeof(buffer)) : 0;
        into.append(buffer, size_t(std::max<ssize_t>(got, 0)));
        return got > 0;
    }
    void accept() {
        std::vector<std::thread> served;
        while (readable(_listener)) {
            ++_connections;
            served.emplace_back([this, fd = ::accept(_listener, nullptr, nullptr)] { serve(fd); });
        }
        for (std::thread& thread : served)
            thread.join();
    }
    // Polls briefly so that the destructor's stop is noticed.
    bool readable(int fd) const {
        pollfd ready{fd, POLLIN, 0};
        while (!_stop && poll(&ready, 1, 50) == 0) {
        }
        return !_stop;
    }
    void serve(int fd) {
        std::string pending;
        for (;;) {
            size_t head = pending.find("\r\n\r\n");
            while (head == std::string::npos && readMore(fd, pending))
                head = pending.find("\r\n\r\n");
            const size_t length = head + 4 + std::stoul("0" + fieldOf(pending, "Content-Length: "));
            while (head != std::string::npos && pending.size() < length && readMore(fd, pending)) {
            }
            if (head == std::string::npos || pending.size() < length)
                break;
            const std::string answer = record(pending.substr(0, length));
            pending.erase(0, length);
            // Not at once: a client that ignores its time-out then sees an empty reply instead.
            pollfd hangUp{fd, POLLIN, 0};
            if (answer.empty() && poll(&hangUp, 1, 1500) >= 0)
                break;
            if (write(fd, answer.data(), answer.size()) < 0 ||
                answer.find("Connection: close") != std::string::npos)
                break;
        }
        close(fd);
    }
    std::string record(const std::string& request) {
        std::lock_guard<std::mutex> lock(_mutex);
        _requests.push_back(request);
        return _requests.size() <= _answers.size() ? _answers[_requests.size() - 1] : "";
    }

    const std::vector<std::string> _answers;
    const int _listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    unsigned _port = 0;
    std::atomic<bool> _stop{false};
    std::atomic<int> _connections{0};
    mutable std::mutex _mutex;
    std::vector<std::string> _requests;
    std::thread _acceptor;
};

std::string responseWithId(const std::string& id) {
    std::string body;
    ksv::cimxml::IMethodResponseWriter(body, id, ksv::cimxml::Operation::EnumerateClassNames)
        .finish();
    return body;
}

std::string http(const std::string& statusAndFields, const std::string& body) {
    return "HTTP/1.1 " + statusAndFields + "\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\n\r\n" + body;
}

std::string answerWithId(const std::string& id) {
    return http("200 OK\r\nContent-Type: application/xml; charset=\"utf-8\"\r\n"
                "CIMOperation: MethodResponse",
                responseWithId(id));
}

// The message's part after its address.
std::string reason(const Exception& e) {
    const std::string message = utf8(e.getMessage());
    return message.substr(message.rfind(": ") + 2);
}

// What a client sees when its first call gets this answer.
std::string failureOf(const std::string& answer) {
    const CannedServer server({answer});
    CIMClient client;
    client.connect("127.0.0.1", server.port(), "", "");
    try {
        client.enumerateClassNames(kTestNamespace);
    } catch (const CIMClientHTTPErrorException& e) {
        return "HTTP " + std::to_string(e.getCode()) + " " + utf8(e.getCIMError()) + " " +
               utf8(e.getCIMErrorDetail());
    } catch (const CIMException& e) {
        return std::string(cimStatusCodeToString(e.getCode())) + " " + utf8(e.getMessage());
    } catch (const CIMClientMalformedHTTPException& e) {
        return "malformed: " + reason(e);
    } catch (const CannotConnectException& e) {
        return "cannot reach: " + reason(e);
    } catch (const CIMClientXmlException&) {
        return "CIMClientXmlException";
    } catch (const CIMClientResponseException& e) {
        return "CIMClientResponseException " + utf8(e.getMessage());
    }
    return "no error";
}

TEST(ClientTransport, OddAnswersBecomeTheExceptionsOpenPegasusClientsExpect) {
    std::string cimError;
    ksv::cimxml::appendErrorResponse(cimError, "1", "EnumerateClassNames", true, CIM_ERR_NOT_FOUND,
                                     "KSV_DiskDrive CIM Object not found.");
    const std::string stream = responseWithId("1");
    const struct {
        std::string answer;
        std::string failure;
    } cases[] = {
        {http("200 OK", cimError), "CIM_ERR_NOT_FOUND KSV_DiskDrive CIM Object not found."},
        {http("400 Bad Request\r\nCIMError: request-not-valid\r\nPGErrorDetail: bad%20body", ""),
         "HTTP 400 request-not-valid bad body"},
        {http("200 OK", "<html>busy</html>"), "CIMClientXmlException"},
        {answerWithId("999"), "CIMClientResponseException the response answers message 999, not 1"},
        // A stream that breaks off reports the failure in its trailer.
        {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nTrailer: CIMStatusCode\r\n\r\n" +
             (std::stringstream() << std::hex << stream.size()).str() + "\r\n" + stream +
             "\r\n0\r\nCIMStatusCode: 1\r\nCIMStatusCodeDescription: provider%20failed\r\n\r\n",
         "CIM_ERR_FAILED provider failed"},
        {"HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: 9\r\n\r\nshort",
         "malformed: transfer closed with 4 bytes remaining to read"},
        {"", "cannot reach: Empty reply from server"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.failure, failureOf(c.answer)) << c.answer;
}

TEST(ClientTransport, KeepsOneConnectionAndRecoversFromRefusalsAndTimeOuts) {
    CIMClient client;
    const unsigned closedPort = CannedServer({}).port();
    EXPECT_THROW(client.connect("127.0.0.1", closedPort, "", ""), CannotConnectException);
    CannedServer server({answerWithId("1"), answerWithId("2"), "", answerWithId("2")});
    client.connect("127.0.0.1", server.port(), "alice", "s3cr:t");
    client.enumerateClassNames(kTestNamespace);
    client.enumerateClassNames(kTestNamespace);
    // The probe at connect time, then the kept-alive connection.
    EXPECT_EQ(2, server.connectionsOpened());
    client.disconnect();
    client.connect("127.0.0.1", server.port(), "", "");
    client.setTimeout(300);
    EXPECT_THROW(client.enumerateClassNames(kTestNamespace), ConnectionTimeoutException);
    // The next call opens a new connection and succeeds, given time enough on a loaded machine.
    client.setTimeout(20000);
    EXPECT_EQ(0u, client.enumerateClassNames(kTestNamespace).size());
    // Another probe, the abandoned connection and its replacement.
    EXPECT_EQ(5, server.connectionsOpened());
    const std::vector<std::string> requests = server.requests();
    ASSERT_EQ(4u, requests.size());
    for (size_t i = 0; i < requests.size(); i++) {
        EXPECT_EQ(0u, requests[i].find("POST /cimom HTTP/1.1\r\n")) << requests[i];
        EXPECT_EQ("application/xml; charset=\"utf-8\"", fieldOf(requests[i], "Content-Type: "));
        EXPECT_EQ("1.0", fieldOf(requests[i], "CIMProtocolVersion: "));
        EXPECT_EQ(i < 2 ? "Basic YWxpY2U6czNjcjp0" : "", fieldOf(requests[i], "Authorization: "));
    }
}

TEST(ClientTransport, ReachesARealServerOverTcpAndItsLocalSocket) {
    const ksv::test::TestServer server;
    // Unescaped, the key's %41 would reach the server as A in the CIMObject header only.
    EXPECT_EQ(CIMValue(Uint32(2)), server.populate(2, 0, "D \"1\" %41"));

    ASSERT_EQ(0, setenv("KSV_CIMSERVER_SOCKET", server.socketPath().c_str(), 1));
    EXPECT_EQ(2u, CIMXmlClientConnector::connectLocal()
                      ->enumerateInstanceNames(kTestNamespace, CIMName("KSV_TestDevice"))
                      .size());
    ASSERT_EQ(0, unsetenv("KSV_CIMSERVER_SOCKET"));
    EXPECT_EQ(String("/tmp/ksv-cimserver.socket"), CIMXmlClientConnector::localSocketPath());
    try {
        CIMXmlClientConnector::connectUnixSocket((server.socketPath() + ".absent").c_str());
        ADD_FAILURE() << "connected to a socket that does not exist";
    } catch (const CannotConnectException& e) {
        EXPECT_NE(std::string::npos, utf8(e.getMessage()).find(".absent"));
    }
}

} // namespace
