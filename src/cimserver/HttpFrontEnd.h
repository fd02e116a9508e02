// The HTTP/1.1 side of the server (libmicrohttpd): TCP listeners for HTTP and HTTPS with Basic
// authentication (and client certificates over HTTPS), and a local Unix-socket listener that knows
// its clients from their socket credentials. Requests are read here and handed to the worker pool;
// their responses are sent as the workers produce them, whole when short, chunked when long.
#ifndef KSV_CIMSERVER_HTTPFRONTEND_H
#define KSV_CIMSERVER_HTTPFRONTEND_H

#include "cimserver/Caller.h"
#include "cimserver/ResponseStream.h"
#include "cimserver/TlsCredentials.h"
#include "cimserver/WorkerPool.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

struct MHD_Connection;
struct MHD_Daemon;

namespace ksv::server {

struct HttpSettings {
    // Empty: no TCP listener.
    std::string listenAddress = "127.0.0.1";
    // Plain HTTP on `port`.
    bool httpEnabled = true;
    std::uint16_t port = 5988;
    TlsSettings https;
    // Requests with a password over plain HTTP are refused: passwords travel encrypted only.
    bool refuseBasicOverHttp = false;
    // Empty: no Unix-socket listener.
    std::string socketPath;
    unsigned maxConnections = 64;
    // Connections from one IP address at once; more are closed as they come, so that one client
    // cannot take every connection.
    unsigned maxConnectionsPerAddress = 32;
    // How long a connection may stay silent while a request is awaited or being received.
    unsigned requestTimeoutSeconds = 10;
    // How long it may stay silent otherwise: while its response is produced and sent.
    unsigned connectionTimeoutSeconds = 30;
    // The most time one request may take to arrive whole, headers and body, counted from when it
    // is awaited: a client that trickles it in, never silent for long, is cut off all the same.
    unsigned requestDeadlineSeconds = 60;
    std::size_t maxRequestBytes = 16 * 1024 * 1024;
    StreamLimits streamLimits;
};

// A request as the worker receives it.
struct HttpRequest {
    Caller caller;
    std::optional<std::string> cimOperation;
    std::optional<std::string> cimMethod;
    std::optional<std::string> cimObject;
    std::string body;
};

// Runs on a worker thread and answers through the stream. Must not throw.
using RequestProcessor = std::function<void(HttpRequest& request, ResponseStream& response)>;
// True when the password is the user's.
using PasswordCheck = std::function<bool(const std::string& user, const std::string& password)>;
// The text of the status page.
using StatusPage = std::function<std::string()>;

class ListenError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class HttpFrontEnd {
public:
    HttpFrontEnd(HttpSettings settings, WorkerPool& workers, RequestProcessor process,
                 PasswordCheck checkPassword);
    ~HttpFrontEnd();
    HttpFrontEnd(const HttpFrontEnd&) = delete;
    HttpFrontEnd& operator=(const HttpFrontEnd&) = delete;

    // Opens the listeners; ListenError when one cannot be opened.
    void start();
    // The TCP ports listened on, which the system chose when the settings asked for port 0.
    std::uint16_t tcpPort() const { return _tcpPort; }
    std::uint16_t httpsPort() const { return _httpsPort; }
    // "http://address:port", "https://address:port" and "unix:path", for each listener.
    std::vector<std::string> addresses() const;

    // Served as text to GET /status on the local socket only: it tells how the server is, to
    // local users, and nothing secret.
    void serveStatusPage(StatusPage page) { _statusPage = std::move(page); }
    unsigned openConnections() const { return _connections; }
    std::uint64_t requestsServed() const { return _requestsServed; }

    // Shutdown, in order: no new connections; wait for the requests in progress; abandon the
    // rest; close everything.
    void stopAccepting();
    bool waitUntilIdle(std::chrono::steady_clock::time_point deadline);
    void abandonAll();
    void stop();

    // ---- Called by libmicrohttpd ---------------------------------------------------------------
    struct Listener;
    struct Exchange;
    struct ConnectionState;
    int onRequest(const Listener& listener, MHD_Connection* connection, const char* url,
                  const char* method, const char* uploadData, std::size_t* uploadSize,
                  void** requestContext);
    void onRequestEnded(MHD_Connection* connection, void** requestContext, bool completed);
    void onConnection(const Listener& listener, MHD_Connection* connection, void** socketContext,
                      bool started);

private:
    int beginRequest(const Listener& listener, MHD_Connection* connection, const char* url,
                     const char* method, void** requestContext);
    int answerGet(const Listener& listener, MHD_Connection* connection, const char* url);
    std::optional<Caller> authenticate(const Listener& listener, MHD_Connection* connection);
    std::optional<Caller> certificateCaller(const Listener& listener,
                                            MHD_Connection* connection) const;
    bool refusesPasswordOn(const Listener& listener, MHD_Connection* connection) const;
    int receiveBody(Exchange& exchange, const char* uploadData, std::size_t* uploadSize);
    int dispatch(Exchange& exchange);
    void awaitRequest(MHD_Connection* connection);
    void setRequestDue(MHD_Connection* connection, bool awaited);
    void watchConnections();
    void cutOffOverdue(ConnectionState& state, std::chrono::steady_clock::time_point now);
    static bool hungUpLongEnough(ConnectionState& state, std::chrono::steady_clock::time_point now);
    void awaitResponseReader(MHD_Connection* connection);
    int respond(Exchange& exchange);
    void forget(Exchange& exchange);

    MHD_Daemon* startTcpDaemon(Listener& listener, std::uint16_t port, std::uint16_t& boundPort);
    MHD_Daemon* startSocketDaemon();
    MHD_Daemon* startDaemon(Listener& listener, unsigned flags, std::uint16_t port,
                            int listenSocket, const void* address);
    std::string tcpAddress(const char* scheme, std::uint16_t port) const;

    const HttpSettings _settings;
    WorkerPool& _workers;
    const RequestProcessor _process;
    const PasswordCheck _checkPassword;
    StatusPage _statusPage;

    std::unique_ptr<Listener> _tcpListener;
    std::unique_ptr<Listener> _httpsListener;
    std::unique_ptr<Listener> _socketListener;
    std::unique_ptr<TlsCredentials> _tls;
    MHD_Daemon* _tcpDaemon = nullptr;
    MHD_Daemon* _httpsDaemon = nullptr;
    MHD_Daemon* _socketDaemon = nullptr;
    int _socketFd = -1;
    std::uint16_t _tcpPort = 0;
    std::uint16_t _httpsPort = 0;

    std::atomic<unsigned> _connections{0};
    std::atomic<std::uint64_t> _requestsServed{0};
    std::mutex _mutex;
    std::condition_variable _exchangeEnded;
    std::set<Exchange*> _exchanges;

    // Connections whose request is awaited or read are watched for the request deadline and for
    // a client that has hung up, which libmicrohttpd can miss.
    std::mutex _watchMutex;
    std::condition_variable _watchWake;
    bool _watchStopping = false;
    std::set<ConnectionState*> _watched;
    std::thread _watcher;
};

} // namespace ksv::server

#endif
