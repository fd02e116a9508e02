#ifndef KSV_TESTS_CIMXML_LOOPBACKRESPONDER_H
#define KSV_TESTS_CIMXML_LOOPBACKRESPONDER_H

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

struct MHD_Daemon;

namespace ksv::cimxml::testing {

/// A tiny HTTP/1.1 server on 127.0.0.1 or a Unix socket that records what clients send and
/// answers through a handler, for testing the client transport without a CIM server.
class LoopbackResponder {
public:
    struct Request {
        std::string method;
        std::string url;
        /// By lower-case name.
        std::map<std::string, std::string> headers;
        std::string body;
        /// From Basic authentication; empty without.
        std::string user;
        std::string password;
    };

    struct Answer {
        unsigned status = 200;
        std::string body;
        std::vector<std::pair<std::string, std::string>> headers;
        /// When not empty the body is sent chunked, followed by these trailers.
        std::vector<std::pair<std::string, std::string>> trailers;
        unsigned delayMilliseconds = 0;
    };

    using Handler = std::function<Answer(const Request&)>;

    static std::unique_ptr<LoopbackResponder> onLoopbackTcp(Handler handler);
    static std::unique_ptr<LoopbackResponder> onUnixSocket(const std::string& path,
                                                           Handler handler);
    ~LoopbackResponder();

    unsigned port() const { return _port; }
    int connectionsOpened() const { return _connections.load(); }
    std::vector<Request> requests() const;

    /// Called by the HTTP library's threads.
    Answer answer(const Request& request);
    void countConnection() { ++_connections; }

private:
    LoopbackResponder(int listenSocket, unsigned port, Handler handler);

    Handler _handler;
    unsigned _port;
    std::atomic<int> _connections{0};
    mutable std::mutex _mutex;
    std::vector<Request> _requests;
    MHD_Daemon* _daemon = nullptr;
};

/// Answers like a CIM server, with canned results built by the codec: sampleClass() for
/// GetClass, sampleDisk(1..3) for instance enumerations, "KSV_A"/"KSV_B" for class names, and
/// for a method call the return value 0 with its input parameters echoed back; other
/// operations get an empty answer.
LoopbackResponder::Answer answerLikeACimServer(const LoopbackResponder::Request& request);

/// A fresh directory under the system's temporary directory, removed with its contents when the
/// object goes.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    const std::string& path() const { return _path; }

private:
    std::string _path;
};

} // namespace ksv::cimxml::testing

#endif
