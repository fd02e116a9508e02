#include <Pegasus/Client/CIMXmlHttpConnection.h>
#include <Pegasus/Client/CIMClientException.h>
#include <Pegasus/Common/Exception.h>

#include <curl/curl.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <mutex>
#include <utility>

PEGASUS_NAMESPACE_BEGIN

namespace {

void initializeCurlOnce() {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

String asString(const std::string& text) {
    return String(text.c_str(), Uint32(text.size()));
}

std::string trimmed(std::string text) {
    const auto isBlank = [](unsigned char c) { return std::isspace(c) != 0; };
    text.erase(text.begin(), std::find_if_not(text.begin(), text.end(), isBlank));
    text.erase(std::find_if_not(text.rbegin(), text.rend(), isBlank).base(), text.end());
    return text;
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return text;
}

struct Transfer {
    CIMXmlHttpConnection::Reply reply;
    bool tooLarge = false;
};

size_t collectBody(char* data, size_t size, size_t count, void* context) {
    auto* transfer = static_cast<Transfer*>(context);
    const size_t length = size * count;
    if (transfer->reply.body.size() + length > CIMXmlHttpConnection::kMaxResponseBytes) {
        transfer->tooLarge = true;
        return 0;
    }
    transfer->reply.body.append(data, length);
    return length;
}

// Status lines start a new set of fields (after 100 Continue, say); trailers add to it.
size_t collectField(char* data, size_t size, size_t count, void* context) {
    auto* transfer = static_cast<Transfer*>(context);
    const std::string line(data, size * count);
    if (line.compare(0, 5, "HTTP/") == 0) {
        transfer->reply.fields.clear();
        const size_t code = line.find(' ');
        const size_t reason = code == std::string::npos ? code : line.find(' ', code + 1);
        transfer->reply.reason =
            reason == std::string::npos ? "" : trimmed(line.substr(reason + 1));
        return size * count;
    }
    const size_t colon = line.find(':');
    if (colon != std::string::npos) {
        transfer->reply.fields[lowerCase(trimmed(line.substr(0, colon)))] =
            trimmed(line.substr(colon + 1));
    }
    return size * count;
}

void setOptionalPath(CURL* curl, CURLoption option, const std::string& path) {
    if (!path.empty()) {
        curl_easy_setopt(curl, option, path.c_str());
    }
}

// curl verifies against the system's CAs unless told otherwise; only the given store counts.
void setTls(CURL* curl, const CIMXmlEndpoint& endpoint) {
    const bool verify = !endpoint.trustStore.empty();
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, verify ? 1L : 0L);
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, verify ? 2L : 0L);
    std::error_code ignored;
    const bool directory = std::filesystem::is_directory(endpoint.trustStore, ignored);
    curl_easy_setopt(curl, CURLOPT_CAINFO,
                     verify && !directory ? endpoint.trustStore.c_str() : nullptr);
    curl_easy_setopt(curl, CURLOPT_CAPATH,
                     verify && directory ? endpoint.trustStore.c_str() : nullptr);
    setOptionalPath(curl, CURLOPT_CRLFILE, endpoint.crlPath);
    setOptionalPath(curl, CURLOPT_SSLCERT, endpoint.certificatePath);
    setOptionalPath(curl, CURLOPT_SSLKEY, endpoint.keyPath);
}

void setTarget(CURL* curl, const CIMXmlEndpoint& endpoint) {
    curl_easy_setopt(curl, CURLOPT_URL, endpoint.url.c_str());
    if (!endpoint.socketPath.empty()) {
        curl_easy_setopt(curl, CURLOPT_UNIX_SOCKET_PATH, endpoint.socketPath.c_str());
    }
    // Environment proxies must not capture connections meant for the CIM server.
    curl_easy_setopt(curl, CURLOPT_PROXY, "");
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    if (endpoint.url.compare(0, 8, "https://") == 0) {
        setTls(curl, endpoint);
    }
}

void setTimeout(CURL* curl, Uint32 timeoutMilliseconds) {
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, long(timeoutMilliseconds));
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT_MS, long(timeoutMilliseconds));
}

// curl's detail names the URL's host and port, which mislead for a Unix socket.
std::string reasonOf(CURLcode code, const char* detail, const CIMXmlEndpoint& endpoint) {
    return detail[0] != '\0' && endpoint.socketPath.empty() ? detail : curl_easy_strerror(code);
}

[[noreturn]] void throwTransferError(CURLcode code, const char* detail,
                                     const CIMXmlEndpoint& endpoint) {
    const std::string reason = reasonOf(code, detail, endpoint);
    switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
        throw ConnectionTimeoutException();
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_PARTIAL_FILE:
    case CURLE_BAD_CONTENT_ENCODING:
        throw CIMClientMalformedHTTPException(
            asString("malformed HTTP response from " + endpoint.description + ": " + reason));
    default:
        throw CannotConnectException(
            asString("cannot reach the CIM server at " + endpoint.description + ": " + reason));
    }
}

struct HeaderList {
    curl_slist* list = nullptr;
    ~HeaderList() { curl_slist_free_all(list); }
};

} // namespace

struct CIMXmlHttpConnection::Handle {
    CURL* curl = curl_easy_init();
    ~Handle() { curl_easy_cleanup(curl); }
};

std::string CIMXmlHttpConnection::Reply::field(const std::string& lowerCaseName) const {
    const auto found = fields.find(lowerCaseName);
    return found == fields.end() ? std::string() : found->second;
}

CIMXmlHttpConnection::CIMXmlHttpConnection(CIMXmlEndpoint endpoint)
    : _endpoint(std::move(endpoint)) {
    initializeCurlOnce();
    _handle = std::make_unique<Handle>();
    if (_handle->curl == nullptr) {
        throw CannotConnectException("cannot create an HTTP connection");
    }
    CURL* curl = _handle->curl;
    setTarget(curl, _endpoint);
    curl_easy_setopt(curl, CURLOPT_HTTP_VERSION, long(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(curl, CURLOPT_POST, 1L);
    if (!_endpoint.userName.empty()) {
        curl_easy_setopt(curl, CURLOPT_HTTPAUTH, long(CURLAUTH_BASIC));
        curl_easy_setopt(curl, CURLOPT_USERNAME, _endpoint.userName.c_str());
        curl_easy_setopt(curl, CURLOPT_PASSWORD, _endpoint.password.c_str());
    }
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, collectBody);
    curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, collectField);
}

CIMXmlHttpConnection::~CIMXmlHttpConnection() = default;

void CIMXmlHttpConnection::probe(Uint32 timeoutMilliseconds) const {
    Handle probe;
    if (probe.curl == nullptr) {
        throw CannotConnectException("cannot create an HTTP connection");
    }
    setTarget(probe.curl, _endpoint);
    setTimeout(probe.curl, timeoutMilliseconds);
    curl_easy_setopt(probe.curl, CURLOPT_CONNECT_ONLY, 1L);
    char detail[CURL_ERROR_SIZE] = "";
    curl_easy_setopt(probe.curl, CURLOPT_ERRORBUFFER, detail);
    const CURLcode code = curl_easy_perform(probe.curl);
    if (code != CURLE_OK) {
        throw CannotConnectException(asString("cannot connect to the CIM server at " +
                                              _endpoint.description + ": " +
                                              reasonOf(code, detail, _endpoint)));
    }
}

void CIMXmlHttpConnection::close() {
    _handle.reset();
}

CIMXmlHttpConnection::Reply CIMXmlHttpConnection::post(const std::string& body,
                                                       const std::vector<std::string>& headerLines,
                                                       Uint32 timeoutMilliseconds) {
    if (!_handle) {
        throw NotConnectedException();
    }
    CURL* curl = _handle->curl;
    HeaderList headers;
    for (const std::string& line : headerLines) {
        headers.list = curl_slist_append(headers.list, line.c_str());
    }
    Transfer transfer;
    char detail[CURL_ERROR_SIZE] = "";
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers.list);
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, body.data());
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(body.size()));
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &transfer);
    curl_easy_setopt(curl, CURLOPT_HEADERDATA, &transfer);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, detail);
    setTimeout(curl, timeoutMilliseconds);
    const CURLcode code = curl_easy_perform(curl);
    // The handle outlives these buffers; it must not point into them afterwards.
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, nullptr);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, nullptr);
    if (transfer.tooLarge) {
        throw CIMClientResponseException(asString("the response from " + _endpoint.description +
                                                  " is larger than the client accepts"));
    }
    if (code != CURLE_OK) {
        throwTransferError(code, detail, _endpoint);
    }
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &transfer.reply.status);
    return std::move(transfer.reply);
}

PEGASUS_NAMESPACE_END
