#include <Pegasus/Common/Exception.h>

#include <Pegasus/Common/ExceptionRep.h>
#include <Pegasus/Common/MessageLoader.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

String load(const MessageLoaderParms& parms) {
    return MessageLoader::getMessage(const_cast<MessageLoaderParms&>(parms));
}

String load(const char* id, const char* text, const String& arg) {
    MessageLoaderParms parms(id, text, arg);
    return MessageLoader::getMessage(parms);
}

String load(const char* id, const char* text) {
    MessageLoaderParms parms(id, text);
    return MessageLoader::getMessage(parms);
}

} // namespace

//------------------------------------------------------------------------------
// Exception
//------------------------------------------------------------------------------

Exception::Exception() : _rep(new ExceptionRep) {}

Exception::Exception(const String& message) : Exception() {
    _rep->message = message;
}

Exception::Exception(const Exception& exception) : _rep(new ExceptionRep(*exception._rep)) {}

Exception::Exception(const MessageLoaderParms& msgParms) : Exception(load(msgParms)) {}

Exception::~Exception() = default;

Exception& Exception::operator=(const Exception& exception) {
    if (this != &exception)
        *_rep = *exception._rep;
    return *this;
}

const String& Exception::getMessage() const {
    return _rep->message;
}

//------------------------------------------------------------------------------
// Specific exceptions
//------------------------------------------------------------------------------

IndexOutOfBoundsException::IndexOutOfBoundsException()
    : Exception(load("Common.Exception.INDEX_OUT_OF_BOUNDS_EXCEPTION", "index out of bounds")) {}

AlreadyExistsException::AlreadyExistsException(const String& message)
    : Exception(load("Common.Exception.ALREADY_EXISTS_EXCEPTION", "already exists: $0", message)) {}

AlreadyExistsException::AlreadyExistsException(MessageLoaderParms& msgParms)
    : AlreadyExistsException(load(msgParms)) {}

InvalidNameException::InvalidNameException(const String& name)
    : Exception(
          load("Common.Exception.INVALID_NAME_EXCEPTION", "The CIM name is not valid: $0", name)) {}

InvalidNameException::InvalidNameException(MessageLoaderParms& msgParms)
    : Exception(load("Common.Exception.INVALID_NAME_EXCEPTION", "invalid CIM name: $0",
                     load(msgParms))) {}

InvalidNamespaceNameException::InvalidNamespaceNameException(const String& name)
    : Exception(load("Common.Exception.INVALID_NAMESACE_NAME_EXCEPTION",
                     "invalid CIM namespace name: $0", name)) {}

InvalidNamespaceNameException::InvalidNamespaceNameException(MessageLoaderParms& msgParms)
    : InvalidNamespaceNameException(load(msgParms)) {}

UninitializedObjectException::UninitializedObjectException()
    : Exception(load("Common.Exception.UNINITIALIZED_OBJECT_EXCEPTION", "uninitialized object")) {}

TypeMismatchException::TypeMismatchException()
    : Exception(load("Common.Exception.TYPE_MISMATCH_EXCEPTION", "type mismatch")) {}

TypeMismatchException::TypeMismatchException(const String& message)
    : Exception(load("Common.Exception.TYPE_MISMATCH_EXCEPTION", "type mismatch: $0", message)) {}

TypeMismatchException::TypeMismatchException(MessageLoaderParms& msgParms)
    : TypeMismatchException(load(msgParms)) {}

DynamicCastFailedException::DynamicCastFailedException()
    : Exception(load("Common.Exception.DYNAMIC_CAST_FAILED_EXCEPTION", "dynamic cast failed")) {}

InvalidDateTimeFormatException::InvalidDateTimeFormatException()
    : Exception(
          load("Common.Exception.INVALID_DATETIME_FORMAT_EXCEPTION", "invalid datetime format")) {}

DateTimeOutOfRangeException::DateTimeOutOfRangeException(const String& message)
    : Exception(load("Common.Exception.DATETIME_OUT_OF_RANGE_EXCEPTION",
                     "DateTime is out of range : $0", message)) {}

DateTimeOutOfRangeException::DateTimeOutOfRangeException(MessageLoaderParms& msgParms)
    : DateTimeOutOfRangeException(load(msgParms)) {}

MalformedObjectNameException::MalformedObjectNameException(const String& objectName)
    : Exception(load("Common.Exception.MALFORMED_OBJECT_NAME_EXCEPTION",
                     "malformed object name: $0", objectName)) {}

MalformedObjectNameException::MalformedObjectNameException(MessageLoaderParms& msgParms)
    : MalformedObjectNameException(load(msgParms)) {}

BindFailedException::BindFailedException(const String& message)
    : Exception(load("Common.Exception.BIND_FAILED_EXCEPTION", "Bind failed: $0", message)) {}

BindFailedException::BindFailedException(MessageLoaderParms& msgParms)
    : BindFailedException(load(msgParms)) {}

InvalidLocatorException::InvalidLocatorException(const String& locator)
    : Exception(
          load("Common.Exception.INVALID_LOCATOR_EXCEPTION", "Invalid locator: $0", locator)) {}

InvalidLocatorException::InvalidLocatorException(MessageLoaderParms& msgParms)
    : InvalidLocatorException(load(msgParms)) {}

CannotCreateSocketException::CannotCreateSocketException()
    : Exception(load("Common.Exception.CANNOT_CREATE_SOCKET_EXCEPTION", "Cannot create socket")) {}

CannotConnectException::CannotConnectException(const String& message) : Exception(message) {}

CannotConnectException::CannotConnectException(MessageLoaderParms& msgParms)
    : Exception(msgParms) {}

AlreadyConnectedException::AlreadyConnectedException()
    : Exception(load("Common.Exception.ALREADY_CONNECTED_EXCEPTION", "already connected")) {}

NotConnectedException::NotConnectedException()
    : Exception(load("Common.Exception.NOT_CONNECTED_EXCEPTION", "not connected")) {}

ConnectionTimeoutException::ConnectionTimeoutException()
    : Exception(load("Common.Exception.CONNECTION_TIMEOUT_EXCEPTION", "connection timed out")) {}

InvalidEnumerationContextException::InvalidEnumerationContextException()
    : Exception(load("Common.Exception.INVALID_ENUMERATION_CONTEXT_EXCEPTION",
                     "Invalid Enumeration Context, uninitilialized")) {}

SSLException::SSLException(const String& message)
    : Exception(load("Common.Exception.SSL_EXCEPTION", "SSL Exception: $0", message)) {}

SSLException::SSLException(MessageLoaderParms& msgParms) : SSLException(load(msgParms)) {}

//------------------------------------------------------------------------------
// CIMException
//------------------------------------------------------------------------------

CIMException::CIMException(CIMStatusCode code, const String& message) : Exception(message) {
    _rep->code = code;
}

CIMException::CIMException(CIMStatusCode code, const MessageLoaderParms& msgParms)
    : CIMException(code, load(msgParms)) {}

CIMException::CIMException(const CIMException& cimException) = default;

CIMException& CIMException::operator=(const CIMException& cimException) = default;

CIMException::~CIMException() = default;

CIMStatusCode CIMException::getCode() const {
    return _rep->code;
}

Uint32 CIMException::getErrorCount() const {
    return Uint32(_rep->errors.size());
}

PEGASUS_NAMESPACE_END
