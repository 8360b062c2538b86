#pragma once

/// A certificate authority of the test's own, and server certificates of every kind.
///
/// Constructing one makes a private directory and points SSL_CERT_FILE at the authority's certificate (and
/// SSL_CERT_DIR at nothing), so that the program under test trusts it and nothing else.

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <filesystem>
#include <memory>
#include <string>

namespace tarnwell::test {

struct CertificateOptions {
  /// As in a subjectAltName extension.
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

  /// One for the whole test program.
  static const TestCertificates& shared();

 private:
  std::filesystem::path directory_;
  Identity authority_;
};

}  // namespace tarnwell::test
