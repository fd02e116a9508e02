// A bare HTTP/1.1 client for the tests that send what no proper client would: broken bodies,
// truncated requests, stalls, floods of connections.
#ifndef KSV_TESTS_SUPPORT_RAWHTTP_H
#define KSV_TESTS_SUPPORT_RAWHTTP_H

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace ksv::test {

struct HttpResponse {
    unsigned status = 0;
    // Names in lower case.
    std::map<std::string, std::string> headers;
    std::map<std::string, std::string> trailers;
    std::string body;
    bool chunked = false;

    std::string header(const std::string& lowerCaseName) const;
};

// A loopback TCP connection to the server.
class RawConnection {
public:
    static RawConnection toPort(std::uint16_t port);
    RawConnection(RawConnection&& other) noexcept
        : _fd(other._fd), _pending(std::move(other._pending)) {
        other._fd = -1;
    }
    ~RawConnection();

    void send(std::string_view bytes);
    void closeSending();
    // Throws std::runtime_error when the server closes or nothing complete arrives in time.
    HttpResponse receive(std::chrono::milliseconds timeout = std::chrono::seconds(10));
    // True when the server closes the connection within the time without answering.
    bool closedByServer(std::chrono::milliseconds timeout);

private:
    explicit RawConnection(int fd) : _fd(fd) {}
    // The next `count` bytes, or with count 0 the next line without its CRLF.
    std::string take(std::size_t count, std::chrono::steady_clock::time_point deadline);

    int _fd;
    std::string _pending;
};

// The answer to `request`, sent on a connection of its own.
HttpResponse exchange(std::uint16_t port, std::string_view request,
                      std::chrono::milliseconds timeout = std::chrono::seconds(10));

// A POST of a CIM-XML body by admin with the headers DSP0200 asks for.
std::string cimPost(std::string_view body, std::string_view cimMethod);

} // namespace ksv::test

#endif
