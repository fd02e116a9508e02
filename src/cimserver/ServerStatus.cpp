#include "cimserver/ServerStatus.h"

#include <curl/curl.h>

#include <fstream>
#include <memory>
#include <sstream>

namespace ksv::server {

namespace {

std::string duration(std::chrono::seconds uptime) {
    const auto total = uptime.count();
    std::ostringstream text;
    text << total / 86400 << "d " << total / 3600 % 24 << "h " << total / 60 % 60 << "m "
         << total % 60 << "s";
    return text.str();
}

std::size_t appendBody(char* data, std::size_t size, std::size_t count, void* body) {
    static_cast<std::string*>(body)->append(data, size * count);
    return size * count;
}

} // namespace

std::string statusPage(const StatusFigures& figures) {
    std::ostringstream page;
    page << "uptime: " << duration(figures.uptime) << "\n"
         << "requests served: " << figures.requestsServed << "\n"
         << "connections open: " << figures.openConnections << "\n"
         << "resident memory: "
         << (figures.residentKilobytes ? std::to_string(*figures.residentKilobytes) + " kB"
                                       : "unknown")
         << "\n"
         << "array: " << figures.arrayInUse;
    return page.str();
}

std::optional<std::uint64_t> residentKilobytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0)
            return std::stoull(line.substr(6));
    }
    return std::nullopt;
}

int printStatus(const std::string& socketPath, std::ostream& out, std::ostream& err) {
    if (socketPath.empty()) {
        err << "ksv-cimserver: no local socket configured to ask\n";
        return 1;
    }
    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl(curl_easy_init(), &curl_easy_cleanup);
    if (!curl) {
        err << "ksv-cimserver: cannot set up an HTTP client\n";
        return 1;
    }
    std::string body;
    curl_easy_setopt(curl.get(), CURLOPT_UNIX_SOCKET_PATH, socketPath.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_URL, "http://localhost/status");
    curl_easy_setopt(curl.get(), CURLOPT_TIMEOUT, 10L);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, &appendBody);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &body);
    const CURLcode result = curl_easy_perform(curl.get());
    long status = 0;
    curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &status);
    if (result != CURLE_OK) {
        err << "ksv-cimserver: no server answers on " << socketPath << ": "
            << curl_easy_strerror(result) << "\n";
        return 1;
    }
    if (status != 200) {
        err << "ksv-cimserver: " << socketPath << " answered " << status << ": " << body;
        return 1;
    }
    out << "server: " << socketPath << "\n" << body;
    return 0;
}

} // namespace ksv::server
