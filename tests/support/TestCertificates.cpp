#include "support/TestCertificates.h"

#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace tarnwell::test {

namespace {

void require(bool condition, const char* what) {
  if (!condition) {
    throw std::runtime_error(std::string("test certificate: ") + what);
  }
}

void addExtension(X509* certificate, int kind, const std::string& value) {
  X509V3_CTX context;
  X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
  X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str());
  require(extension, "extension");
  X509_add_ext(certificate, extension, -1);
  X509_EXTENSION_free(extension);
}

TestCertificates::Key newKey() { return {EVP_EC_gen("P-256"), EVP_PKEY_free}; }

TestCertificates::Certificate newCertificate(const char* name, EVP_PKEY* key, int validFrom, int validUntil) {
  static long serialNumber = 1;
  TestCertificates::Certificate certificate(X509_new(), X509_free);
  constexpr long day = 86400;
  X509_set_version(certificate.get(), X509_VERSION_3);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), serialNumber++);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), validFrom * day);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), validUntil * day);
  X509_set_pubkey(certificate.get(), key);
  X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_ASC,
                             reinterpret_cast<const unsigned char*>(name), -1, -1, 0);
  return certificate;
}

TestCertificates::Identity newAuthority() {
  TestCertificates::Identity authority{newKey(), {nullptr, X509_free}};
  authority.certificate = newCertificate("Test authority", authority.key.get(), -1, 30);
  X509* certificate = authority.certificate.get();
  X509_set_issuer_name(certificate, X509_get_subject_name(certificate));
  addExtension(certificate, NID_basic_constraints, "critical,CA:TRUE");
  addExtension(certificate, NID_key_usage, "critical,keyCertSign,cRLSign");
  require(X509_sign(certificate, authority.key.get(), EVP_sha256()) != 0, "signature");
  return authority;
}

std::filesystem::path newDirectory() {
  std::string pattern = std::filesystem::temp_directory_path() / "tarnwell-ca-XXXXXX";
  require(mkdtemp(pattern.data()), "directory");
  return pattern;
}

}  // namespace

TestCertificates::TestCertificates() : directory_(newDirectory()), authority_(newAuthority()) {
  const std::string path = directory_ / "ca.pem";
  std::FILE* file = std::fopen(path.c_str(), "w");
  require(file, "file");
  PEM_write_X509(file, authority_.certificate.get());
  std::fclose(file);
  setenv("SSL_CERT_FILE", path.c_str(), 1);
  setenv("SSL_CERT_DIR", (directory_ / "none").c_str(), 1);
}

TestCertificates::~TestCertificates() {
  std::error_code ignored;
  std::filesystem::remove_all(directory_, ignored);
}

TestCertificates::Identity TestCertificates::serverIdentity(const CertificateOptions& options) const {
  Identity identity{newKey(), {nullptr, X509_free}};
  identity.certificate =
      newCertificate("Test server", identity.key.get(), options.validFrom, options.validUntil);
  X509* certificate = identity.certificate.get();
  const Identity& issuer = options.selfSigned ? identity : authority_;
  X509_set_issuer_name(certificate, X509_get_subject_name(issuer.certificate.get()));
  addExtension(certificate, NID_subject_alt_name, options.subjectAltName);
  addExtension(certificate, NID_ext_key_usage, "serverAuth");
  require(X509_sign(certificate, issuer.key.get(), EVP_sha256()) != 0, "signature");
  return identity;
}

const TestCertificates& TestCertificates::shared() {
  static const TestCertificates certificates;
  return certificates;
}

}  // namespace tarnwell::test
