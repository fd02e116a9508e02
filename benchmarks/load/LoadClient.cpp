#include "LoadClient.h"

#include <curl/curl.h>

#include <cstdlib>
#include <cstring>

namespace ksv::load {

namespace {

struct Exchange {
    Answer* answer;
    bool hangUpEarly;
};

std::size_t onBody(char* data, std::size_t size, std::size_t count, void* context) {
    auto& exchange = *static_cast<Exchange*>(context);
    exchange.answer->body.append(data, size * count);
    return exchange.hangUpEarly ? 0 : size * count;
}

// Headers and trailers alike: a streamed answer's status comes last, as a trailer.
std::size_t onHeader(char* data, std::size_t size, std::size_t count, void* context) {
    auto& exchange = *static_cast<Exchange*>(context);
    const std::string line(data, size * count);
    const std::string name = "CIMStatusCode:";
    if (line.size() > name.size() && strncasecmp(line.c_str(), name.c_str(), name.size()) == 0)
        exchange.answer->cimStatus = std::atoi(line.c_str() + name.size());
    return size * count;
}

int errorCodeIn(const std::string& body) {
    const std::string marker = "<ERROR CODE=\"";
    const std::size_t at = body.find(marker);
    return at == std::string::npos ? 0 : std::atoi(body.c_str() + at + marker.size());
}

} // namespace

LoadClient::LoadClient(std::string url) : _curl(curl_easy_init()), _url(std::move(url)) {}

LoadClient::~LoadClient() {
    curl_easy_cleanup(_curl);
}

Answer LoadClient::send(const Request& request, std::chrono::seconds timeout) {
    Answer answer;
    Exchange exchange{&answer, request.hangUpEarly};
    curl_slist* headers = nullptr;
    headers = curl_slist_append(headers, "Content-Type: application/xml; charset=\"utf-8\"");
    headers = curl_slist_append(headers, "CIMOperation: MethodCall");
    headers = curl_slist_append(headers, ("CIMMethod: " + request.cimMethod).c_str());
    headers = curl_slist_append(headers, "CIMObject: root%2Fksv");
    headers = curl_slist_append(headers, "TE: trailers");
    curl_easy_setopt(_curl, CURLOPT_URL, _url.c_str());
    curl_easy_setopt(_curl, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(_curl, CURLOPT_POSTFIELDS, request.body.c_str());
    curl_easy_setopt(_curl, CURLOPT_POSTFIELDSIZE, static_cast<long>(request.body.size()));
    curl_easy_setopt(_curl, CURLOPT_USERNAME, request.user.c_str());
    curl_easy_setopt(_curl, CURLOPT_PASSWORD, request.password.c_str());
    curl_easy_setopt(_curl, CURLOPT_WRITEFUNCTION, &onBody);
    curl_easy_setopt(_curl, CURLOPT_WRITEDATA, &exchange);
    curl_easy_setopt(_curl, CURLOPT_HEADERFUNCTION, &onHeader);
    curl_easy_setopt(_curl, CURLOPT_HEADERDATA, &exchange);
    curl_easy_setopt(_curl, CURLOPT_TIMEOUT, static_cast<long>(timeout.count()));
    curl_easy_setopt(_curl, CURLOPT_NOSIGNAL, 1L);
    const CURLcode result = curl_easy_perform(_curl);
    curl_slist_free_all(headers);
    curl_easy_getinfo(_curl, CURLINFO_RESPONSE_CODE, &answer.httpStatus);
    if (result != CURLE_OK)
        answer.transport = curl_easy_strerror(result);
    if (answer.cimStatus == 0)
        answer.cimStatus = errorCodeIn(answer.body);
    return answer;
}

std::string basicAuthorization(const std::string& user, const std::string& password) {
    static const char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::string text = user + ":" + password;
    std::string encoded;
    for (std::size_t i = 0; i < text.size(); i += 3) {
        const std::size_t left = text.size() - i;
        unsigned bits = static_cast<unsigned char>(text[i]) << 16;
        if (left > 1)
            bits |= static_cast<unsigned char>(text[i + 1]) << 8;
        if (left > 2)
            bits |= static_cast<unsigned char>(text[i + 2]);
        encoded += digits[(bits >> 18) & 63];
        encoded += digits[(bits >> 12) & 63];
        encoded += left > 1 ? digits[(bits >> 6) & 63] : '=';
        encoded += left > 2 ? digits[bits & 63] : '=';
    }
    return "Authorization: Basic " + encoded;
}

std::string outcomeOf(const Answer& answer) {
    if (answer.transport == curl_easy_strerror(CURLE_WRITE_ERROR))
        return "hung up";
    if (!answer.transport.empty())
        return "transport: " + answer.transport;
    if (answer.httpStatus != 200)
        return "http " + std::to_string(answer.httpStatus);
    if (answer.cimStatus != 0)
        return "cim " + std::to_string(answer.cimStatus);
    return "ok";
}

bool meets(const Answer& answer, Expect expect) {
    const std::string outcome = outcomeOf(answer);
    switch (expect) {
    case Expect::Success:
        return outcome == "ok";
    case Expect::AccessDenied:
        return outcome == "cim 2";
    case Expect::Unauthorized:
        return outcome == "http 401";
    case Expect::BadRequest:
        return outcome == "http 400";
    case Expect::LimitExceeded:
        return outcome == "cim 27";
    case Expect::Aborted:
        return outcome == "hung up" || outcome == "ok";
    }
    return false;
}

std::string intrinsicCall(const std::string& method, const std::string& parameters) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
           "<MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL NAME=\"" +
           method +
           "\"><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"ksv\"/>"
           "</LOCALNAMESPACEPATH>" +
           parameters + "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
}

std::string classNameParameter(const std::string& className) {
    return parameter("ClassName", "<CLASSNAME NAME=\"" + className + "\"/>");
}

std::string parameter(const std::string& name, const std::string& element) {
    return "<IPARAMVALUE NAME=\"" + name + "\">" + element + "</IPARAMVALUE>";
}

std::string firstInstanceName(const std::string& response) {
    const std::size_t begin = response.find("<INSTANCENAME");
    const std::string end = "</INSTANCENAME>";
    const std::size_t stop = response.find(end, begin);
    if (begin == std::string::npos || stop == std::string::npos)
        return {};
    return response.substr(begin, stop + end.size() - begin);
}

std::string withDeviceID(const std::string& instanceName, const std::string& deviceID) {
    const std::string key = "<KEYBINDING NAME=\"DeviceID\"><KEYVALUE";
    const std::size_t at = instanceName.find(key);
    const std::size_t open = instanceName.find('>', at + key.size());
    const std::size_t close = instanceName.find("</KEYVALUE>", open);
    if (at == std::string::npos || open == std::string::npos || close == std::string::npos)
        return instanceName;
    return instanceName.substr(0, open + 1) + deviceID + instanceName.substr(close);
}

} // namespace ksv::load
