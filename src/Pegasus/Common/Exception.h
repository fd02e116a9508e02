#ifndef Pegasus_Exception_h
#define Pegasus_Exception_h

#include <memory>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/Array.h>
#ifdef PEGASUS_INTERNALONLY
#include <Pegasus/Common/MessageLoader.h>
#endif

PEGASUS_NAMESPACE_BEGIN

struct ExceptionRep;
class MessageLoaderParms;
class CIMInstance;
class CIMConstInstance;

// Base of every exception of the interfaces; carries a readable message.
class PEGASUS_COMMON_LINKAGE Exception {
public:
    Exception(const String& message);
    Exception(const Exception& exception);
#ifdef PEGASUS_INTERNALONLY
    Exception(const MessageLoaderParms& msgParms);
#endif
    virtual ~Exception();

    Exception& operator=(const Exception& exception);

    virtual const String& getMessage() const;

protected:
    Exception();

    std::unique_ptr<ExceptionRep> _rep;
};

class PEGASUS_COMMON_LINKAGE IndexOutOfBoundsException : public Exception {
public:
    IndexOutOfBoundsException();
};

class PEGASUS_COMMON_LINKAGE AlreadyExistsException : public Exception {
public:
    AlreadyExistsException(const String& message);
#ifdef PEGASUS_INTERNALONLY
    AlreadyExistsException(MessageLoaderParms& msgParms);
#endif
};

class PEGASUS_COMMON_LINKAGE InvalidNameException : public Exception {
public:
    InvalidNameException(const String& name);
#ifdef PEGASUS_INTERNALONLY
    InvalidNameException(MessageLoaderParms& msgParms);
#endif
};

class PEGASUS_COMMON_LINKAGE InvalidNamespaceNameException : public Exception {
public:
    InvalidNamespaceNameException(const String& name);
#ifdef PEGASUS_INTERNALONLY
    InvalidNamespaceNameException(MessageLoaderParms& msgParms);
#endif
};

class PEGASUS_COMMON_LINKAGE UninitializedObjectException : public Exception {
public:
    UninitializedObjectException();
};

class PEGASUS_COMMON_LINKAGE TypeMismatchException : public Exception {
public:
    TypeMismatchException();
    TypeMismatchException(const String& message);
#ifdef PEGASUS_INTERNALONLY
    TypeMismatchException(MessageLoaderParms& msgParms);
#endif
};

class PEGASUS_COMMON_LINKAGE DynamicCastFailedException : public Exception {
public:
    DynamicCastFailedException();
};

class PEGASUS_COMMON_LINKAGE InvalidDateTimeFormatException : public Exception {
public:
    InvalidDateTimeFormatException();
};

class PEGASUS_COMMON_LINKAGE DateTimeOutOfRangeException : public Exception {
public:
    DateTimeOutOfRangeException(const String& message);
#ifdef PEGASUS_INTERNALONLY
    DateTimeOutOfRangeException(MessageLoaderParms& msgParms);
#endif
};

class PEGASUS_COMMON_LINKAGE MalformedObjectNameException : public Exception {
public:
    MalformedObjectNameException(const String& objectName);
#ifdef PEGASUS_INTERNALONLY
    MalformedObjectNameException(MessageLoaderParms& msgParms);
#endif
};

class PEGASUS_COMMON_LINKAGE BindFailedException : public Exception {
public:
    BindFailedException(const String& message);
#ifdef PEGASUS_INTERNALONLY
    BindFailedException(MessageLoaderParms& msgParms);
#endif
};

class PEGASUS_COMMON_LINKAGE InvalidLocatorException : public Exception {
public:
    InvalidLocatorException(const String& locator);
#ifdef PEGASUS_INTERNALONLY
    InvalidLocatorException(MessageLoaderParms& msgParms);
#endif
};

class PEGASUS_COMMON_LINKAGE CannotCreateSocketException : public Exception {
public:
    CannotCreateSocketException();
};

class PEGASUS_COMMON_LINKAGE CannotConnectException : public Exception {
public:
    CannotConnectException(const String& message);
#ifdef PEGASUS_INTERNALONLY
    CannotConnectException(MessageLoaderParms& msgParms);
#endif
};

class PEGASUS_COMMON_LINKAGE AlreadyConnectedException : public Exception {
public:
    AlreadyConnectedException();
};

class PEGASUS_COMMON_LINKAGE NotConnectedException : public Exception {
public:
    NotConnectedException();
};

class PEGASUS_COMMON_LINKAGE ConnectionTimeoutException : public Exception {
public:
    ConnectionTimeoutException();
};

class PEGASUS_COMMON_LINKAGE InvalidEnumerationContextException : public Exception {
public:
    InvalidEnumerationContextException();
};

class PEGASUS_COMMON_LINKAGE SSLException : public Exception {
public:
    SSLException(const String& message);
#ifdef PEGASUS_INTERNALONLY
    SSLException(MessageLoaderParms& msgParms);
#endif
};

// An error of a CIM operation: a status code, a message and optionally
// CIM_Error instances describing it.
class PEGASUS_COMMON_LINKAGE CIMException : public Exception {
public:
    CIMException(CIMStatusCode code = CIM_ERR_SUCCESS, const String& message = String::EMPTY);
    CIMException(CIMStatusCode code, const String& message, const CIMInstance& instance);
    CIMException(CIMStatusCode code, const String& message, const Array<CIMInstance>& instances);
#ifdef PEGASUS_INTERNALONLY
    CIMException(CIMStatusCode code, const MessageLoaderParms& msgParms);
    CIMException(CIMStatusCode code, const MessageLoaderParms& msgParms,
                 const CIMInstance& instance);
    CIMException(CIMStatusCode code, const MessageLoaderParms& msgParms,
                 const Array<CIMInstance>& instances);
#endif
    CIMException(const CIMException& cimException);
    CIMException& operator=(const CIMException& cimException);
    virtual ~CIMException();

    CIMStatusCode getCode() const;

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    Uint32 getErrorCount() const;
    CIMConstInstance getError(Uint32 index) const;
    void addError(const CIMInstance& instance);
#endif
};

PEGASUS_NAMESPACE_END

#endif /* Pegasus_Exception_h */
