// What the in-process test server and the server process have in common: a fresh temporary
// directory that holds the local socket, an ephemeral loopback port, and clients of it.
#ifndef KSV_TESTS_SUPPORT_SERVERUNDERTEST_H
#define KSV_TESTS_SUPPORT_SERVERUNDERTEST_H

#include <Pegasus/Client/CIMClient.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace ksv::test {

// A directory made by mkdtemp, removed with everything in it with this object.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    const std::string& path() const { return _path; }

private:
    std::string _path;
};

// A file holding the text, removed with this object.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& content);
    const std::string& path() const { return _path; }

private:
    TemporaryDirectory _directory;
    std::string _path;
};

class ServerUnderTest {
public:
    virtual ~ServerUnderTest() = default;
    virtual std::uint16_t port() const = 0;
    std::string socketPath() const { return _directory.path() + "/cimxml.socket"; }
    // A client connected over TCP with Basic authentication.
    std::unique_ptr<Pegasus::CIMClient> client(const std::string& user = "admin",
                                               const std::string& password = "admin-pw") const;

private:
    TemporaryDirectory _directory;
};

// The message of the CIM error the call ends with ("CIM_ERR_<NAME>: ..." over HTTP), or what else
// happened: "client error: <message>" or "no exception".
std::string cimErrorOf(const std::function<void()>& call);

} // namespace ksv::test

#endif
