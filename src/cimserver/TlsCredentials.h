// What the HTTPS listener needs from GnuTLS: the server's certificate and key, read from their
// files, and the client certificates trusted to stand for array users, much as a CIM server's
// trust store maps each registered certificate to a user.
#ifndef KSV_CIMSERVER_TLSCREDENTIALS_H
#define KSV_CIMSERVER_TLSCREDENTIALS_H

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace ksv::server {

struct TlsSettings {
    bool enabled = false;
    // 0 lets the system choose.
    std::uint16_t port = 5989;
    // PEM files.
    std::string certificateFile;
    std::string keyFile;
    // "USER=FILE": a client presenting the certificate in FILE, or one that FILE's certificate
    // issued, is USER without a password.
    std::vector<std::string> clientCertificates;
};

class TlsConfigurationError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class TlsCredentials {
public:
    // Reads every file; TlsConfigurationError names the one that is missing or not PEM. The
    // error never quotes a file's content.
    explicit TlsCredentials(const TlsSettings& settings);
    ~TlsCredentials();
    TlsCredentials(const TlsCredentials&) = delete;
    TlsCredentials& operator=(const TlsCredentials&) = delete;

    const std::string& certificatePem() const { return _certificatePem; }
    const std::string& keyPem() const { return _keyPem; }
    // Every trusted client certificate; empty when clients are not asked for one.
    const std::string& clientTrustPem() const { return _clientTrustPem; }

    // The user of the client certificate the session presented, when it verifies against the
    // trusted certificates and one of them is it or issued it. `session` is a gnutls_session_t.
    std::optional<std::string> userOf(void* session) const;

private:
    struct TrustedClient;

    std::string _certificatePem;
    std::string _keyPem;
    std::string _clientTrustPem;
    std::vector<TrustedClient> _clients;
};

} // namespace ksv::server

#endif
