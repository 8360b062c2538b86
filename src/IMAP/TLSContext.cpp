#include "IMAP/TLSContext.h"

#include <openssl/err.h>
#include <openssl/x509.h>

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace tarnwell {

namespace {

namespace ssl = boost::asio::ssl;
using Time = std::filesystem::file_time_type;

std::optional<std::string> environmentValue(const char* name) {
  const char* value = std::getenv(name);
  return value ? std::optional<std::string>(value) : std::nullopt;
}

Time lastChange(const std::string& path) {
  std::error_code failed;
  const Time time = std::filesystem::last_write_time(path, failed);
  return failed ? Time::min() : time;
}

/// Where OpenSSL looks for trusted certificates, and when these places were last changed.
struct TrustStore {
  std::optional<std::string> namedFile = environmentValue(X509_get_default_cert_file_env());
  std::string directory =
      environmentValue(X509_get_default_cert_dir_env()).value_or(X509_get_default_cert_dir());
  Time fileTime = lastChange(namedFile.value_or(X509_get_default_cert_file()));
  Time directoryTime = lastChange(directory);

  bool operator==(const TrustStore&) const = default;
};

bool holdsHashedCertificates(const std::string& directory) {
  std::error_code failed;  // then the iterator is at its end
  for (std::filesystem::directory_iterator entry(directory, failed), end; entry != end;
       entry.increment(failed)) {
    if (entry->path().extension() == ".0") {
      return true;
    }
  }
  return false;
}

/// Trusts what OpenSSL would trust by default, but reads the system's bundle (23 ms) only when there is no
/// hashed directory, which is searched when a certificate is needed and costs nothing before.
void trust(SSL_CTX* context, const TrustStore& store) {
  SSL_CTX_set_default_verify_dir(context);
  if (store.namedFile || !holdsHashedCertificates(store.directory)) {
    SSL_CTX_set_default_verify_file(context);
  }
  ERR_clear_error();  // a missing file only means fewer trusted certificates
}

}  // namespace

std::shared_ptr<ssl::context> sharedTLSContext() {
  struct Shared {
    std::mutex mutex;
    std::shared_ptr<ssl::context> context;
    TrustStore store;
  };
  static Shared& shared = *new Shared;  // never destroyed: OpenSSL cleans itself up before that

  const std::lock_guard oneAtATime(shared.mutex);
  if (TrustStore store; !shared.context || store != shared.store) {
    const auto context = std::make_shared<ssl::context>(ssl::context::tls_client);
    context->set_verify_mode(ssl::verify_peer);
    SSL_CTX_set_min_proto_version(context->native_handle(), TLS1_2_VERSION);
    trust(context->native_handle(), store);
    shared.context = context;
    shared.store = std::move(store);
  }
  return shared.context;
}

}  // namespace tarnwell
