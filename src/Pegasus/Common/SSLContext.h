#ifndef Pegasus_SSLContext_h
#define Pegasus_SSLContext_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class SSLCertificateInfo;

/// A certificate verification callback of OpenPegasus's interface. Verification here is by the
/// trust store only: a client connection given a callback is refused with SSLException.
typedef Boolean(SSLCertificateVerifyFunction)(SSLCertificateInfo& certInfo);

/// What a client's HTTPS connection trusts and presents: the trust store that the server's
/// certificate must verify against (a PEM file of CA or self-signed certificates, or a directory
/// of them), and optionally the client's own certificate and key for certificate authentication.
/// Paths are read when a connection opens. Verification of the server is on when a trust store
/// is given; the server's host name must then match its certificate too.
class PEGASUS_COMMON_LINKAGE SSLContext {
public:
    /// `randomFile` is accepted and unused: the TLS library seeds itself from the system.
    SSLContext(const String& trustStore, SSLCertificateVerifyFunction* verifyCert,
               const String& randomFile = String::EMPTY);

    SSLContext(const String& trustStore, const String& certPath, const String& keyPath,
               SSLCertificateVerifyFunction* verifyCert, const String& randomFile);

    SSLContext(const String& trustStore, const String& certPath, const String& keyPath,
               const String& crlPath, SSLCertificateVerifyFunction* verifyCert,
               const String& randomFile);

    SSLContext(const SSLContext& sslContext);
    ~SSLContext();

    String getTrustStore() const;
    String getCertPath() const;
    String getKeyPath() const;
    String getCRLPath() const;

    /// True when a trust store or a callback was given.
    Boolean isPeerVerificationEnabled() const;

    SSLCertificateVerifyFunction* getSSLCertificateVerifyFunction() const;

private:
    SSLContext& operator=(const SSLContext&) = delete;

    String _trustStore;
    String _certPath;
    String _keyPath;
    String _crlPath;
    SSLCertificateVerifyFunction* _verifyCert;
};

PEGASUS_NAMESPACE_END

#endif
