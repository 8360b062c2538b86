#pragma once

/// A certificate authority for tests, and server certificates of every kind.
///
/// The constructor makes a private directory. It sets SSL_CERT_FILE to the authority's certificate and
/// SSL_CERT_DIR to a place that does not exist. The program under test then trusts only this authority.

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <filesystem>
#include <memory>
#include <string>

namespace tarnwell::test {

struct CertificateOptions {
  /// In the form of a subjectAltName extension.
  std::string subjectAltName = "DNS:localhost,IP:127.0.0.1";
  /// Relative to now, in days.
  int validFrom = -1;
  int validUntil = 30;
  bool selfSigned = false;
};

class TestCertificates {
 public:
  using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
  using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

  struct Identity {
    Key key;
    Certificate certificate;
  };

  TestCertificates();
  ~TestCertificates();
  TestCertificates(const TestCertificates&) = delete;
  TestCertificates& operator=(const TestCertificates&) = delete;

  Identity serverIdentity(const CertificateOptions& options = {}) const;

  /// The certificates of the whole test program.
  static const TestCertificates& shared();

 private:
  std::filesystem::path directory_;
  Identity authority_;
};

}  // namespace tarnwell::test
