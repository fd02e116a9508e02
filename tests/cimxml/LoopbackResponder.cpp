#include "LoopbackResponder.h"
#include "TestSupport.h"

#include <cimxml/Http.h>
#include <cimxml/Request.h>
#include <cimxml/Response.h>

#include <microhttpd.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace ksv::cimxml::testing {

namespace {

using Request = LoopbackResponder::Request;
using Answer = LoopbackResponder::Answer;

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

int listenOn(const sockaddr* address, socklen_t length) {
    const int listener = socket(address->sa_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listener < 0) {
        fail("socket");
    }
    if (bind(listener, address, length) != 0 || listen(listener, 64) != 0) {
        close(listener);
        fail("bind or listen");
    }
    return listener;
}

std::string lowerCase(std::string text) {
    for (char& c : text) {
        c = char(std::tolower(static_cast<unsigned char>(c)));
    }
    return text;
}

MHD_Result collectHeader(void* context, MHD_ValueKind, const char* key, const char* value) {
    static_cast<Request*>(context)->headers[lowerCase(key)] = value ? value : "";
    return MHD_YES;
}

struct ChunkedBody {
    std::string body;
    size_t sent = 0;
};

ssize_t readChunk(void* context, uint64_t, char* buffer, size_t max) {
    auto* chunked = static_cast<ChunkedBody*>(context);
    if (chunked->sent == chunked->body.size()) {
        return MHD_CONTENT_READER_END_OF_STREAM;
    }
    const size_t length = std::min(max, chunked->body.size() - chunked->sent);
    std::memcpy(buffer, chunked->body.data() + chunked->sent, length);
    chunked->sent += length;
    return ssize_t(length);
}

MHD_Response* responseFor(const Answer& answer) {
    MHD_Response* response = nullptr;
    if (answer.trailers.empty()) {
        response = MHD_create_response_from_buffer(
            answer.body.size(), const_cast<char*>(answer.body.data()), MHD_RESPMEM_MUST_COPY);
    } else {
        response = MHD_create_response_from_callback(
            MHD_SIZE_UNKNOWN, 4096, readChunk, new ChunkedBody{answer.body, 0},
            [](void* context) { delete static_cast<ChunkedBody*>(context); });
        for (const auto& trailer : answer.trailers) {
            MHD_add_response_footer(response, trailer.first.c_str(), trailer.second.c_str());
        }
    }
    for (const auto& header : answer.headers) {
        MHD_add_response_header(response, header.first.c_str(), header.second.c_str());
    }
    return response;
}

void readCredentials(MHD_Connection* connection, Request& request) {
    char* password = nullptr;
    char* user = MHD_basic_auth_get_username_password(connection, &password);
    if (user != nullptr) {
        request.user = user;
        request.password = password ? password : "";
        MHD_free(user);
    }
    if (password != nullptr) {
        MHD_free(password);
    }
}

MHD_Result handle(void* context, MHD_Connection* connection, const char* url, const char* method,
                  const char*, const char* uploadData, size_t* uploadSize, void** state) {
    auto* responder = static_cast<LoopbackResponder*>(context);
    if (*state == nullptr) {
        *state = new Request{method, url, {}, {}, {}, {}};
        return MHD_YES;
    }
    auto* request = static_cast<Request*>(*state);
    if (*uploadSize != 0) {
        request->body.append(uploadData, *uploadSize);
        *uploadSize = 0;
        return MHD_YES;
    }
    MHD_get_connection_values(connection, MHD_HEADER_KIND, collectHeader, request);
    readCredentials(connection, *request);
    const Answer answer = responder->answer(*request);
    MHD_Response* response = responseFor(answer);
    const MHD_Result queued = MHD_queue_response(connection, answer.status, response);
    MHD_destroy_response(response);
    return queued;
}

void forget(void*, MHD_Connection*, void** state, MHD_RequestTerminationCode) {
    delete static_cast<Request*>(*state);
    *state = nullptr;
}

void notice(void* context, MHD_Connection*, void**, MHD_ConnectionNotificationCode code) {
    if (code == MHD_CONNECTION_NOTIFY_STARTED) {
        static_cast<LoopbackResponder*>(context)->countConnection();
    }
}

} // namespace

LoopbackResponder::LoopbackResponder(int listenSocket, unsigned port, Handler handler)
    : _handler(std::move(handler)), _port(port) {
    _daemon = MHD_start_daemon(
        MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_THREAD_PER_CONNECTION | MHD_USE_POLL, 0, nullptr,
        nullptr, handle, this, MHD_OPTION_LISTEN_SOCKET, listenSocket, MHD_OPTION_NOTIFY_COMPLETED,
        forget, nullptr, MHD_OPTION_NOTIFY_CONNECTION, notice, this, MHD_OPTION_END);
    if (_daemon == nullptr) {
        close(listenSocket);
        throw std::runtime_error("the HTTP daemon did not start");
    }
}

std::unique_ptr<LoopbackResponder> LoopbackResponder::onLoopbackTcp(Handler handler) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int listener = listenOn(reinterpret_cast<sockaddr*>(&address), sizeof(address));
    socklen_t length = sizeof(address);
    getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
    return std::unique_ptr<LoopbackResponder>(
        new LoopbackResponder(listener, ntohs(address.sin_port), std::move(handler)));
}

std::unique_ptr<LoopbackResponder> LoopbackResponder::onUnixSocket(const std::string& path,
                                                                   Handler handler) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof(address.sun_path)) {
        throw std::runtime_error("socket path too long: " + path);
    }
    std::strcpy(address.sun_path, path.c_str());
    const int listener = listenOn(reinterpret_cast<sockaddr*>(&address), sizeof(address));
    return std::unique_ptr<LoopbackResponder>(
        new LoopbackResponder(listener, 0, std::move(handler)));
}

LoopbackResponder::~LoopbackResponder() {
    MHD_stop_daemon(_daemon);
}

std::vector<Request> LoopbackResponder::requests() const {
    std::lock_guard<std::mutex> lock(_mutex);
    return _requests;
}

Answer LoopbackResponder::answer(const Request& request) {
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _requests.push_back(request);
    }
    Answer answer = _handler(request);
    std::this_thread::sleep_for(std::chrono::milliseconds(answer.delayMilliseconds));
    return answer;
}

TemporaryDirectory::TemporaryDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ksv-cimxml-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        fail("mkdtemp");
    }
    _path = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
}

namespace {

using namespace Pegasus;

void writeResults(IMethodResponseWriter& writer, const OperationRequest& request) {
    switch (request.operation) {
    case Operation::GetClass:
        writer.writeClass(sampleClass());
        break;
    case Operation::EnumerateClassNames:
        writer.writeClassName(CIMName("KSV_A"));
        writer.writeClassName(CIMName("KSV_B"));
        break;
    case Operation::EnumerateInstances:
        for (int i = 1; i <= 3; i++) {
            writer.writeInstance(sampleDisk(i));
        }
        break;
    case Operation::EnumerateInstanceNames:
        for (int i = 1; i <= 3; i++) {
            writer.writeObjectPath(sampleDisk(i).getPath());
        }
        break;
    default:
        break;
    }
}

} // namespace

LoopbackResponder::Answer answerLikeACimServer(const LoopbackResponder::Request& received) {
    const OperationRequest request = decodeRequest(received.body);
    LoopbackResponder::Answer answer;
    answer.headers = {{"Content-Type", http::kContentType},
                      {http::kCimOperationHeader, http::kMethodResponse}};
    if (request.operation == Operation::InvokeMethod) {
        appendMethodResponse(answer.body, request.messageId, request.methodName,
                             CIMValue(Uint32(0)), request.inParameters);
        return answer;
    }
    IMethodResponseWriter writer(answer.body, request.messageId, request.operation,
                                 PathDefaults{"array7", request.nameSpace});
    writeResults(writer, request);
    writer.finish();
    return answer;
}

} // namespace ksv::cimxml::testing
