#include <cimxml/Errors.h>
#include <cimxml/Http.h>
#include <cimxml/detail/Fail.h>
#include <cimxml/detail/XmlText.h>

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Exception.h>

namespace ksv::cimxml::http {

using namespace Pegasus;

namespace {

bool isKeptInUri(unsigned char c) {
    const bool alphanumeric =
        (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    return alphanumeric || c == '-' || c == '_' || c == '.' || c == '~' || c == '/' || c == ':' ||
           c == '=' || c == ',';
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

[[noreturn]] void mismatch(const std::string& message) {
    throw ProtocolError(MessageFault::HeaderMismatch, detail::lossyString(message));
}

// The target of an extrinsic call as CIMObject names it: namespace-qualified, without host.
CIMObjectPath headerTarget(const OperationRequest& request) {
    CIMObjectPath target = request.objectName;
    target.setHost(String());
    target.setNameSpace(request.nameSpace);
    return target;
}

bool sameTarget(const std::string& header, const OperationRequest& request) {
    if (isIntrinsic(request.operation)) {
        const String text = detail::lossyString(header);
        return CIMNamespaceName::legal(text) && CIMNamespaceName(text) == request.nameSpace;
    }
    try {
        CIMObjectPath named{detail::lossyString(header)};
        named.setHost(String());
        return named.identical(headerTarget(request));
    } catch (const Exception&) {
        return false;
    }
}

} // namespace

std::string uriEscape(std::string_view text) {
    static const char digits[] = "0123456789ABCDEF";
    std::string escaped;
    escaped.reserve(text.size());
    for (unsigned char c : text) {
        if (isKeptInUri(c)) {
            escaped += char(c);
        } else {
            escaped += '%';
            escaped += digits[c >> 4];
            escaped += digits[c & 0xF];
        }
    }
    return escaped;
}

std::optional<std::string> uriUnescape(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (size_t i = 0; i < text.size(); i++) {
        if (text[i] != '%') {
            plain += text[i];
            continue;
        }
        if (text.size() - i < 3) {
            return std::nullopt;
        }
        const int high = hexDigit(text[i + 1]);
        const int low = hexDigit(text[i + 2]);
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        plain += char(high * 16 + low);
        i += 2;
    }
    return plain;
}

std::string cimMethodHeaderValue(const OperationRequest& request) {
    return uriEscape(isIntrinsic(request.operation)
                         ? operationName(request.operation)
                         : detail::utf8Of(request.methodName.getString()));
}

std::string cimObjectHeaderValue(const OperationRequest& request) {
    if (isIntrinsic(request.operation)) {
        return uriEscape(detail::utf8Of(request.nameSpace.getString()));
    }
    return uriEscape(detail::utf8Of(headerTarget(request).toString()));
}

void checkCimOperationHeader(std::optional<std::string_view> cimOperation) {
    if (!cimOperation ||
        !String::equalNoCase(detail::lossyString(detail::trimXmlSpace(*cimOperation)),
                             kMethodCall)) {
        throw ProtocolError(MessageFault::UnsupportedOperation,
                            "the CIMOperation header must be MethodCall");
    }
}

void checkHeadersMatch(const OperationRequest& request, std::optional<std::string_view> cimMethod,
                       std::optional<std::string_view> cimObject) {
    if (!cimMethod || !cimObject) {
        mismatch(std::string("the ") + (cimMethod ? kCimObjectHeader : kCimMethodHeader) +
                 " header is missing");
    }
    const std::optional<std::string> method = uriUnescape(*cimMethod);
    const std::string expectedMethod = isIntrinsic(request.operation)
                                           ? operationName(request.operation)
                                           : detail::utf8Of(request.methodName.getString());
    if (!method ||
        !String::equalNoCase(detail::lossyString(*method), detail::lossyString(expectedMethod))) {
        mismatch("the CIMMethod header " + detail::quoted(*cimMethod) + " does not name " +
                 expectedMethod);
    }
    const std::optional<std::string> object = uriUnescape(*cimObject);
    if (!object || !sameTarget(*object, request)) {
        mismatch("the CIMObject header " + detail::quoted(*cimObject) +
                 " does not name the target of the request");
    }
}

} // namespace ksv::cimxml::http
