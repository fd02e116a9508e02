// Throwaway certificates made at test time (GnuTLS), so that no key is ever committed.
#ifndef KSV_TESTS_SUPPORT_TESTCERTIFICATES_H
#define KSV_TESTS_SUPPORT_TESTCERTIFICATES_H

#include <string>

namespace ksv::test {

struct CertificateFiles {
    std::string certificate;
    std::string key;
};

// A self-signed certificate for 127.0.0.1 and its key, as <directory>/<name>-cert.pem and
// -key.pem, valid from `validFrom` to `validUntil` seconds from now.
CertificateFiles makeCertificate(const std::string& directory, const std::string& name,
                                 long validFrom = -60, long validUntil = 86400);

} // namespace ksv::test

#endif
