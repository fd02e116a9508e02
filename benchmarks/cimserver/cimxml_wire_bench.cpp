// End-to-end figures of CIM-XML enumerations over loopback, taken as a client that does not
// decode: each client writes a raw HTTP request, then counts the bytes of the response as they
// arrive. Per case it prints the time to the last byte, to the first byte and to the first
// result element, the rate, and the server's resident memory before, at its peak and after;
// then the same byte count sent by a trivial loopback sender, and the ratio to it.
//
//   cimxml_wire_bench --model array.json         starts the built ksv-cimserver over that model
//   cimxml_wire_bench --url http://host:port --user U --password P [--pid PID]
//                                                 measures a server that already runs (its
//                                                 memory only when --pid names its process)
//   ... --against http://host:port --against-user U --against-password P [--against-pid PID]
//                                                 also a second server, its rounds taken in turn
//                                                 with the first's, then each case side by side
//
// Columns: items~ result elements seen in the raw bytes (one split by chunk framing is missed);
// MB/cli response bytes per client; time_ms first request sent to last byte of all clients;
// ttfb_ms and 1st_ms the slowest client's first byte and first result element; med_ms the
// median client's time; MB/s all bytes over time_ms; cpu_ms the server's CPU time for the case;
// base_ms the trivial sender's time for the same byte counts and ratio time_ms to it; rss0,
// peak and rss1 the server's resident memory before, at most during, and after the case;
// extra/enum (peak - rss0) per client; cold_ms the first warm-up request's time; rounds how
// many rounds were measured; server the --label of the server measured. Each case follows
// --warmups rounds of requests; then up to --rounds rounds are measured, each --pause-ms after
// the last, as a client's next request would be, and the time columns are those of the median
// round. rss1 is read --settle-ms after the last, once the server has had time to give idle
// memory back. The first warm-up thus meets a server that has given its pages back, and is the
// cost of the first request after an idle spell; the allocator needs a few requests before it
// reuses its pages fully. Against a second server, the two take their rounds in turn, at least
// three each, and a case's ratio is the median of the ratios of rounds taken one after the
// other: the speed of a shared virtual machine drifts by a third within minutes, and a drift
// then falls on both servers alike.
#include <CLI/CLI.hpp>

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <mutex>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsBetween(Clock::time_point from, Clock::time_point to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

// ---- The server measured
// -------------------------------------------------------------------------

struct Target {
    std::string host = "127.0.0.1";
    std::string port;
    std::string nameSpace = "root/ksv";
    std::string user = "admin";
    std::string password = "admin-pw";
    pid_t pid = 0;
    std::string label = "server";
};

void parseUrl(const std::string& url, Target& target) {
    const std::string scheme = "http://";
    if (url.compare(0, scheme.size(), scheme) != 0)
        throw std::runtime_error("--url: only http://host:port is measured");
    std::string rest = url.substr(scheme.size());
    rest = rest.substr(0, rest.find('/'));
    const std::size_t colon = rest.rfind(':');
    if (colon == std::string::npos)
        throw std::runtime_error("--url: the port is missing");
    target.host = rest.substr(0, colon);
    target.port = rest.substr(colon + 1);
}

// The built server over the model, on a port the system chooses; it prints where it listens.
class StartedServer {
public:
    StartedServer(const std::string& binary, const std::string& model, Target& target) {
        int output[2];
        if (pipe(output) != 0)
            throw std::runtime_error("pipe failed");
        _pid = fork();
        if (_pid == 0) {
            dup2(output[1], STDOUT_FILENO);
            close(output[0]);
            execl(binary.c_str(), binary.c_str(), "--address", "127.0.0.1", "--port", "0",
                  "--socket", "", "--array-model", model.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        close(output[1]);
        target.port = readPort(output[0]);
        close(output[0]);
        target.pid = _pid;
    }
    ~StartedServer() {
        kill(_pid, SIGTERM);
        waitpid(_pid, nullptr, 0);
    }

private:
    static std::string readPort(int fd) {
        std::string text;
        char buffer[256];
        const std::string marker = "http://127.0.0.1:";
        for (ssize_t got; (got = read(fd, buffer, sizeof buffer)) > 0;) {
            text.append(buffer, static_cast<std::size_t>(got));
            const std::size_t at = text.find(marker);
            const std::size_t end = at == std::string::npos ? at : text.find_first_of(" \n", at);
            if (end != std::string::npos)
                return text.substr(at + marker.size(), end - at - marker.size());
        }
        throw std::runtime_error("the server did not start: " + text);
    }

    pid_t _pid = 0;
};

// ---- Memory of the server process ---------------------------------------------------------------

std::optional<long> statusKilobytes(pid_t pid, const char* field) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, std::strlen(field), field) == 0)
            return std::stol(line.substr(std::strlen(field) + 1));
    }
    return std::nullopt;
}

// User plus system CPU time of the process so far, in milliseconds: on a busy machine a
// steadier figure than the time a client waits.
double cpuMilliseconds(pid_t pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string text((std::istreambuf_iterator<char>(stat)), std::istreambuf_iterator<char>());
    std::istringstream fields(text.substr(text.rfind(')') + 2));
    std::string field;
    for (int i = 3; i < 14 && fields >> field; ++i) {
    }
    unsigned long long user = 0, system = 0;
    fields >> user >> system;
    return static_cast<double>(user + system) * 1000.0 / static_cast<double>(sysconf(_SC_CLK_TCK));
}

// Peak resident memory over a case and its warm-ups: the kernel's high-water mark, reset at the
// start where the process is ours to reset, and samples of the resident size every millisecond
// regardless.
class MemoryWatch {
public:
    explicit MemoryWatch(pid_t pid) : _pid(pid) {
        if (_pid == 0)
            return;
        _before = statusKilobytes(_pid, "VmRSS:").value_or(0);
        _peak = _before;
        _hwmReset = static_cast<bool>(std::ofstream("/proc/" + std::to_string(_pid) + "/clear_refs")
                                      << "5");
        _sampler = std::thread([this] {
            while (!_stop.load()) {
                _peak = std::max(_peak.load(), statusKilobytes(_pid, "VmRSS:").value_or(0));
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        });
    }
    // The figures once the case is over and `settle` has passed.
    struct Figures {
        long beforeKb = 0, peakKb = 0, afterKb = 0;
    };
    Figures finish(std::chrono::milliseconds settle) {
        if (_pid == 0)
            return {};
        _stop = true;
        _sampler.join();
        long peak = _peak.load();
        if (_hwmReset)
            peak = std::max(peak, statusKilobytes(_pid, "VmHWM:").value_or(0));
        std::this_thread::sleep_for(settle);
        return {_before, peak, statusKilobytes(_pid, "VmRSS:").value_or(0)};
    }

private:
    pid_t _pid;
    long _before = 0;
    std::atomic<long> _peak{0};
    bool _hwmReset = false;
    std::atomic<bool> _stop{false};
    std::thread _sampler;
};

// ---- Raw exchanges
// -------------------------------------------------------------------------------

std::string base64(const std::string& text) {
    static const char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (std::size_t i = 0; i < text.size(); i += 3) {
        unsigned chunk = static_cast<unsigned char>(text[i]) << 16;
        if (i + 1 < text.size())
            chunk |= static_cast<unsigned char>(text[i + 1]) << 8;
        if (i + 2 < text.size())
            chunk |= static_cast<unsigned char>(text[i + 2]);
        out += digits[(chunk >> 18) & 63];
        out += digits[(chunk >> 12) & 63];
        out += i + 1 < text.size() ? digits[(chunk >> 6) & 63] : '=';
        out += i + 2 < text.size() ? digits[chunk & 63] : '=';
    }
    return out;
}

std::string namespaceElement(const std::string& nameSpace) {
    std::string xml = "<LOCALNAMESPACEPATH>";
    std::istringstream parts(nameSpace);
    for (std::string part; std::getline(parts, part, '/');)
        xml += "<NAMESPACE NAME=\"" + part + "\"/>";
    return xml + "</LOCALNAMESPACEPATH>";
}

// The request as OpenPegasus' own client sends it, with the client's default arguments.
std::string httpRequest(const Target& target, const std::string& operation,
                        const std::string& className) {
    const std::string body =
        "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
        "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\">"
        "<SIMPLEREQ><IMETHODCALL NAME=\"" +
        operation + "\">" + namespaceElement(target.nameSpace) +
        "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"" + className +
        "\"/></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>\n";
    return "POST /cimom HTTP/1.1\r\nHost: " + target.host + ":" + target.port +
           "\r\nContent-Type: application/xml; charset=\"utf-8\"\r\nContent-Length: " +
           std::to_string(body.size()) +
           "\r\nConnection: close\r\nTE: trailers\r\nCIMOperation: MethodCall\r\nCIMMethod: " +
           operation + "\r\nCIMObject: " + target.nameSpace + "\r\nAuthorization: Basic " +
           base64(target.user + ":" + target.password) + "\r\n\r\n" + body;
}

int connectTo(const std::string& host, const std::string& port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), port.c_str(), &hints, &found) != 0 || found == nullptr)
        throw std::runtime_error("cannot resolve " + host + ":" + port);
    const int fd = socket(found->ai_family, SOCK_STREAM, 0);
    const bool connected = fd >= 0 && connect(fd, found->ai_addr, found->ai_addrlen) == 0;
    freeaddrinfo(found);
    if (!connected) {
        if (fd >= 0)
            close(fd);
        throw std::runtime_error("cannot connect to " + host + ":" + port);
    }
    const int one = 1;
    setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
    return fd;
}

// Counts the occurrences of a marker in a stream that arrives in pieces.
class MarkerCounter {
public:
    explicit MarkerCounter(std::string marker) : _marker(std::move(marker)) {}
    // True when this piece completed the first occurrence. Pieces are searched where they were
    // read, and only the few bytes around the seam with the last piece are copied, so that the
    // client spends little of the machine the server is measured on.
    bool feed(const char* data, std::size_t size) {
        const std::size_t before = _count;
        const std::size_t keep = _marker.size() - 1;
        // The seam holds fewer than a marker's bytes of either side: what it finds spans both.
        _seam.append(data, std::min(size, keep));
        _count += occurrences(_seam.data(), _seam.size());
        _count += occurrences(data, size);
        if (size >= keep)
            _seam.assign(data + size - keep, keep);
        else
            _seam.erase(0, _seam.size() - std::min(_seam.size(), keep));
        return before == 0 && _count > 0;
    }
    std::size_t count() const { return _count; }

private:
    std::size_t occurrences(const char* data, std::size_t size) const {
        std::size_t found = 0;
        for (const char* at = data;
             (at = static_cast<const char*>(memmem(at, size - std::size_t(at - data),
                                                   _marker.data(), _marker.size()))) != nullptr;
             at += _marker.size())
            ++found;
        return found;
    }

    std::string _marker;
    std::string _seam;
    std::size_t _count = 0;
};

// Looks for a CIM error where an answer can carry one: an ERROR element comes before any result,
// since a response holds one or the other, and a streamed response's error status comes in its
// trailer, after the body. Looking only there, rather than in every byte, spares the machine the
// server is measured on two passes over each long response.
class ErrorWatch {
public:
    // Each piece as it arrives; `resultsStarted` once an earlier piece held a result.
    void feed(const char* data, std::size_t size, bool resultsStarted) {
        if (!resultsStarted)
            _element.feed(data, size);
        if (size >= kTailBytes) {
            _tail.assign(data + size - kTailBytes, kTailBytes);
            return;
        }
        _tail.append(data, size);
        if (_tail.size() > kTailBytes)
            _tail.erase(0, _tail.size() - kTailBytes);
    }
    // Once the response has ended: an ERROR element, or a trailer with a status other than 0
    // (the header that announces the trailer only lists its name).
    bool failed() const {
        if (_element.count() != 0)
            return true;
        const std::string status = "\r\nCIMStatusCode:";
        const std::size_t at = _tail.rfind(status);
        return at != std::string::npos &&
               std::strtol(_tail.c_str() + at + status.size(), nullptr, 10) != 0;
    }

private:
    // Ample for the trailer and its description.
    static constexpr std::size_t kTailBytes = 16 * 1024;

    MarkerCounter _element{"<ERROR"};
    std::string _tail;
};

struct ExchangeFigures {
    Clock::time_point sent, firstByte, firstItem, end;
    std::size_t bytes = 0;
    std::size_t items = 0;
    std::string statusLine;
    bool failed = false; // a CIM error, in the body or in a trailer
};

constexpr std::size_t kReceiveBytes = 256 * 1024;
constexpr std::size_t kSampleBytes = 1024 * 1024;

// One request on its own connection, read to the end. The first MiB of the response is kept in
// `sample` when one is given.
ExchangeFigures exchange(const Target& target, const std::string& request, const char* marker,
                         std::string* sample) {
    const int fd = connectTo(target.host, target.port);
    ExchangeFigures figures;
    MarkerCounter items(marker);
    ErrorWatch errors;
    std::vector<char> buffer(kReceiveBytes);
    figures.sent = Clock::now();
    for (std::size_t written = 0; written < request.size();) {
        const ssize_t put = write(fd, request.data() + written, request.size() - written);
        if (put <= 0)
            throw std::runtime_error("the request could not be sent");
        written += static_cast<std::size_t>(put);
    }
    for (ssize_t got; (got = read(fd, buffer.data(), buffer.size())) > 0;) {
        const auto size = static_cast<std::size_t>(got);
        if (figures.bytes == 0)
            figures.firstByte = Clock::now();
        errors.feed(buffer.data(), size, items.count() != 0);
        if (items.feed(buffer.data(), size))
            figures.firstItem = Clock::now();
        if (sample != nullptr && sample->size() < kSampleBytes)
            sample->append(buffer.data(), std::min(size, kSampleBytes - sample->size()));
        if (figures.statusLine.empty())
            figures.statusLine = std::string(buffer.data(), std::min<std::size_t>(size, 64));
        figures.bytes += size;
    }
    figures.end = Clock::now();
    close(fd);
    figures.statusLine = figures.statusLine.substr(0, figures.statusLine.find('\r'));
    figures.items = items.count();
    figures.failed = errors.failed() || figures.statusLine.find(" 200") == std::string::npos;
    if (figures.items == 0)
        figures.firstItem = figures.end;
    return figures;
}

// Runs `work(i)` on `count` threads released together.
template <typename Work>
void inParallel(unsigned count, Work work) {
    std::mutex mutex;
    std::condition_variable released;
    bool go = false;
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < count; ++i) {
        threads.emplace_back([&, i] {
            {
                std::unique_lock<std::mutex> lock(mutex);
                released.wait(lock, [&] { return go; });
            }
            work(i);
        });
    }
    {
        std::lock_guard<std::mutex> lock(mutex);
        go = true;
    }
    released.notify_all();
    for (std::thread& thread : threads)
        thread.join();
}

// ---- The baseline: a trivial loopback sender
// -----------------------------------------------------

// Sends `bytes` bytes, cycling `sample`, to each of `clients` connections at once; returns the
// time from the first connection to the last byte read.
double trivialSenderMilliseconds(const std::string& sample, std::size_t bytes, unsigned clients) {
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener, SOMAXCONN) != 0 ||
        getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throw std::runtime_error("the trivial sender cannot listen");
    const std::string port = std::to_string(ntohs(address.sin_port));
    std::thread acceptor([&] {
        std::vector<std::thread> senders;
        for (unsigned i = 0; i < clients; ++i) {
            const int fd = accept(listener, nullptr, nullptr);
            senders.emplace_back([&, fd] {
                for (std::size_t sent = 0; sent < bytes;) {
                    const std::size_t offset = sent % sample.size();
                    const ssize_t put = write(fd, sample.data() + offset,
                                              std::min(sample.size() - offset, bytes - sent));
                    if (put <= 0)
                        break;
                    sent += static_cast<std::size_t>(put);
                }
                close(fd);
            });
        }
        for (std::thread& sender : senders)
            sender.join();
    });
    const Clock::time_point start = Clock::now();
    inParallel(clients, [&](unsigned) {
        const int fd = connectTo("127.0.0.1", port);
        std::vector<char> buffer(kReceiveBytes);
        while (read(fd, buffer.data(), buffer.size()) > 0) {
        }
        close(fd);
    });
    const double elapsed = millisecondsBetween(start, Clock::now());
    acceptor.join();
    close(listener);
    return elapsed;
}

// ---- Cases
// ---------------------------------------------------------------------------------------

struct Case {
    std::string operation;
    std::string className;
    const char* marker;
};

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void printHeader() {
    std::printf(
        "%-46s %4s %6s %8s %8s %8s %6s %8s %8s %8s | %8s %6s | %7s %7s %7s %9s | %8s %6s %s\n",
        "case", "cli", "items~", "MB/cli", "time_ms", "ttfb_ms", "1st_ms", "med_ms", "MB/s",
        "cpu_ms", "base_ms", "ratio", "rss0_MB", "peak_MB", "rss1_MB", "extra/enum", "cold_ms",
        "rounds", "server");
}

struct Waits {
    unsigned warmups;
    unsigned rounds;
    std::chrono::milliseconds pause;
    std::chrono::milliseconds settle;
};

// The first warm-up round's time: it warms the providers up, and meets the server idle. Each
// round runs as many clients as the case, so that the server has made room for all of them before
// it is measured, as it has under steady load.
double warmUp(const Target& target, const std::string& request, const Case& measured,
              unsigned clients, unsigned warmups, std::string& sample) {
    double cold = 0;
    for (unsigned round = 0; round < warmups; round++) {
        const Clock::time_point start = Clock::now();
        inParallel(clients, [&](unsigned i) {
            exchange(target, request, measured.marker, i == 0 ? &sample : nullptr);
        });
        if (round == 0)
            cold = millisecondsBetween(start, Clock::now());
    }
    return cold;
}

// One measured round: each client's figures, the time from the first request to the last byte of
// all clients, and the server's CPU time meanwhile.
struct Round {
    std::vector<ExchangeFigures> figures;
    double wall = 0;
    double cpu = 0;
};

Round measureRound(const Target& target, const std::string& request, const Case& measured,
                   unsigned clients) {
    Round round;
    round.figures.resize(clients);
    const double cpuBefore = target.pid != 0 ? cpuMilliseconds(target.pid) : 0;
    const Clock::time_point start = Clock::now();
    inParallel(clients, [&](unsigned i) {
        round.figures[i] = exchange(target, request, measured.marker, nullptr);
    });
    round.wall = millisecondsBetween(start, Clock::now());
    round.cpu = target.pid != 0 ? cpuMilliseconds(target.pid) - cpuBefore : 0;
    return round;
}

// One server's share of a case: its request, the first response's sample for the baseline, its
// memory, its warm-up and its measured rounds.
struct ServerRun {
    explicit ServerRun(const Target& target_, const Case& measured)
        : target(target_), request(httpRequest(target_, measured.operation, measured.className)) {}
    const Target& target;
    std::string request;
    std::string sample;
    std::unique_ptr<MemoryWatch> memory;
    double cold = 0;
    std::vector<Round> rounds;
    double spent = 0;
};

// Rounds after the pause, each as a client's next request, taken by the servers in turn, so that
// a drift of the machine's speed falls on all of them alike: up to `waits.rounds` each, fewer
// once the first server's have taken kRoundsBudgetMs, but at least one, or kFewestPairedRounds
// when servers are compared. A single round measured mostly how long the idle machine took to
// wake its threads up. Two copies of one server compared over three rounds of a long case came
// out up to a fifth apart, over seven at most 14% and mostly within a tenth.
constexpr double kRoundsBudgetMs = 2000;
constexpr std::size_t kFewestPairedRounds = 7;

void measureRounds(std::vector<ServerRun>& servers, const Case& measured, unsigned clients,
                   const Waits& waits) {
    const std::size_t fewest = servers.size() > 1 ? kFewestPairedRounds : 1;
    const ServerRun& first = servers.front();
    do {
        // Every other time in the opposite order: a server's round was otherwise always preceded
        // by the same other one's, and two copies of one server came out 12-18% apart on the
        // names of the volume pairs, always the same way.
        const bool reversed = first.rounds.size() % 2 == 1;
        for (std::size_t i = 0; i < servers.size(); i++) {
            ServerRun& server = servers[reversed ? servers.size() - 1 - i : i];
            std::this_thread::sleep_for(waits.pause);
            server.rounds.push_back(measureRound(server.target, server.request, measured, clients));
            server.spent += server.rounds.back().wall;
        }
    } while (first.rounds.size() < waits.rounds &&
             (first.spent < kRoundsBudgetMs || first.rounds.size() < fewest));
}

// What a case's line shows of one server, from its median round.
struct CaseFigures {
    double wall = 0, ttfb = 0, firstItem = 0, medianClient = 0, cpu = 0, baseline = 0;
    std::size_t bytes = 0, items = 0, rounds = 0;
    MemoryWatch::Figures rss;
    double cold = 0;
    bool failed = false;
    std::string statusLine;
};

// Found by their places, so that the rounds stay in the order they were taken, which pairs them
// with the other server's.
const Round& medianRound(const std::vector<Round>& rounds) {
    std::vector<const Round*> byWall;
    for (const Round& round : rounds)
        byWall.push_back(&round);
    const auto middle = byWall.begin() + std::ptrdiff_t(byWall.size() / 2);
    std::nth_element(byWall.begin(), middle, byWall.end(),
                     [](const Round* a, const Round* b) { return a->wall < b->wall; });
    return **middle;
}

CaseFigures summarize(ServerRun& server, unsigned clients, std::chrono::milliseconds settle) {
    CaseFigures out;
    out.rss = server.memory->finish(settle);
    out.cold = server.cold;
    out.rounds = server.rounds.size();
    for (const Round& each : server.rounds)
        for (const ExchangeFigures& exchanged : each.figures)
            out.failed = out.failed || exchanged.failed;
    const Round& round = medianRound(server.rounds);
    std::vector<double> times;
    for (const ExchangeFigures& each : round.figures) {
        out.ttfb = std::max(out.ttfb, millisecondsBetween(each.sent, each.firstByte));
        out.firstItem = std::max(out.firstItem, millisecondsBetween(each.sent, each.firstItem));
        times.push_back(millisecondsBetween(each.sent, each.end));
        out.bytes += each.bytes;
    }
    out.wall = round.wall;
    out.cpu = round.cpu;
    out.medianClient = median(times);
    out.items = round.figures[0].items;
    out.statusLine = round.figures[0].statusLine;
    out.baseline = trivialSenderMilliseconds(server.sample, round.figures[0].bytes, clients);
    return out;
}

double extraPerClientMb(const CaseFigures& f, unsigned clients) {
    return (f.rss.peakKb - f.rss.beforeKb) / 1024.0 / clients;
}

void printCase(const std::string& name, unsigned clients, const CaseFigures& f,
               const std::string& label) {
    const double megabytes = static_cast<double>(f.bytes) / 1e6;
    std::printf("%-46s %4u %6zu %8.2f %8.1f %8.1f %6.1f %8.1f %8.1f %8.0f | %8.1f %6.1f | %7.1f "
                "%7.1f %7.1f %9.1f | %8.1f %6zu %s%s\n",
                name.c_str(), clients, f.items, megabytes / clients, f.wall, f.ttfb, f.firstItem,
                f.medianClient, megabytes / (f.wall / 1000), f.cpu, f.baseline, f.wall / f.baseline,
                f.rss.beforeKb / 1024.0, f.rss.peakKb / 1024.0, f.rss.afterKb / 1024.0,
                extraPerClientMb(f, clients), f.cold, f.rounds, label.c_str(),
                f.failed ? ("  FAILED: " + f.statusLine).c_str() : "");
    std::fflush(stdout);
}

// One case on the first server against the second: the ratio is the median over the rounds
// taken in turn of the second's time over the first's.
struct Comparison {
    std::string name;
    unsigned clients;
    CaseFigures first, second;
    double ratio;
};

double pairedRatio(const ServerRun& first, const ServerRun& second) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < std::min(first.rounds.size(), second.rounds.size()); i++)
        ratios.push_back(second.rounds[i].wall / first.rounds[i].wall);
    return median(ratios);
}

std::optional<Comparison> runCase(const std::vector<Target>& targets, const Case& measured,
                                  unsigned clients, Waits waits) {
    std::vector<ServerRun> servers;
    servers.reserve(targets.size());
    // Watched from before the warm-ups, so that the peak is measured from the idle server.
    for (const Target& target : targets) {
        servers.emplace_back(target, measured);
        servers.back().memory = std::make_unique<MemoryWatch>(target.pid);
    }
    for (ServerRun& server : servers)
        server.cold =
            warmUp(server.target, server.request, measured, clients, waits.warmups, server.sample);
    measureRounds(servers, measured, clients, waits);
    const std::string name = measured.operation + " " + measured.className;
    std::vector<CaseFigures> figures;
    for (ServerRun& server : servers) {
        figures.push_back(summarize(server, clients, waits.settle));
        printCase(name, clients, figures.back(), server.target.label);
    }
    if (servers.size() < 2)
        return std::nullopt;
    return Comparison{name, clients, figures[0], figures[1], pairedRatio(servers[0], servers[1])};
}

void printComparisons(const std::vector<Comparison>& comparisons, const Target& first,
                      const Target& second) {
    std::printf("\nEnd to end, %s against %s, rounds taken in turn (x = median over the rounds of "
                "%s time / %s time)\n",
                first.label.c_str(), second.label.c_str(), second.label.c_str(),
                first.label.c_str());
    std::printf("%-46s %4s %9s %9s %6s | %8s %8s | %8s %8s | %8s %8s\n", "case", "cli", "time_ms",
                "other_ms", "x", "ttfb", "other", "peak_MB", "other", "extra", "other");
    for (const Comparison& c : comparisons) {
        std::printf("%-46s %4u %9.1f %9.1f %6.2f | %8.1f %8.1f | %8.1f %8.1f | %8.1f %8.1f\n",
                    c.name.c_str(), c.clients, c.first.wall, c.second.wall, c.ratio, c.first.ttfb,
                    c.second.ttfb, c.first.rss.peakKb / 1024.0, c.second.rss.peakKb / 1024.0,
                    extraPerClientMb(c.first, c.clients), extraPerClientMb(c.second, c.clients));
    }
}

std::vector<unsigned> parseClientCounts(const std::string& list) {
    std::vector<unsigned> counts;
    std::istringstream parts(list);
    for (std::string part; std::getline(parts, part, ',');)
        counts.push_back(static_cast<unsigned>(std::stoul(part)));
    return counts;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("End-to-end CIM-XML enumerations over loopback, against a trivial sender");
    Target target, other;
    other.label = "other";
    std::string url, againstUrl, model, server = KSV_CIMSERVER_BINARY, clientList = "1,8,32";
    std::vector<std::string> classes = {"KSV_DiskDrive", "KSV_VolumeBasedOnDiskExtent"};
    unsigned warmups = 3, rounds = 7, pauseMs = 200, settleMs = 2000;
    app.add_option("--model", model, "array model for the server this benchmark starts");
    app.add_option("--server", server, "the server binary started over --model")
        ->capture_default_str();
    app.add_option("--url", url, "http://host:port of a running server, instead of --model");
    app.add_option("--user", target.user)->capture_default_str();
    app.add_option("--password", target.password)->capture_default_str();
    app.add_option("--pid", target.pid, "process of the running server, for its memory");
    app.add_option("--label", target.label, "the server's name in the figures")
        ->capture_default_str();
    app.add_option("--against", againstUrl,
                   "http://host:port of a second server, measured in turn with the first");
    app.add_option("--against-user", other.user)->capture_default_str();
    app.add_option("--against-password", other.password)->capture_default_str();
    app.add_option("--against-pid", other.pid, "process of the second server, for its memory");
    app.add_option("--against-label", other.label)->capture_default_str();
    app.add_option("--namespace", target.nameSpace)->capture_default_str();
    app.add_option("--clients", clientList, "parallel clients per case, comma-separated")
        ->capture_default_str();
    app.add_option("--class", classes, "classes enumerated; repeatable")->capture_default_str();
    app.add_option("--warmups", warmups,
                   "rounds of requests before each case, each with the case's clients")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--rounds", rounds,
                   "measured rounds per case, fewer once they have taken 2 s; the median is shown")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--pause-ms", pauseMs, "wait before each measured round")->capture_default_str();
    app.add_option("--settle-ms", settleMs, "wait before reading the memory after each case")
        ->capture_default_str();
    CLI11_PARSE(app, argc, argv);
    if (url.empty() == model.empty()) {
        std::fprintf(stderr, "give either --model or --url\n");
        return 2;
    }
    signal(SIGPIPE, SIG_IGN);
    try {
        std::optional<StartedServer> started;
        if (!url.empty())
            parseUrl(url, target);
        else
            started.emplace(server, model, target);
        std::vector<Target> targets = {target};
        if (!againstUrl.empty()) {
            other.nameSpace = target.nameSpace;
            parseUrl(againstUrl, other);
            targets.push_back(other);
        }
        printHeader();
        // The first case, as every later one, meets a server that has given back what it no
        // longer holds, here what starting took.
        std::this_thread::sleep_for(std::chrono::milliseconds(settleMs));
        std::vector<Comparison> comparisons;
        for (const std::string& className : classes) {
            for (const Case& measured :
                 {Case{"EnumerateInstances", className, "<VALUE.NAMEDINSTANCE>"},
                  Case{"EnumerateInstanceNames", className, "<INSTANCENAME "}}) {
                for (unsigned clients : parseClientCounts(clientList)) {
                    if (auto compared =
                            runCase(targets, measured, clients,
                                    {warmups, rounds, std::chrono::milliseconds(pauseMs),
                                     std::chrono::milliseconds(settleMs)}))
                        comparisons.push_back(*compared);
                }
            }
        }
        if (!comparisons.empty())
            printComparisons(comparisons, targets[0], targets[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
