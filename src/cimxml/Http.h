#ifndef KSV_CIMXML_HTTP_H
#define KSV_CIMXML_HTTP_H

#include <cimxml/Request.h>

#include <optional>
#include <string>
#include <string_view>

/// The HTTP conventions of CIM operations (DSP0200): header names and values, and the checks a
/// server makes on the headers of a request. Requests are POSTed to kRequestUri.
namespace ksv::cimxml::http {

inline constexpr const char kRequestUri[] = "/cimom";
inline constexpr const char kContentType[] = "application/xml; charset=\"utf-8\"";

inline constexpr const char kCimOperationHeader[] = "CIMOperation";
inline constexpr const char kCimMethodHeader[] = "CIMMethod";
inline constexpr const char kCimObjectHeader[] = "CIMObject";
inline constexpr const char kCimProtocolVersionHeader[] = "CIMProtocolVersion";
inline constexpr const char kCimErrorHeader[] = "CIMError";
/// Trailers of a chunked response that failed after its head was sent.
inline constexpr const char kCimStatusCodeTrailer[] = "CIMStatusCode";
inline constexpr const char kCimStatusCodeDescriptionTrailer[] = "CIMStatusCodeDescription";

inline constexpr const char kMethodCall[] = "MethodCall";
inline constexpr const char kMethodResponse[] = "MethodResponse";
inline constexpr const char kProtocolVersion[] = "1.0";

/// Percent-escapes every byte outside the URI's unreserved characters and "/:=,".
std::string uriEscape(std::string_view text);
/// Undoes uriEscape (and any other %XX); nothing for a malformed escape.
std::optional<std::string> uriUnescape(std::string_view text);

/// CIMMethod of a request: the intrinsic operation's name or the extrinsic method's name.
std::string cimMethodHeaderValue(const OperationRequest& request);
/// CIMObject of a request, escaped: the namespace ("root/ksv") for an
/// intrinsic call, the namespace-qualified object path of the target for an extrinsic one
/// ("root/ksv:KSV_DiskDrive.DeviceID=%22X%22").
std::string cimObjectHeaderValue(const OperationRequest& request);

/// Throws ProtocolError(UnsupportedOperation) unless the CIMOperation header is "MethodCall"
/// (any case). Pass nothing when the header is missing.
void checkCimOperationHeader(std::optional<std::string_view> cimOperation);

/// Throws ProtocolError(HeaderMismatch) when CIMMethod or CIMObject (escaped, as received) is
/// missing or does not name what the decoded body does. Names and paths compare without regard
/// to case.
void checkHeadersMatch(const OperationRequest& request, std::optional<std::string_view> cimMethod,
                       std::optional<std::string_view> cimObject);

} // namespace ksv::cimxml::http

#endif
