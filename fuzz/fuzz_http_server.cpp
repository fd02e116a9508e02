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

#include <cerrno>
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

// libFuzzer's own timers send signals, which may interrupt any of the calls below: each is
// resumed, so that an interrupted call is not taken for a server that did not answer.
bool interrupted(ssize_t result) {
    return result < 0 && errno == EINTR;
}

int connectToServer() {
    int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(server->httpPort());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int result = connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address);
    if (interrupted(result)) {
        // The connection goes on being made: wait for it and take its outcome.
        pollfd ready{fd, POLLOUT, 0};
        while (interrupted(poll(&ready, 1, -1))) {
        }
        socklen_t length = sizeof result;
        getsockopt(fd, SOL_SOCKET, SO_ERROR, &result, &length);
    }
    if (fd < 0 || result != 0) {
        std::fprintf(stderr, "connect: %s\n", std::strerror(result != 0 ? result : errno));
        std::abort();
    }
    return fd;
}

// Sends the input, then reads until the server closes. False when it neither answers nor closes.
bool exchange(const std::uint8_t* data, std::size_t size, std::string& answer) {
    int fd = connectToServer();
    for (std::size_t sent = 0; sent < size;) {
        ssize_t n = send(fd, data + sent, size - sent, MSG_NOSIGNAL);
        if (interrupted(n))
            continue;
        if (n <= 0)
            break; // the server may close before reading it all
        sent += static_cast<std::size_t>(n);
    }
    shutdown(fd, SHUT_WR);
    char buffer[65536];
    bool closed = false;
    for (;;) {
        pollfd ready{fd, POLLIN, 0};
        int polled = poll(&ready, 1, kAnswerTimeoutMs);
        ssize_t n = polled == 1 ? recv(fd, buffer, sizeof buffer, 0) : polled;
        if (interrupted(n))
            continue;
        if (polled != 1)
            break;
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
    // Every input ends with the client's half-close, which the server must answer by closing at
    // once: its time-outs are set beyond the answer bound so that they cannot hide a close that
    // never came.
    config.http.requestTimeoutSeconds = 2 * kAnswerTimeoutMs / 1000;
    config.http.connectionTimeoutSeconds = 2 * kAnswerTimeoutMs / 1000;
    config.threads = 2;
    config.logLevel = 0;
    server = new ksv::server::CimServer(config);
    server->start();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string answer;
    if (!exchange(data, size, answer)) {
        std::fprintf(stderr, "no close within %d ms, after %zu bytes: %.200s\n", kAnswerTimeoutMs,
                     answer.size(), answer.c_str());
        std::abort();
    }
    if (!answer.empty() && answer.rfind("HTTP/1.", 0) != 0) {
        std::fprintf(stderr, "not an HTTP answer: %.200s\n", answer.c_str());
        std::abort();
    }
    return 0;
}
