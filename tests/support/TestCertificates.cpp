#include "TestCertificates.h"

#include <gnutls/gnutls.h>
#include <gnutls/x509.h>

#include <ctime>
#include <fstream>
#include <stdexcept>

namespace ksv::test {

namespace {

void check(int result, const char* what) {
    if (result < 0)
        throw std::runtime_error(std::string(what) + ": " + gnutls_strerror(result));
}

void writePem(const std::string& path, gnutls_datum_t data) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data.data), data.size);
    gnutls_free(data.data);
}

} // namespace

CertificateFiles makeCertificate(const std::string& directory, const std::string& name,
                                 long validFrom, long validUntil) {
    static unsigned serial = 1;
    const unsigned char loopback[] = {127, 0, 0, 1};
    gnutls_x509_privkey_t key = nullptr;
    gnutls_x509_crt_t certificate = nullptr;
    check(gnutls_x509_privkey_init(&key), "key");
    check(gnutls_x509_privkey_generate(key, GNUTLS_PK_ECDSA,
                                       GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1), 0),
          "key generation");
    check(gnutls_x509_crt_init(&certificate), "certificate");
    const std::time_t now = std::time(nullptr);
    ++serial;
    check(gnutls_x509_crt_set_version(certificate, 3), "version");
    check(gnutls_x509_crt_set_serial(certificate, &serial, sizeof serial), "serial");
    check(gnutls_x509_crt_set_activation_time(certificate, now + validFrom), "activation");
    check(gnutls_x509_crt_set_expiration_time(certificate, now + validUntil), "expiration");
    check(gnutls_x509_crt_set_dn_by_oid(certificate, GNUTLS_OID_X520_COMMON_NAME, 0, name.data(),
                                        name.size()),
          "name");
    check(gnutls_x509_crt_set_subject_alt_name(certificate, GNUTLS_SAN_IPADDRESS, loopback,
                                               sizeof loopback, GNUTLS_FSAN_SET),
          "address");
    check(gnutls_x509_crt_set_basic_constraints(certificate, 1, -1), "constraints");
    check(gnutls_x509_crt_set_key(certificate, key), "public key");
    check(gnutls_x509_crt_sign2(certificate, certificate, key, GNUTLS_DIG_SHA256, 0), "signing");
    CertificateFiles files{directory + "/" + name + "-cert.pem",
                           directory + "/" + name + "-key.pem"};
    gnutls_datum_t pem{};
    check(gnutls_x509_crt_export2(certificate, GNUTLS_X509_FMT_PEM, &pem), "export");
    writePem(files.certificate, pem);
    check(gnutls_x509_privkey_export2(key, GNUTLS_X509_FMT_PEM, &pem), "key export");
    writePem(files.key, pem);
    gnutls_x509_crt_deinit(certificate);
    gnutls_x509_privkey_deinit(key);
    return files;
}

} // namespace ksv::test
