#include <cimxml/Errors.h>
#include <cimxml/detail/Fail.h>
#include <cimxml/detail/XmlText.h>

#include <Pegasus/Common/Exception.h>

#include <utility>

namespace ksv::cimxml {

namespace {

Pegasus::CIMStatusCode statusOf(MessageFault fault) {
    switch (fault) {
    case MessageFault::NotWellFormed:
    case MessageFault::NotValid:
    case MessageFault::HeaderMismatch:
        return Pegasus::CIM_ERR_INVALID_PARAMETER;
    default:
        return Pegasus::CIM_ERR_NOT_SUPPORTED;
    }
}

} // namespace

const char* cimErrorHeaderValue(MessageFault fault) {
    switch (fault) {
    case MessageFault::NotWellFormed:
        return "request-not-well-formed";
    case MessageFault::NotValid:
        return "request-not-valid";
    case MessageFault::HeaderMismatch:
        return "header-mismatch";
    case MessageFault::UnsupportedOperation:
        return "unsupported-operation";
    case MessageFault::UnsupportedCimVersion:
        return "unsupported-cim-version";
    case MessageFault::UnsupportedDtdVersion:
        return "unsupported-dtd-version";
    case MessageFault::UnsupportedProtocolVersion:
        return "unsupported-protocol-version";
    case MessageFault::MultipleRequestsUnsupported:
        return "multiple-requests-unsupported";
    }
    return "request-not-valid";
}

unsigned httpStatusOf(MessageFault fault) {
    switch (fault) {
    case MessageFault::NotWellFormed:
    case MessageFault::NotValid:
    case MessageFault::HeaderMismatch:
    case MessageFault::UnsupportedOperation:
        return 400;
    default:
        return 501;
    }
}

ProtocolError::ProtocolError(MessageFault fault, const Pegasus::String& message)
    : Pegasus::CIMException(statusOf(fault), message), _fault(fault) {}

OperationError::OperationError(const Pegasus::CIMException& cause, std::string messageId,
                               std::string methodName, bool intrinsic)
    : Pegasus::CIMException(cause), _messageId(std::move(messageId)),
      _methodName(std::move(methodName)), _intrinsic(intrinsic) {}

namespace detail {

Pegasus::String lossyString(std::string_view utf8) {
    Pegasus::String text;
    if (utf8ToString(utf8, text)) {
        return text;
    }
    std::string repaired;
    for (unsigned char c : utf8) {
        repaired += c < 0x80 ? std::string(1, char(c)) : std::string("\xEF\xBF\xBD");
    }
    return Pegasus::String(repaired.c_str(), Pegasus::Uint32(repaired.size()));
}

void throwCim(Pegasus::CIMStatusCode code, std::string_view message) {
    throw Pegasus::CIMException(code, lossyString(message));
}

std::string quoted(std::string_view text, size_t limit) {
    std::string result = "\"";
    result.append(text.substr(0, limit));
    if (text.size() > limit) {
        result += "...";
    }
    result += '"';
    return result;
}

} // namespace detail

} // namespace ksv::cimxml
