#include <Pegasus/Common/SSLContext.h>

PEGASUS_NAMESPACE_BEGIN

SSLContext::SSLContext(const String& trustStore, SSLCertificateVerifyFunction* verifyCert,
                       const String&)
    : _trustStore(trustStore), _verifyCert(verifyCert) {}

SSLContext::SSLContext(const String& trustStore, const String& certPath, const String& keyPath,
                       SSLCertificateVerifyFunction* verifyCert, const String&)
    : _trustStore(trustStore), _certPath(certPath), _keyPath(keyPath), _verifyCert(verifyCert) {}

SSLContext::SSLContext(const String& trustStore, const String& certPath, const String& keyPath,
                       const String& crlPath, SSLCertificateVerifyFunction* verifyCert,
                       const String&)
    : _trustStore(trustStore), _certPath(certPath), _keyPath(keyPath), _crlPath(crlPath),
      _verifyCert(verifyCert) {}

SSLContext::SSLContext(const SSLContext& sslContext) = default;

SSLContext::~SSLContext() = default;

String SSLContext::getTrustStore() const {
    return _trustStore;
}

String SSLContext::getCertPath() const {
    return _certPath;
}

String SSLContext::getKeyPath() const {
    return _keyPath;
}

String SSLContext::getCRLPath() const {
    return _crlPath;
}

Boolean SSLContext::isPeerVerificationEnabled() const {
    return _trustStore.size() != 0 || _verifyCert != nullptr;
}

SSLCertificateVerifyFunction* SSLContext::getSSLCertificateVerifyFunction() const {
    return _verifyCert;
}

PEGASUS_NAMESPACE_END
