#ifndef Pegasus_CIMXmlClientBackend_h
#define Pegasus_CIMXmlClientBackend_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/SSLContext.h>
#include <Pegasus/Client/CIMClientBackend.h>
#include <Pegasus/Client/Linkage.h>

#include <memory>

PEGASUS_NAMESPACE_BEGIN

/// The CIM-XML transport behind CIMClient: each operation is one HTTP/1.1 POST of a CIM-XML
/// request (DSP0200/DSP0201), over one kept-alive connection per client.
///
/// These are the connector registry's factories until others are registered:
/// CIMClient::connect() opens TCP to host:port with HTTP Basic authentication (none when the
/// user name is empty); CIMClient::connectLocal() opens the CIM server's local Unix socket,
/// without credentials, since the server knows the local user from the socket's peer.
///
/// Errors: a refused or failed connection throws CannotConnectException (at connect time too,
/// where the server is probed once); an operation exceeding the client's time-out throws
/// ConnectionTimeoutException; an HTTP status other than 200 (401 for refused credentials)
/// throws CIMClientHTTPErrorException with the status and the CIMError header; an ERROR in the
/// response is rethrown as CIMException with its code and description; a body that is not a
/// CIM-XML response throws CIMClientXmlException, and one that answers another request
/// CIMClientResponseException.
class PEGASUS_CLIENT_LINKAGE CIMXmlClientConnector {
public:
    CIMXmlClientConnector() = delete;

    /// The socket connectLocal() uses: $KSV_CIMSERVER_SOCKET when set and not empty, else
    /// "/tmp/ksv-cimserver.socket".
    static String localSocketPath();

    static std::unique_ptr<CIMClientBackend> connectLocal();
    /// Like connectLocal(), to the server listening on `socketPath`.
    static std::unique_ptr<CIMClientBackend> connectUnixSocket(const String& socketPath);
    static std::unique_ptr<CIMClientBackend> connectRemote(const String& host, Uint32 portNumber,
                                                           const String& userName,
                                                           const String& password);
    /// Like connectRemote(), over HTTPS as the context says. SSLException for a context with
    /// a verification callback, which this transport cannot call.
    static std::unique_ptr<CIMClientBackend>
    connectRemoteSecure(const String& host, Uint32 portNumber, const SSLContext& sslContext,
                        const String& userName, const String& password);
};

PEGASUS_NAMESPACE_END

#endif
