#ifndef Pegasus_ClientException_h
#define Pegasus_ClientException_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Client/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

/// The server's HTTP response could not be parsed.
class PEGASUS_CLIENT_LINKAGE CIMClientMalformedHTTPException : public Exception {
public:
    CIMClientMalformedHTTPException(const String& message);
};

/// The server answered with an HTTP error status instead of a CIM response.
class PEGASUS_CLIENT_LINKAGE CIMClientHTTPErrorException : public Exception {
public:
    CIMClientHTTPErrorException(Uint32 httpStatusCode, const String& reasonPhrase,
                                const String& cimError, const String& cimErrorDetail);
    CIMClientHTTPErrorException(Uint32 httpStatusCode, const String& cimError,
                                const String& cimErrorDetail);
    CIMClientHTTPErrorException(const CIMClientHTTPErrorException& httpError);
    virtual ~CIMClientHTTPErrorException();

    CIMClientHTTPErrorException& operator=(const CIMClientHTTPErrorException& httpError);

    /// The HTTP status code.
    Uint32 getCode() const;

    /// The CIMError header, if the server sent one.
    String getCIMError() const;

    /// The PGErrorDetail header, if the server sent one.
    String getCIMErrorDetail() const;

private:
    Uint32 _httpStatusCode;
    String _reasonPhrase;
    String _cimError;
    String _cimErrorDetail;
};

/// The CIM-XML body of the response is not well formed or not valid.
class PEGASUS_CLIENT_LINKAGE CIMClientXmlException : public Exception {
public:
    CIMClientXmlException(const String& message);
};

/// The response does not answer the request that was sent.
class PEGASUS_CLIENT_LINKAGE CIMClientResponseException : public Exception {
public:
    CIMClientResponseException(const String& message);
};

PEGASUS_NAMESPACE_END

#endif
