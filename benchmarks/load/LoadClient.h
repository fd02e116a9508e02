// One client of the load run: a libcurl handle whose connection is kept alive between requests,
// and the CIM-XML requests it sends.
#ifndef KSV_BENCHMARKS_LOAD_LOADCLIENT_H
#define KSV_BENCHMARKS_LOAD_LOADCLIENT_H

#include <chrono>
#include <string>

typedef void CURL;

namespace ksv::load {

// What a request is meant to get.
enum class Expect { Success, AccessDenied, Unauthorized, BadRequest, LimitExceeded, Aborted };

struct Request {
    std::string name; // as the report shows it
    std::string cimMethod;
    std::string body;
    std::string user = {};
    std::string password = {};
    Expect expect = Expect::Success;
    // The client hangs up once the first bytes of the answer are in.
    bool hangUpEarly = false;
};

struct Answer {
    long httpStatus = 0;   // 0: no HTTP answer
    int cimStatus = 0;     // from an ERROR element, the CIMStatusCode trailer or header
    std::string transport; // libcurl's error when the exchange failed
    std::string body;
};

class LoadClient {
public:
    explicit LoadClient(std::string url);
    ~LoadClient();
    LoadClient(const LoadClient&) = delete;
    LoadClient& operator=(const LoadClient&) = delete;

    Answer send(const Request& request, std::chrono::seconds timeout);

private:
    CURL* _curl;
    std::string _url;
};

// "Authorization: Basic ..." for the raw clients.
std::string basicAuthorization(const std::string& user, const std::string& password);

// "ok", "http 401", "cim 2", "hung up", "transport: ..." : the kinds the report counts.
std::string outcomeOf(const Answer& answer);
bool meets(const Answer& answer, Expect expect);

// ---- CIM-XML requests --------------------------------------------------------------------------

// An IMETHODCALL on root/ksv with the given IPARAMVALUEs.
std::string intrinsicCall(const std::string& method, const std::string& parameters);
std::string classNameParameter(const std::string& className);
// An IPARAMVALUE holding `element` (an INSTANCENAME, a VALUE.NAMEDINSTANCE, ...).
std::string parameter(const std::string& name, const std::string& element);
// The first INSTANCENAME element of a response; empty when there is none.
std::string firstInstanceName(const std::string& response);
// `instanceName` with the value of its DeviceID key replaced by `deviceID`.
std::string withDeviceID(const std::string& instanceName, const std::string& deviceID);

} // namespace ksv::load

#endif
