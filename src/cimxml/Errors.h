#ifndef KSV_CIMXML_ERRORS_H
#define KSV_CIMXML_ERRORS_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>

#include <string>

namespace ksv::cimxml {

/// Why a CIM-XML message as a whole is refused. DSP0200 answers these with an HTTP error status
/// and a CIMError header instead of a CIM ERROR element.
enum class MessageFault {
    NotWellFormed,              ///< 400, "request-not-well-formed": the body is not XML
    NotValid,                   ///< 400, "request-not-valid": XML, but not a valid CIM message
    HeaderMismatch,             ///< 400, "header-mismatch": CIMMethod/CIMObject disagree with body
    UnsupportedOperation,       ///< 400, "unsupported-operation": no CIMOperation: MethodCall
    UnsupportedCimVersion,      ///< 501, "unsupported-cim-version"
    UnsupportedDtdVersion,      ///< 501, "unsupported-dtd-version"
    UnsupportedProtocolVersion, ///< 501, "unsupported-protocol-version"
    MultipleRequestsUnsupported ///< 501, "multiple-requests-unsupported": MULTIREQ
};

/// The CIMError header value of a fault, e.g. "request-not-valid".
const char* cimErrorHeaderValue(MessageFault fault);

/// The HTTP status that carries a fault: 400 or 501.
unsigned httpStatusOf(MessageFault fault);

/// A message that cannot be answered with a CIM response at all. Its CIM status code is
/// CIM_ERR_INVALID_PARAMETER for malformed or invalid messages and CIM_ERR_NOT_SUPPORTED for
/// unsupported versions, so that code which only knows CIMException still reports it sensibly.
class ProtocolError : public Pegasus::CIMException {
public:
    ProtocolError(MessageFault fault, const Pegasus::String& message);

    MessageFault fault() const { return _fault; }

private:
    MessageFault _fault;
};

/// A well-formed request whose operation cannot be carried out as sent: an unknown method, a
/// missing or malformed parameter. DSP0200 answers it with HTTP 200 and an ERROR element in the
/// response to the named method; the identifiers needed for that response travel with it.
class OperationError : public Pegasus::CIMException {
public:
    OperationError(const Pegasus::CIMException& cause, std::string messageId,
                   std::string methodName, bool intrinsic);

    const std::string& messageId() const { return _messageId; }
    const std::string& methodName() const { return _methodName; }
    bool intrinsic() const { return _intrinsic; }

private:
    std::string _messageId;
    std::string _methodName;
    bool _intrinsic;
};

} // namespace ksv::cimxml

#endif
