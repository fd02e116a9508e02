#ifndef Pegasus_CIMXmlHttpConnection_h
#define Pegasus_CIMXmlHttpConnection_h

#include <Pegasus/Common/Config.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

/// Where a CIM-XML client connection goes.
struct CIMXmlEndpoint {
    /// "http://host:port/cimom", or "http://localhost/cimom" over a Unix socket.
    std::string url;
    /// Non-empty for a Unix socket.
    std::string socketPath;
    /// HTTPS only, paths as SSLContext takes them: the server's certificate is verified against
    /// the trust store, with its host name, when the trust store is not empty; the client's own
    /// certificate and key are presented when given.
    std::string trustStore;
    std::string crlPath;
    std::string certificatePath;
    std::string keyPath;
    /// Basic authentication is sent only when the user name is not empty.
    std::string userName;
    std::string password;
    /// "host:port" or the socket path, for messages.
    std::string description;
};

/// One HTTP/1.1 connection, kept alive across posts. Not thread-safe; one per client.
class CIMXmlHttpConnection {
public:
    struct Reply {
        long status = 0;
        std::string reason;
        /// Header and trailer fields by lower-case name.
        std::map<std::string, std::string> fields;
        std::string body;

        /// The field's value, empty when absent.
        std::string field(const std::string& lowerCaseName) const;
    };

    /// Largest response body accepted.
    static constexpr size_t kMaxResponseBytes = size_t(1) << 30;

    explicit CIMXmlHttpConnection(CIMXmlEndpoint endpoint);
    ~CIMXmlHttpConnection();

    /// Opens and closes one connection to check that the server is there; throws
    /// CannotConnectException otherwise.
    void probe(Uint32 timeoutMilliseconds) const;

    /// POSTs `body` with the given extra header lines and returns the server's reply. Throws
    /// CannotConnectException when the connection fails, ConnectionTimeoutException after
    /// `timeoutMilliseconds` (0: none), CIMClientMalformedHTTPException for a reply that is not
    /// HTTP, CIMClientResponseException for one larger than kMaxResponseBytes.
    Reply post(const std::string& body, const std::vector<std::string>& headerLines,
               Uint32 timeoutMilliseconds);

    /// Closes the connection; a later post() throws NotConnectedException.
    void close();

private:
    CIMXmlHttpConnection(const CIMXmlHttpConnection&) = delete;
    CIMXmlHttpConnection& operator=(const CIMXmlHttpConnection&) = delete;

    CIMXmlEndpoint _endpoint;
    struct Handle;
    std::unique_ptr<Handle> _handle;
};

PEGASUS_NAMESPACE_END

#endif
