// The built ksv-cimserver as a child process: on an ephemeral loopback port and a Unix socket
// in a fresh temporary directory, over an array model, optionally under an address-space
// limit. Every wait is bounded; the destructor stops the server with SIGTERM.
#ifndef KSV_TESTS_SUPPORT_SERVERPROCESS_H
#define KSV_TESTS_SUPPORT_SERVERPROCESS_H

#include "ServerUnderTest.h"

#include <sys/resource.h>
#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ksv::test {

struct ServerOptions {
    std::string arrayModel;
    // The soft and hard RLIMIT_AS of the server process, in bytes. The server's allocator then
    // runs with one arena and no thread of its own, so that the limit measures what the server
    // uses rather than the address space that arenas and threads reserve.
    std::optional<rlim_t> addressSpaceLimit;
    unsigned threads = 4;
    // More options of the server, "--name=value".
    std::vector<std::string> arguments;
    // 2 errors; 3 also the warnings, such as access denials.
    unsigned logLevel = 2;
};

class ServerProcess : public ServerUnderTest {
public:
    // Throws std::runtime_error, with the server's output, when it is not ready in time.
    explicit ServerProcess(const ServerOptions& options);
    ~ServerProcess() override;

    std::uint16_t port() const override { return _port; }
    // 0 unless the arguments turn HTTPS on.
    std::uint16_t httpsPort() const { return _httpsPort; }
    pid_t pid() const { return _pid; }

    // Whether the process still runs.
    bool running();
    // Sends SIGTERM unless the server has exited, and waits for the exit: the exit status as
    // waitpid reports it, or -1 when the server had to be killed.
    int stop();
    // What the server wrote to its standard output and error so far.
    std::string output() const;

private:
    void start(const ServerOptions& options);
    void waitUntilReady();

    std::string _outputPath;
    pid_t _pid = -1;
    int _exitStatus = 0;
    std::uint16_t _port = 0;
    std::uint16_t _httpsPort = 0;
};

} // namespace ksv::test

#endif
