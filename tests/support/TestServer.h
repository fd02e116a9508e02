// A CIM server running inside the test process over the test provider module, on an ephemeral
// loopback port and a socket in a fresh temporary directory, with the simulator's built-in
// array (users admin/admin-pw, monitor/monitor-pw, guest/guest-pw).
#ifndef KSV_TESTS_SUPPORT_TESTSERVER_H
#define KSV_TESTS_SUPPORT_TESTSERVER_H

#include "ServerUnderTest.h"

#include "cimserver/CimServer.h"
#include "cimserver/InProcessAccess.h"
#include "cimserver/ServerConfig.h"

#include <cimxml/Request.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace ksv::test {

extern const Pegasus::CIMNamespaceName kTestNamespace; // root/ksv

// The configuration of a test server; `threads` workers.
server::ServerConfig testServerConfig(unsigned threads = 4);

class TestServer : public ServerUnderTest {
public:
    explicit TestServer(server::ServerConfig config = testServerConfig());
    explicit TestServer(unsigned threads) : TestServer(testServerConfig(threads)) {}

    std::uint16_t port() const override { return _server->httpPort(); }
    server::CimServer& server() { return *_server; }

    // Replaces the devices with `count` new ones, named with `nameLength` letters when not 0; the
    // method's answer. Any device name may be the target.
    Pegasus::CIMValue populate(Pegasus::Uint32 count, Pegasus::Uint32 nameLength,
                               const std::string& target = "dev-0") const;

private:
    std::unique_ptr<server::CimServer> _server;
};

// The server's in-process connection, recording its timeouts and its closing.
class RecordingConnection : public server::LocalClientConnection {
public:
    RecordingConnection(std::vector<std::string>& record, std::mutex& mutex)
        : LocalClientConnection(std::dynamic_pointer_cast<server::ServerHandleBackend>(
              Pegasus::CIMOMHandleBackend::getDefault())),
          _record(record), _mutex(mutex) {}

    void setTimeout(Pegasus::Uint32 milliseconds) override {
        add("setTimeout " + std::to_string(milliseconds));
    }
    void disconnect() override { add("disconnect"); }

    void add(const std::string& line) {
        std::lock_guard<std::mutex> lock(_mutex);
        _record.push_back(line);
    }

private:
    std::vector<std::string>& _record;
    std::mutex& _mutex;
};

// The CIM-XML body of the operation on `className`, or on device dev-0 when it names an instance.
std::string requestBody(cimxml::Operation operation, const char* className = "KSV_TestDevice");

Pegasus::CIMObjectPath devicePath(const std::string& id);
Pegasus::CIMObjectPath gadgetPath(const std::string& id);
Pegasus::CIMObjectPath pathOf(const char* className, const std::string& id);

// The string value of a property; empty when absent or null.
std::string stringProperty(const Pegasus::CIMConstInstance& instance, const char* name);

} // namespace ksv::test

#endif
