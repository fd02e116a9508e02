#include <Pegasus/Client/CIMClientException.h>

#include <string>

PEGASUS_NAMESPACE_BEGIN

namespace {

// "HTTP Error (401 Unauthorized): CIMError = "..." Detail = "...".", leaving out what is empty.
String describeHTTPError(Uint32 httpStatusCode, const String& reasonPhrase, const String& cimError,
                         const String& cimErrorDetail) {
    String text("HTTP Error (");
    text.append(std::to_string(httpStatusCode).c_str());
    if (reasonPhrase.size() != 0) {
        text.append(" ");
        text.append(reasonPhrase);
    }
    text.append(")");
    if (cimError.size() != 0 || cimErrorDetail.size() != 0) {
        text.append(":");
    }
    if (cimError.size() != 0) {
        text.append(" CIMError = \"");
        text.append(cimError);
        text.append("\"");
    }
    if (cimErrorDetail.size() != 0) {
        text.append(" Detail = \"");
        text.append(cimErrorDetail);
        text.append("\"");
    }
    text.append(".");
    return text;
}

} // namespace

CIMClientMalformedHTTPException::CIMClientMalformedHTTPException(const String& message)
    : Exception(message) {}

CIMClientHTTPErrorException::CIMClientHTTPErrorException(Uint32 httpStatusCode,
                                                         const String& reasonPhrase,
                                                         const String& cimError,
                                                         const String& cimErrorDetail)
    : Exception(describeHTTPError(httpStatusCode, reasonPhrase, cimError, cimErrorDetail)),
      _httpStatusCode(httpStatusCode), _reasonPhrase(reasonPhrase), _cimError(cimError),
      _cimErrorDetail(cimErrorDetail) {}

CIMClientHTTPErrorException::CIMClientHTTPErrorException(Uint32 httpStatusCode,
                                                         const String& cimError,
                                                         const String& cimErrorDetail)
    : CIMClientHTTPErrorException(httpStatusCode, String(), cimError, cimErrorDetail) {}

CIMClientHTTPErrorException::CIMClientHTTPErrorException(
    const CIMClientHTTPErrorException& httpError) = default;

CIMClientHTTPErrorException::~CIMClientHTTPErrorException() = default;

CIMClientHTTPErrorException&
CIMClientHTTPErrorException::operator=(const CIMClientHTTPErrorException& httpError) = default;

Uint32 CIMClientHTTPErrorException::getCode() const {
    return _httpStatusCode;
}

String CIMClientHTTPErrorException::getCIMError() const {
    return _cimError;
}

String CIMClientHTTPErrorException::getCIMErrorDetail() const {
    return _cimErrorDetail;
}

CIMClientXmlException::CIMClientXmlException(const String& message) : Exception(message) {}

CIMClientResponseException::CIMClientResponseException(const String& message)
    : Exception(message) {}

PEGASUS_NAMESPACE_END
