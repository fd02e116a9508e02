#include "cimserver/TlsCredentials.h"

#include <gnutls/gnutls.h>
#include <gnutls/x509.h>

#include <fstream>
#include <memory>
#include <sstream>

namespace ksv::server {

namespace {

using Certificate = std::unique_ptr<gnutls_x509_crt_int, decltype(&gnutls_x509_crt_deinit)>;

std::string readFile(const std::string& path, const char* what) {
    if (path.empty())
        throw TlsConfigurationError(std::string("HTTPS needs ") + what);
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file || text.str().empty())
        throw TlsConfigurationError(std::string("cannot read ") + what + " " + path);
    return text.str();
}

Certificate importCertificate(const gnutls_datum_t& data, gnutls_x509_crt_fmt_t format) {
    gnutls_x509_crt_t raw = nullptr;
    if (gnutls_x509_crt_init(&raw) != GNUTLS_E_SUCCESS)
        return Certificate(nullptr, &gnutls_x509_crt_deinit);
    Certificate certificate(raw, &gnutls_x509_crt_deinit);
    if (gnutls_x509_crt_import(raw, &data, format) != GNUTLS_E_SUCCESS)
        certificate.reset();
    return certificate;
}

Certificate parsePem(const std::string& pem, const std::string& path) {
    gnutls_datum_t data{reinterpret_cast<unsigned char*>(const_cast<char*>(pem.data())),
                        static_cast<unsigned>(pem.size())};
    Certificate certificate = importCertificate(data, GNUTLS_X509_FMT_PEM);
    if (!certificate)
        throw TlsConfigurationError(path + " holds no PEM certificate");
    return certificate;
}

// The key is checked here so that a wrong file is reported by name, not by the TLS library.
void checkKey(const std::string& pem, const std::string& path) {
    gnutls_x509_privkey_t key = nullptr;
    gnutls_x509_privkey_init(&key);
    gnutls_datum_t data{reinterpret_cast<unsigned char*>(const_cast<char*>(pem.data())),
                        static_cast<unsigned>(pem.size())};
    int result = gnutls_x509_privkey_import(key, &data, GNUTLS_X509_FMT_PEM);
    gnutls_x509_privkey_deinit(key);
    if (result != GNUTLS_E_SUCCESS)
        throw TlsConfigurationError(path + " holds no unencrypted PEM private key");
}

// The peer's own certificate once GnuTLS has verified its chain against the trusted ones.
Certificate verifiedPeer(gnutls_session_t session) {
    Certificate none(nullptr, &gnutls_x509_crt_deinit);
    unsigned status = 0;
    if (gnutls_certificate_type_get(session) != GNUTLS_CRT_X509 ||
        gnutls_certificate_verify_peers2(session, &status) != GNUTLS_E_SUCCESS || status != 0)
        return none;
    unsigned count = 0;
    const gnutls_datum_t* chain = gnutls_certificate_get_peers(session, &count);
    if (chain == nullptr || count == 0)
        return none;
    return importCertificate(chain[0], GNUTLS_X509_FMT_DER);
}

} // namespace

struct TlsCredentials::TrustedClient {
    std::string userName;
    Certificate certificate;
};

TlsCredentials::TlsCredentials(const TlsSettings& settings)
    : _certificatePem(readFile(settings.certificateFile, "a certificate file")),
      _keyPem(readFile(settings.keyFile, "a private key file")) {
    parsePem(_certificatePem, settings.certificateFile);
    checkKey(_keyPem, settings.keyFile);
    for (const std::string& entry : settings.clientCertificates) {
        std::string::size_type equals = entry.find('=');
        if (equals == 0 || equals == std::string::npos || equals + 1 == entry.size())
            throw TlsConfigurationError("client certificate \"" + entry + "\" is not USER=FILE");
        const std::string path = entry.substr(equals + 1);
        std::string pem = readFile(path, "a client certificate file");
        _clients.push_back({entry.substr(0, equals), parsePem(pem, path)});
        _clientTrustPem += pem + (pem.back() == '\n' ? "" : "\n");
    }
}

TlsCredentials::~TlsCredentials() = default;

std::optional<std::string> TlsCredentials::userOf(void* session) const {
    if (_clients.empty())
        return std::nullopt;
    Certificate peer = verifiedPeer(static_cast<gnutls_session_t>(session));
    if (!peer)
        return std::nullopt;
    for (const TrustedClient& client : _clients) {
        if (gnutls_x509_crt_equals(peer.get(), client.certificate.get()) != 0 ||
            gnutls_x509_crt_check_issuer(peer.get(), client.certificate.get()) != 0)
            return client.userName;
    }
    return std::nullopt;
}

} // namespace ksv::server
