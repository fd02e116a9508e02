// Raw bytes sent to a whole server in this process over loopback: the HTTP front end, Basic
// authentication, CIM-XML decoding, dispatch, the providers over the built-in array and the
// response encoding. Every input must be answered (or the connection closed) in time, and what
// comes back must be HTTP.
#include <ksvapi_sim.h>

#include "cimserver/CimServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// Generous: under the sanitizers on a loaded machine an association walk takes seconds.
constexpr int kAnswerTimeoutMs = 60000;

// Never destroyed: it serves until the process ends, and stopping it from an exit handler would
// reach the client connector, a static that may already be gone.
ksv::server::CimServer* server = nullptr;

int connectToServer() {
    int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(server->httpPort());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (fd < 0 || connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        std::perror("connect");
        std::abort();
    }
    return fd;
}

// Sends the input, then reads until the server closes. False when it neither answers nor closes.
bool exchange(const std::uint8_t* data, std::size_t size, std::string& answer) {
    int fd = connectToServer();
    for (std::size_t sent = 0; sent < size;) {
        ssize_t n = send(fd, data + sent, size - sent, MSG_NOSIGNAL);
        if (n <= 0)
            break; // the server may close before reading it all
        sent += static_cast<std::size_t>(n);
    }
    shutdown(fd, SHUT_WR);
    char buffer[65536];
    bool closed = false;
    for (pollfd ready{fd, POLLIN, 0}; poll(&ready, 1, kAnswerTimeoutMs) == 1;) {
        ssize_t n = recv(fd, buffer, sizeof buffer, 0);
        if (n <= 0) {
            closed = true;
            break;
        }
        answer.append(buffer, static_cast<std::size_t>(n));
    }
    close(fd);
    return closed;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    ksvsim::setLogLevel(0);
    ksv::server::ServerConfig config = ksv::server::defaultServerConfig();
    config.http.listenAddress = "127.0.0.1";
    config.http.port = 0;
    config.http.socketPath.clear();
    config.threads = 2;
    config.logLevel = 0;
    server = new ksv::server::CimServer(config);
    server->start();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string answer;
    if (!exchange(data, size, answer)) {
        std::fprintf(stderr, "no answer within %d ms\n", kAnswerTimeoutMs);
        std::abort();
    }
    if (!answer.empty() && answer.rfind("HTTP/1.", 0) != 0) {
        std::fprintf(stderr, "not an HTTP answer: %.200s\n", answer.c_str());
        std::abort();
    }
    return 0;
}
