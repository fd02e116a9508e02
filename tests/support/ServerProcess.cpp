#include "ServerProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <vector>

namespace ksv::test {

namespace {

using Clock = std::chrono::steady_clock;

// Sanitized servers start and stop more slowly.
const auto READY_TIMEOUT = std::chrono::seconds(60);
const auto STOP_TIMEOUT = std::chrono::seconds(30);

std::string fileContent(const std::string& path) {
    std::ifstream in(path);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

// argv and envp as exec takes them: pointers into the strings, then a null pointer.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> serverEnvironment(const ServerOptions& options) {
    std::vector<std::string> environment;
    for (char** variable = environ; *variable != nullptr; variable++)
        environment.push_back(*variable);
    if (options.addressSpaceLimit) {
        environment.push_back("MALLOC_ARENA_MAX=1");
        environment.push_back("MALLOC_CONF=narenas:1,background_thread:false");
    }
    return environment;
}

// Only async-signal-safe calls between fork and exec: the test process has threads.
[[noreturn]] void execServer(const std::vector<char*>& argv, const std::vector<char*>& envp,
                             int outputFd, const std::optional<rlim_t>& limit) {
    // A test process that dies, killed or crashed, takes its server with it.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (limit) {
        const rlimit addressSpace = {*limit, *limit};
        if (setrlimit(RLIMIT_AS, &addressSpace) != 0)
            _exit(126);
    }
    dup2(outputFd, STDOUT_FILENO);
    dup2(outputFd, STDERR_FILENO);
    execve(argv[0], argv.data(), envp.data());
    _exit(127);
}

} // namespace

ServerProcess::ServerProcess(const ServerOptions& options) : _outputPath(socketPath() + ".out") {
    try {
        start(options);
        waitUntilReady();
    } catch (...) {
        stop();
        throw;
    }
}

ServerProcess::~ServerProcess() {
    stop();
}

void ServerProcess::start(const ServerOptions& options) {
    std::vector<std::string> arguments = {KSV_CIMSERVER,
                                          "--address=127.0.0.1",
                                          "--port=0",
                                          "--socket=" + socketPath(),
                                          "--array-model=" + options.arrayModel,
                                          "--threads=" + std::to_string(options.threads),
                                          "--shutdown-grace=5",
                                          "--log-level=" + std::to_string(options.logLevel)};
    arguments.insert(arguments.end(), options.arguments.begin(), options.arguments.end());
    std::vector<std::string> environment = serverEnvironment(options);
    const std::vector<char*> argv = pointersTo(arguments);
    const std::vector<char*> envp = pointersTo(environment);
    const int outputFd = open(_outputPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (outputFd < 0)
        throw std::runtime_error("cannot create " + _outputPath);
    _pid = fork();
    if (_pid == 0)
        execServer(argv, envp, outputFd, options.addressSpaceLimit);
    close(outputFd);
    if (_pid < 0)
        throw std::runtime_error("cannot start the server");
}

// The server names its addresses once it listens: "ksv-cimserver: ready on http://...:PORT ...".
void ServerProcess::waitUntilReady() {
    const std::regex ready("ready on http://127\\.0\\.0\\.1:([0-9]+)");
    const auto deadline = Clock::now() + READY_TIMEOUT;
    while (Clock::now() < deadline) {
        std::smatch found;
        const std::string text = output();
        if (std::regex_search(text, found, ready)) {
            _port = static_cast<std::uint16_t>(std::stoul(found[1].str()));
            if (std::regex_search(text, found, std::regex("https://127\\.0\\.0\\.1:([0-9]+)")))
                _httpsPort = static_cast<std::uint16_t>(std::stoul(found[1].str()));
            return;
        }
        if (!running())
            throw std::runtime_error("the server exited before it was ready:\n" + text);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    throw std::runtime_error("the server was not ready in time:\n" + output());
}

bool ServerProcess::running() {
    if (_pid <= 0)
        return false;
    if (waitpid(_pid, &_exitStatus, WNOHANG) == 0)
        return true;
    _pid = -1;
    return false;
}

int ServerProcess::stop() {
    if (!running())
        return _exitStatus;
    kill(_pid, SIGTERM);
    const auto deadline = Clock::now() + STOP_TIMEOUT;
    while (Clock::now() < deadline) {
        if (!running())
            return _exitStatus;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    kill(_pid, SIGKILL);
    waitpid(_pid, &_exitStatus, 0);
    _pid = -1;
    return -1;
}

std::string ServerProcess::output() const {
    return fileContent(_outputPath);
}

} // namespace ksv::test
