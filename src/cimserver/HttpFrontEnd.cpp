#include "cimserver/HttpFrontEnd.h"

#include "cimserver/ServerLog.h"

#include <arpa/inet.h>
#include <microhttpd.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <ksvapi.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdarg>
#include <cstring>

namespace ksv::server {

namespace {

constexpr const char kRealm[] = "CIM Server";
// A streamed response leaves in chunks as large as the connection's memory allows: libmicrohttpd
// fills what its pool has free, and each chunk is one send. Clients that gather a response's
// chunks by moving what they hold for each one slow down with their number: OpenPegasus's own
// client took three times as long over 32 KB chunks as over 256 KB ones.
constexpr std::size_t kChunkBytes = 256 * 1024;
// Room for the request's head and the response's chunk besides.
constexpr std::size_t kConnectionMemoryBytes = kChunkBytes + 32 * 1024;
// libmicrohttpd allocates a block of this size, zeroed, for each response made from a callback,
// but fills the chunks of a streamed one in the connection's pool: the block needs no more.
constexpr std::size_t kResponseBlockBytes = 32 * 1024;
// Connections beyond the limit are still accepted, up to this many, to be told 503.
constexpr unsigned kRefusalSlots = 16;
// How often connections that await a request are looked at.
constexpr auto kWatchPeriod = std::chrono::milliseconds(100);
// How long a client that has hung up may leave bytes that the server does not read.
constexpr auto kUnreadGrace = std::chrono::seconds(1);

// Threads that serve the connections of one listener: one thread copying and sending every
// response was the limit once several large ones were in flight. One per core is enough.
unsigned connectionThreads() {
    return std::clamp(std::thread::hardware_concurrency(), 1u, 4u);
}
// Their stacks: requests are decoded and answered by the workers, so these threads parse only
// HTTP and TLS. Reserving the default 8 MB each would make every extra thread cost address space.
constexpr std::size_t kConnectionThreadStackBytes = 2 * 1024 * 1024;

std::string systemError(const std::string& what) {
    return what + ": " + std::strerror(errno);
}

// The sending side of a stream is the connection in libmicrohttpd.
class MhdConnection : public StreamConnection {
public:
    explicit MhdConnection(MHD_Connection* connection) : _connection(connection) {}
    void suspend() override { MHD_suspend_connection(_connection); }
    void resume() override { MHD_resume_connection(_connection); }

private:
    MHD_Connection* _connection;
};

int socketOf(MHD_Connection* connection) {
    const MHD_ConnectionInfo* info =
        MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
    return info != nullptr ? info->connect_fd : -1;
}

std::optional<std::string> peerUserOf(MHD_Connection* connection) {
    ucred credentials{};
    socklen_t length = sizeof credentials;
    if (getsockopt(socketOf(connection), SOL_SOCKET, SO_PEERCRED, &credentials, &length) != 0)
        return std::nullopt;
    return userNameOf(credentials.uid);
}

// When the client has hung up, or shut its sending side: how many of the bytes it sent are still
// unread.
std::optional<int> unreadAfterHangUp(int fd) {
    pollfd ready{fd, POLLRDHUP, 0};
    int unread = 0;
    if (poll(&ready, 1, 0) != 1 || (ready.revents & (POLLRDHUP | POLLHUP | POLLERR)) == 0 ||
        ioctl(fd, FIONREAD, &unread) != 0)
        return std::nullopt;
    return unread;
}

std::string clientAddressOf(MHD_Connection* connection) {
    const MHD_ConnectionInfo* info =
        MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
    char text[INET6_ADDRSTRLEN] = "unknown";
    if (info != nullptr && info->client_addr->sa_family == AF_INET)
        inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(info->client_addr)->sin_addr, text,
                  sizeof text);
    else if (info != nullptr && info->client_addr->sa_family == AF_INET6)
        inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6*>(info->client_addr)->sin6_addr,
                  text, sizeof text);
    return text;
}

std::optional<std::string> header(MHD_Connection* connection, const char* name) {
    const char* value = MHD_lookup_connection_value(connection, MHD_HEADER_KIND, name);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

MHD_Result queueStatus(MHD_Connection* connection, unsigned status, const std::string& text,
                       const std::vector<HttpHeader>& headers = {}) {
    std::string body = text + "\n";
    MHD_Response* response =
        MHD_create_response_from_buffer(body.size(), body.data(), MHD_RESPMEM_MUST_COPY);
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, "text/plain");
    for (const HttpHeader& entry : headers)
        MHD_add_response_header(response, entry.first.c_str(), entry.second.c_str());
    MHD_Result queued = MHD_queue_response(connection, status, response);
    MHD_destroy_response(response);
    return queued;
}

MHD_Result queueUnauthorized(MHD_Connection* connection) {
    const std::string body = "authentication required\n";
    MHD_Response* response = MHD_create_response_from_buffer(
        body.size(), const_cast<char*>(body.data()), MHD_RESPMEM_MUST_COPY);
    MHD_Result queued = MHD_queue_basic_auth_fail_response(connection, kRealm, response);
    MHD_destroy_response(response);
    return queued;
}

std::optional<std::size_t> declaredLength(MHD_Connection* connection) {
    std::optional<std::string> length = header(connection, MHD_HTTP_HEADER_CONTENT_LENGTH);
    if (!length)
        return std::nullopt;
    try {
        return static_cast<std::size_t>(std::stoull(*length));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

// ---- Response bodies ---------------------------------------------------------------------------

struct StreamedBody {
    std::shared_ptr<ResponseStream> stream;
    MHD_Response* response = nullptr;
};

ssize_t readStreamedBody(void* context, std::uint64_t, char* buffer, std::size_t capacity) {
    auto& body = *static_cast<StreamedBody*>(context);
    std::size_t copied = 0;
    switch (body.stream->read(buffer, capacity, copied)) {
    case ResponseStream::ReadState::Data:
        return static_cast<ssize_t>(copied);
    case ResponseStream::ReadState::Suspended:
        return 0;
    case ResponseStream::ReadState::End:
        for (const HttpHeader& trailer : body.stream->trailers())
            MHD_add_response_footer(body.response, trailer.first.c_str(), trailer.second.c_str());
        return MHD_CONTENT_READER_END_OF_STREAM;
    case ResponseStream::ReadState::Abandoned:
        break;
    }
    return MHD_CONTENT_READER_END_WITH_ERROR;
}

void releaseStreamedBody(void* context) {
    delete static_cast<StreamedBody*>(context);
}

MHD_Response* streamedResponse(const std::shared_ptr<ResponseStream>& stream) {
    auto* body = new StreamedBody{stream};
    body->response = MHD_create_response_from_callback(
        MHD_SIZE_UNKNOWN, kResponseBlockBytes, &readStreamedBody, body, &releaseStreamedBody);
    return body->response;
}

void releaseWholeBody(void* context) {
    delete static_cast<std::string*>(context);
}

MHD_Response* wholeResponse(std::string body) {
    auto* owned = new std::string(std::move(body));
    return MHD_create_response_from_buffer_with_free_callback_cls(owned->size(), owned->data(),
                                                                  &releaseWholeBody, owned);
}

// libmicrohttpd keeps pointers to the PEM texts, which the credentials own for as long.
void addTlsOptions(const TlsCredentials& tls, std::vector<MHD_OptionItem>& options) {
    options.push_back(
        {MHD_OPTION_HTTPS_MEM_CERT, 0, const_cast<char*>(tls.certificatePem().c_str())});
    options.push_back({MHD_OPTION_HTTPS_MEM_KEY, 0, const_cast<char*>(tls.keyPem().c_str())});
    // Asks clients for a certificate, which they may decline.
    if (!tls.clientTrustPem().empty()) {
        options.push_back(
            {MHD_OPTION_HTTPS_MEM_TRUST, 0, const_cast<char*>(tls.clientTrustPem().c_str())});
    }
}

void logFromLibrary(void*, const char* format, va_list arguments) {
    char line[512];
    std::vsnprintf(line, sizeof line, format, arguments);
    log_message(KSV_LOG_WARNING, "HTTP: %s", line);
}

} // namespace

// State of one connection, kept from accept to close.
struct HttpFrontEnd::ConnectionState {
    bool overLimit = false;
    // Socket connections only: the user at the other end.
    std::optional<std::string> peerUser;
    std::string clientAddress;
    int fd = -1;
    // The rest is guarded by the watch mutex. While a request is awaited or read: when it must
    // have arrived whole.
    std::optional<std::chrono::steady_clock::time_point> requestDue;
    // Counts the waits for a request. A hang-up is acted on once it has lasted through one wait
    // with nothing more read: before, the request it ends may still be on its way to a worker.
    std::uint64_t waits = 0;
    struct HangUp {
        std::uint64_t wait;
        int unread;
        std::chrono::steady_clock::time_point seen;
    };
    std::optional<HangUp> hangUp;
    bool cutOff = false;
};

namespace {

HttpFrontEnd::ConnectionState& connectionState(MHD_Connection* connection) {
    const MHD_ConnectionInfo* info =
        MHD_get_connection_info(connection, MHD_CONNECTION_INFO_SOCKET_CONTEXT);
    return *static_cast<HttpFrontEnd::ConnectionState*>(info->socket_context);
}

} // namespace

// ---- libmicrohttpd callbacks -------------------------------------------------------------------

struct HttpFrontEnd::Listener {
    HttpFrontEnd* owner;
    bool local;
    bool tls = false;
};

struct HttpFrontEnd::Exchange {
    MHD_Connection* connection;
    Caller caller;
    std::string body;
    std::shared_ptr<ResponseStream> stream;
};

namespace {

MHD_Result accessHandler(void* context, MHD_Connection* connection, const char* url,
                         const char* method, const char*, const char* uploadData,
                         std::size_t* uploadSize, void** requestContext) {
    auto& listener = *static_cast<HttpFrontEnd::Listener*>(context);
    return static_cast<MHD_Result>(listener.owner->onRequest(
        listener, connection, url, method, uploadData, uploadSize, requestContext));
}

void requestCompleted(void* context, MHD_Connection* connection, void** requestContext,
                      MHD_RequestTerminationCode code) {
    static_cast<HttpFrontEnd::Listener*>(context)->owner->onRequestEnded(
        connection, requestContext, code == MHD_REQUEST_TERMINATED_COMPLETED_OK);
}

void connectionNotified(void* context, MHD_Connection* connection, void** socketContext,
                        MHD_ConnectionNotificationCode code) {
    auto& listener = *static_cast<HttpFrontEnd::Listener*>(context);
    listener.owner->onConnection(listener, connection, socketContext,
                                 code == MHD_CONNECTION_NOTIFY_STARTED);
}

} // namespace

HttpFrontEnd::HttpFrontEnd(HttpSettings settings, WorkerPool& workers, RequestProcessor process,
                           PasswordCheck checkPassword)
    : _settings(std::move(settings)), _workers(workers), _process(std::move(process)),
      _checkPassword(std::move(checkPassword)) {}

HttpFrontEnd::~HttpFrontEnd() {
    stop();
}

void HttpFrontEnd::onConnection(const Listener& listener, MHD_Connection* connection,
                                void** socketContext, bool started) {
    auto* state = static_cast<ConnectionState*>(*socketContext);
    if (!started) {
        // libmicrohttpd closes the socket after this: the watcher never sees it closed.
        {
            std::lock_guard<std::mutex> lock(_watchMutex);
            _watched.erase(state);
        }
        delete state;
        *socketContext = nullptr;
        --_connections;
        return;
    }
    state = new ConnectionState;
    state->overLimit = ++_connections > _settings.maxConnections;
    if (listener.local)
        state->peerUser = peerUserOf(connection);
    state->clientAddress = listener.local ? "local" : clientAddressOf(connection);
    state->fd = socketOf(connection);
    *socketContext = state;
    std::lock_guard<std::mutex> lock(_watchMutex);
    _watched.insert(state);
    state->requestDue =
        std::chrono::steady_clock::now() + std::chrono::seconds(_settings.requestDeadlineSeconds);
}

// A client that opens connections and sends nothing holds them only for the short request
// time-out: the daemon's default, set again for each request.
void HttpFrontEnd::awaitRequest(MHD_Connection* connection) {
    MHD_set_connection_option(connection, MHD_CONNECTION_OPTION_TIMEOUT,
                              _settings.requestTimeoutSeconds);
    setRequestDue(connection, true);
}

void HttpFrontEnd::awaitResponseReader(MHD_Connection* connection) {
    MHD_set_connection_option(connection, MHD_CONNECTION_OPTION_TIMEOUT,
                              _settings.connectionTimeoutSeconds);
    setRequestDue(connection, false);
}

// While a request is awaited, the whole of it must arrive by a deadline.
void HttpFrontEnd::setRequestDue(MHD_Connection* connection, bool awaited) {
    ConnectionState& state = connectionState(connection);
    std::lock_guard<std::mutex> lock(_watchMutex);
    ++state.waits;
    if (!awaited)
        state.requestDue.reset();
    else
        state.requestDue = std::chrono::steady_clock::now() +
                           std::chrono::seconds(_settings.requestDeadlineSeconds);
}

// Everything read and still no whole request: none will come. Bytes left unread for long: the
// server has stopped reading, having answered an error.
bool HttpFrontEnd::hungUpLongEnough(ConnectionState& state,
                                    std::chrono::steady_clock::time_point now) {
    const std::optional<int> unread = unreadAfterHangUp(state.fd);
    if (!unread) {
        state.hangUp.reset();
        return false;
    }
    if (!state.hangUp || state.hangUp->wait != state.waits || state.hangUp->unread != *unread) {
        state.hangUp = ConnectionState::HangUp{state.waits, *unread, now};
        return false;
    }
    return now - state.hangUp->seen >= (*unread == 0 ? kWatchPeriod : kUnreadGrace);
}

void HttpFrontEnd::watchConnections() {
    std::unique_lock<std::mutex> lock(_watchMutex);
    while (!_watchStopping) {
        _watchWake.wait_for(lock, kWatchPeriod);
        const auto now = std::chrono::steady_clock::now();
        for (ConnectionState* state : _watched)
            cutOffOverdue(*state, now);
    }
}

// Shutting the socket down makes libmicrohttpd close the connection. A client that has hung up
// is let go at once: libmicrohttpd (epoll) can miss an end of stream that comes with the last
// bytes of a request, and would hold the connection until it times out. The watch mutex is held,
// so the socket is still the connection's.
void HttpFrontEnd::cutOffOverdue(ConnectionState& state,
                                 std::chrono::steady_clock::time_point now) {
    if (!state.requestDue || state.cutOff)
        return;
    if (now >= *state.requestDue) {
        logRequestOverdue(state.clientAddress, _settings.requestDeadlineSeconds);
    } else if (!hungUpLongEnough(state, now)) {
        return;
    }
    shutdown(state.fd, SHUT_RDWR);
    state.cutOff = true;
}

int HttpFrontEnd::onRequest(const Listener& listener, MHD_Connection* connection, const char* url,
                            const char* method, const char* uploadData, std::size_t* uploadSize,
                            void** requestContext) {
    auto* exchange = static_cast<Exchange*>(*requestContext);
    if (exchange == nullptr)
        return beginRequest(listener, connection, url, method, requestContext);
    if (*uploadSize != 0)
        return receiveBody(*exchange, uploadData, uploadSize);
    if (!exchange->stream)
        return dispatch(*exchange);
    return respond(*exchange);
}

int HttpFrontEnd::beginRequest(const Listener& listener, MHD_Connection* connection,
                               const char* url, const char* method, void** requestContext) {
    if (connectionState(connection).overLimit) {
        return queueStatus(connection, MHD_HTTP_SERVICE_UNAVAILABLE, "too many connections",
                           {{MHD_HTTP_HEADER_CONNECTION, "close"}, {"Retry-After", "1"}});
    }
    if (std::strcmp(method, MHD_HTTP_METHOD_GET) == 0)
        return answerGet(listener, connection, url);
    if (std::strcmp(method, MHD_HTTP_METHOD_POST) != 0) {
        // DSP0200 clients fall back from M-POST to POST on 501.
        unsigned status = std::strcmp(method, "M-POST") == 0 ? MHD_HTTP_NOT_IMPLEMENTED
                                                             : MHD_HTTP_METHOD_NOT_ALLOWED;
        return queueStatus(connection, status, "CIM operations are POSTed",
                           {{MHD_HTTP_HEADER_ALLOW, MHD_HTTP_METHOD_POST}});
    }
    if (refusesPasswordOn(listener, connection)) {
        return queueStatus(connection, MHD_HTTP_FORBIDDEN,
                           "passwords are refused over plain HTTP; use HTTPS");
    }
    std::optional<Caller> caller = authenticate(listener, connection);
    if (!caller) {
        if (listener.local)
            return queueStatus(connection, MHD_HTTP_FORBIDDEN, "unknown local user");
        return queueUnauthorized(connection);
    }
    std::optional<std::size_t> length = declaredLength(connection);
    if (length && *length > _settings.maxRequestBytes) {
        return queueStatus(connection, MHD_HTTP_CONTENT_TOO_LARGE,
                           "request larger than " + std::to_string(_settings.maxRequestBytes) +
                               " bytes");
    }
    auto* exchange = new Exchange{connection, std::move(*caller), {}, nullptr};
    if (length)
        exchange->body.reserve(*length);
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _exchanges.insert(exchange);
    }
    *requestContext = exchange;
    return MHD_YES;
}

int HttpFrontEnd::answerGet(const Listener& listener, MHD_Connection* connection, const char* url) {
    if (!listener.local || !_statusPage || std::strcmp(url, "/status") != 0) {
        return queueStatus(connection, MHD_HTTP_METHOD_NOT_ALLOWED, "CIM operations are POSTed",
                           {{MHD_HTTP_HEADER_ALLOW, MHD_HTTP_METHOD_POST}});
    }
    return queueStatus(connection, MHD_HTTP_OK, _statusPage());
}

std::optional<Caller> HttpFrontEnd::authenticate(const Listener& listener,
                                                 MHD_Connection* connection) {
    if (listener.local) {
        const std::optional<std::string>& user = connectionState(connection).peerUser;
        return user ? std::optional<Caller>(Caller{*user}) : std::nullopt;
    }
    if (std::optional<Caller> caller = certificateCaller(listener, connection))
        return caller;
    char* password = nullptr;
    char* user = MHD_basic_auth_get_username_password(connection, &password);
    std::optional<Caller> caller;
    if (user != nullptr && password != nullptr && _checkPassword(user, password))
        caller = Caller{user, connectionState(connection).clientAddress};
    else if (user != nullptr)
        logFailedLogin(user, connectionState(connection).clientAddress);
    MHD_free(user);
    MHD_free(password);
    return caller;
}

std::optional<Caller> HttpFrontEnd::certificateCaller(const Listener& listener,
                                                      MHD_Connection* connection) const {
    if (!listener.tls)
        return std::nullopt;
    const MHD_ConnectionInfo* info =
        MHD_get_connection_info(connection, MHD_CONNECTION_INFO_GNUTLS_SESSION);
    if (info == nullptr)
        return std::nullopt;
    std::optional<std::string> user = _tls->userOf(info->tls_session);
    return user ? std::optional<Caller>(Caller{*user, connectionState(connection).clientAddress})
                : std::nullopt;
}

// Only a request that carries a password is refused, so that clients without one still learn
// from the 401 that the server wants credentials.
bool HttpFrontEnd::refusesPasswordOn(const Listener& listener, MHD_Connection* connection) const {
    return _settings.refuseBasicOverHttp && !listener.local && !listener.tls &&
           header(connection, MHD_HTTP_HEADER_AUTHORIZATION).has_value();
}

// A body that outgrows the limit without having declared its length closes the connection:
// no response can be queued while the body is still arriving.
int HttpFrontEnd::receiveBody(Exchange& exchange, const char* uploadData, std::size_t* uploadSize) {
    if (exchange.body.size() + *uploadSize > _settings.maxRequestBytes)
        return MHD_NO;
    exchange.body.append(uploadData, *uploadSize);
    *uploadSize = 0;
    return MHD_YES;
}

int HttpFrontEnd::dispatch(Exchange& exchange) {
    MHD_Connection* connection = exchange.connection;
    awaitResponseReader(connection);
    auto stream = std::make_shared<ResponseStream>(std::make_shared<MhdConnection>(connection),
                                                   _settings.streamLimits);
    auto request = std::make_shared<HttpRequest>(HttpRequest{
        exchange.caller, header(connection, "CIMOperation"), header(connection, "CIMMethod"),
        header(connection, "CIMObject"), std::move(exchange.body)});
    // The job holds all it needs: it may still run while this front end shuts down.
    bool accepted = _workers.submit([stream, request, process = _process] {
        if (!stream->abandoned())
            process(*request, *stream);
    });
    if (!accepted)
        return queueStatus(connection, MHD_HTTP_SERVICE_UNAVAILABLE, "server busy",
                           {{"Retry-After", "1"}});
    ++_requestsServed;
    {
        // Shutdown looks at the streams of all exchanges from its own thread.
        std::lock_guard<std::mutex> lock(_mutex);
        exchange.stream = std::move(stream);
    }
    // Even an answer that is ready at once is sent from a resumed connection: libmicrohttpd
    // (epoll) takes a short read for "nothing more to read", so a client's end of stream that
    // came with the last bytes of its request goes unseen until the connection is read again,
    // which a resumed connection is. A client that half-closes after its request is then closed
    // as soon as it has its answer, not when the watcher next looks.
    exchange.stream->suspendUntilReady();
    return MHD_YES;
}

// OpenPegasus answers a client that takes chunks ("TE: chunked" or "trailers") always in chunks,
// and its client relies on that: after one chunked answer on a connection it ignores the
// Content-Length of the next and waits for chunks until it times out.
namespace {

bool takesChunks(MHD_Connection* connection) {
    const std::optional<std::string> te = header(connection, "TE");
    if (!te)
        return false;
    std::string lower(*te);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower.find("chunked") != std::string::npos ||
           lower.find("trailers") != std::string::npos;
}

} // namespace

int HttpFrontEnd::respond(Exchange& exchange) {
    ResponseStream& stream = *exchange.stream;
    if (!stream.readyOrSuspend())
        return MHD_YES;
    if (stream.abandoned())
        return MHD_NO;
    ResponseHead head = stream.head();
    std::string body;
    MHD_Response* response = !takesChunks(exchange.connection) && stream.takeWholeBody(body)
                                 ? wholeResponse(std::move(body))
                                 : streamedResponse(exchange.stream);
    for (const HttpHeader& entry : head.headers)
        MHD_add_response_header(response, entry.first.c_str(), entry.second.c_str());
    MHD_Result queued = MHD_queue_response(exchange.connection, head.status, response);
    MHD_destroy_response(response);
    return queued;
}

void HttpFrontEnd::onRequestEnded(MHD_Connection* connection, void** requestContext,
                                  bool completed) {
    // The connection stays open for the next request.
    if (completed)
        awaitRequest(connection);
    auto* exchange = static_cast<Exchange*>(*requestContext);
    if (exchange == nullptr)
        return;
    *requestContext = nullptr;
    forget(*exchange);
}

void HttpFrontEnd::forget(Exchange& exchange) {
    if (exchange.stream)
        exchange.stream->abandon();
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _exchanges.erase(&exchange);
    }
    _exchangeEnded.notify_all();
    delete &exchange;
}

// ---- Listeners ---------------------------------------------------------------------------------

void HttpFrontEnd::start() {
    if (!_settings.listenAddress.empty() && _settings.httpEnabled) {
        _tcpListener = std::make_unique<Listener>(Listener{this, false});
        _tcpDaemon = startTcpDaemon(*_tcpListener, _settings.port, _tcpPort);
    }
    if (!_settings.listenAddress.empty() && _settings.https.enabled) {
        try {
            _tls = std::make_unique<TlsCredentials>(_settings.https);
        } catch (const TlsConfigurationError& error) {
            throw ListenError(error.what());
        }
        _httpsListener = std::make_unique<Listener>(Listener{this, false, true});
        _httpsDaemon = startTcpDaemon(*_httpsListener, _settings.https.port, _httpsPort);
    }
    if (!_settings.socketPath.empty())
        _socketDaemon = startSocketDaemon();
    _watcher = std::thread(&HttpFrontEnd::watchConnections, this);
}

MHD_Daemon* HttpFrontEnd::startDaemon(Listener& listener, unsigned flags, std::uint16_t port,
                                      int listenSocket, const void* address) {
    flags |= MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_EPOLL | MHD_ALLOW_SUSPEND_RESUME |
             MHD_USE_ERROR_LOG;
    if (listener.tls)
        flags |= MHD_USE_TLS;
    // The logger must come first to catch what the other options report.
    std::vector<MHD_OptionItem> options = {
        {MHD_OPTION_EXTERNAL_LOGGER, reinterpret_cast<intptr_t>(&logFromLibrary), nullptr},
        {MHD_OPTION_NOTIFY_COMPLETED, reinterpret_cast<intptr_t>(&requestCompleted), &listener},
        {MHD_OPTION_NOTIFY_CONNECTION, reinterpret_cast<intptr_t>(&connectionNotified), &listener},
        {MHD_OPTION_CONNECTION_LIMIT, _settings.maxConnections + kRefusalSlots, nullptr},
        {MHD_OPTION_CONNECTION_TIMEOUT, _settings.requestTimeoutSeconds, nullptr},
        {MHD_OPTION_CONNECTION_MEMORY_LIMIT, kConnectionMemoryBytes, nullptr},
        {MHD_OPTION_THREAD_POOL_SIZE, connectionThreads(), nullptr},
        {MHD_OPTION_THREAD_STACK_SIZE, kConnectionThreadStackBytes, nullptr},
        // Only addresses of the IP families count; local socket clients are not limited.
        {MHD_OPTION_PER_IP_CONNECTION_LIMIT, _settings.maxConnectionsPerAddress, nullptr},
        {listenSocket >= 0 ? MHD_OPTION_LISTEN_SOCKET : MHD_OPTION_SOCK_ADDR,
         listenSocket >= 0 ? listenSocket : 0, const_cast<void*>(address)}};
    if (listener.tls)
        addTlsOptions(*_tls, options);
    options.push_back({MHD_OPTION_END, 0, nullptr});
    return MHD_start_daemon(flags, port, nullptr, nullptr, &accessHandler, &listener,
                            MHD_OPTION_ARRAY, options.data(), MHD_OPTION_END);
}

MHD_Daemon* HttpFrontEnd::startTcpDaemon(Listener& listener, std::uint16_t port,
                                         std::uint16_t& boundPort) {
    sockaddr_in6 address6{};
    sockaddr_in address4{};
    const void* address = nullptr;
    unsigned flags = 0;
    if (inet_pton(AF_INET, _settings.listenAddress.c_str(), &address4.sin_addr) == 1) {
        address4.sin_family = AF_INET;
        address4.sin_port = htons(port);
        address = &address4;
    } else if (inet_pton(AF_INET6, _settings.listenAddress.c_str(), &address6.sin6_addr) == 1) {
        address6.sin6_family = AF_INET6;
        address6.sin6_port = htons(port);
        address = &address6;
        flags = MHD_USE_IPv6;
    } else {
        throw ListenError("not an IP address: " + _settings.listenAddress);
    }
    MHD_Daemon* daemon = startDaemon(listener, flags, port, -1, address);
    if (daemon == nullptr) {
        throw ListenError(systemError("cannot listen on " + _settings.listenAddress + " port " +
                                      std::to_string(port)));
    }
    boundPort = MHD_get_daemon_info(daemon, MHD_DAEMON_INFO_BIND_PORT)->port;
    return daemon;
}

namespace {

// A socket file left by a server that is gone is taken over; one that answers is not.
void removeStaleSocket(const std::string& path, const sockaddr_un& address) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0)
        return;
    if (!S_ISSOCK(status.st_mode))
        throw ListenError(path + " exists and is not a socket");
    int probe = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    bool answered =
        connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(probe);
    if (answered)
        throw ListenError(path + " is in use by another server");
    unlink(path.c_str());
}

int listenOnSocketFile(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        throw ListenError("socket path too long: " + path);
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    removeStaleSocket(path, address);
    int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        throw ListenError(systemError("cannot create a socket for " + path));
    // Every local user may connect; each is known by its credentials.
    if (bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        chmod(path.c_str(), 0666) != 0 || listen(fd, SOMAXCONN) != 0) {
        std::string error = systemError("cannot listen on " + path);
        close(fd);
        throw ListenError(error);
    }
    return fd;
}

} // namespace

MHD_Daemon* HttpFrontEnd::startSocketDaemon() {
    _socketListener = std::make_unique<Listener>(Listener{this, true});
    _socketFd = listenOnSocketFile(_settings.socketPath);
    MHD_Daemon* daemon = startDaemon(*_socketListener, 0, 0, _socketFd, nullptr);
    if (daemon == nullptr) {
        close(_socketFd);
        _socketFd = -1;
        unlink(_settings.socketPath.c_str());
        throw ListenError("cannot serve " + _settings.socketPath);
    }
    return daemon;
}

std::string HttpFrontEnd::tcpAddress(const char* scheme, std::uint16_t port) const {
    bool v6 = _settings.listenAddress.find(':') != std::string::npos;
    return scheme + (v6 ? "[" + _settings.listenAddress + "]" : _settings.listenAddress) + ":" +
           std::to_string(port);
}

std::vector<std::string> HttpFrontEnd::addresses() const {
    std::vector<std::string> result;
    if (_tcpDaemon != nullptr)
        result.push_back(tcpAddress("http://", _tcpPort));
    if (_httpsDaemon != nullptr)
        result.push_back(tcpAddress("https://", _httpsPort));
    if (_socketDaemon != nullptr)
        result.push_back("unix:" + _settings.socketPath);
    return result;
}

// ---- Shutdown ----------------------------------------------------------------------------------

void HttpFrontEnd::stopAccepting() {
    for (MHD_Daemon* daemon : {_tcpDaemon, _httpsDaemon}) {
        int fd = daemon != nullptr ? MHD_quiesce_daemon(daemon) : -1;
        if (fd >= 0)
            close(fd);
    }
    if (_socketDaemon != nullptr && _socketFd >= 0) {
        MHD_quiesce_daemon(_socketDaemon);
        close(_socketFd);
        _socketFd = -1;
        unlink(_settings.socketPath.c_str());
    }
}

bool HttpFrontEnd::waitUntilIdle(std::chrono::steady_clock::time_point deadline) {
    std::unique_lock<std::mutex> lock(_mutex);
    return _exchangeEnded.wait_until(lock, deadline, [this] {
        for (Exchange* exchange : _exchanges) {
            if (exchange->stream)
                return false;
        }
        return true;
    });
}

void HttpFrontEnd::abandonAll() {
    std::lock_guard<std::mutex> lock(_mutex);
    for (Exchange* exchange : _exchanges) {
        if (exchange->stream)
            exchange->stream->abandon();
    }
}

void HttpFrontEnd::stop() {
    stopAccepting();
    abandonAll();
    // Abandoned exchanges were woken up; they must have closed before the daemons go.
    waitUntilIdle(std::chrono::steady_clock::now() + std::chrono::seconds(5));
    for (MHD_Daemon** daemon : {&_tcpDaemon, &_httpsDaemon, &_socketDaemon}) {
        if (*daemon != nullptr)
            MHD_stop_daemon(*daemon);
        *daemon = nullptr;
    }
    {
        std::lock_guard<std::mutex> lock(_watchMutex);
        _watchStopping = true;
    }
    _watchWake.notify_all();
    if (_watcher.joinable())
        _watcher.join();
}

} // namespace ksv::server
