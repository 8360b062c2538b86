#include "IMAP/Connection/TLSContext.h"

#include <openssl/err.h>
#include <openssl/x509.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace tarnwell {

namespace {

namespace fs = std::filesystem;
namespace ssl = boost::asio::ssl;

std::string environmentValue(const char* name, const std::string& otherwise) {
  const char* value = std::getenv(name);
  return value ? value : otherwise;
}

bool holdsHashedCertificates(const std::string& directory) {
  std::error_code failed;  // after a failure there are no entries
  return std::ranges::any_of(fs::directory_iterator(directory, failed), [](const fs::directory_entry& entry) {
    return entry.path().extension() == ".0";
  });
}

}  // namespace

ssl::context newTLSContext() {
  ssl::context context(ssl::context::tls_client);
  context.set_verify_mode(ssl::verify_peer);
  SSL_CTX_set_min_proto_version(context.native_handle(), TLS1_2_VERSION);

  // OpenSSL looks into a directory of hashed names only when it needs a certificate. Reading the system's
  // file of all certificates takes 23 ms. So that file is read only when there is no such directory.
  const std::string namedFile = environmentValue(X509_get_default_cert_file_env(), "");
  std::error_code missing;
  if (!namedFile.empty() &&
      !fs::is_regular_file(namedFile, missing)) {  // OpenSSL would wait for the writer of a pipe
    throw TrustError("SSL_CERT_FILE names no regular file (" + namedFile + ")");
  }
  const std::string file = namedFile.empty() ? X509_get_default_cert_file() : namedFile;
  SSL_CTX_set_default_verify_dir(context.native_handle());
  if (!namedFile.empty() || !holdsHashedCertificates(environmentValue(X509_get_default_cert_dir_env(),
                                                                      X509_get_default_cert_dir()))) {
    SSL_CTX_load_verify_file(context.native_handle(), file.c_str());
  }
  ERR_clear_error();
  return context;
}

}  // namespace tarnwell
