#include "IMAP/Connection/TLSContext.h"

#include <openssl/err.h>
#include <openssl/x509.h>
#include <sys/stat.h>

#include <cstdint>
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

std::optional<std::string> environmentValue(const char* name) {
  const char* value = std::getenv(name);
  return value ? std::optional<std::string>(value) : std::nullopt;
}

std::optional<std::string> namedCertificates() {
  std::optional<std::string> name = environmentValue(X509_get_default_cert_file_env());
  return name && !name->empty() ? std::move(name) : std::nullopt;
}

/// Shows whether a file or directory was replaced or changed. All zeros when it does not exist.
struct Version {
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  std::int64_t statusChange = 0;  // seconds since 1970
  bool isRegularFile = false;
  std::filesystem::file_time_type contentChange = {};

  bool operator==(const Version&) const = default;
};

Version versionOf(const std::string& path) {
  struct stat status{};
  if (::stat(path.c_str(), &status) < 0) {
    return {};
  }
  std::error_code failed;
  return {status.st_ino, status.st_size, status.st_ctime, S_ISREG(status.st_mode),
          std::filesystem::last_write_time(path, failed)};
}

/// Where OpenSSL looks for trusted certificates, and the versions of those places.
struct TrustStore {
  std::optional<std::string> namedFile = namedCertificates();
  std::string file = namedFile.value_or(X509_get_default_cert_file());
  std::string directory =
      environmentValue(X509_get_default_cert_dir_env()).value_or(X509_get_default_cert_dir());
  Version fileVersion = versionOf(file);
  Version directoryVersion = versionOf(directory);

  bool operator==(const TrustStore&) const = default;
  /// False for a list of directories. Their versions are not checked.
  bool isOneDirectory() const { return directory.find(':') == std::string::npos; }
};

bool holdsHashedCertificates(const std::string& directory) {
  std::error_code failed;  // after a failure the iterator is at its end
  for (std::filesystem::directory_iterator entry(directory, failed), end; entry != end;
       entry.increment(failed)) {
    if (entry->path().extension() == ".0") {
      return true;
    }
  }
  return false;
}

/// Trusts what OpenSSL trusts by default, but reads the system's bundle (23 ms) only when there is no hashed
/// directory. OpenSSL searches a hashed directory only when it needs a certificate. False when a file could
/// not be read; then fewer certificates are trusted.
bool trust(SSL_CTX* context, const TrustStore& store) {
  SSL_CTX_set_default_verify_dir(context);
  const bool needsFile = store.namedFile || !holdsHashedCertificates(store.directory);
  const bool isComplete = !needsFile || SSL_CTX_load_verify_file(context, store.file.c_str()) == 1;
  ERR_clear_error();
  return isComplete;
}

}  // namespace

std::shared_ptr<ssl::context> sharedTLSContext() {
  struct Shared {
    std::mutex mutex;
    std::shared_ptr<ssl::context> context;
    TrustStore store;
  };
  static Shared& shared = *new Shared;  // never destroyed, because OpenSSL cleans up earlier

  const std::lock_guard oneAtATime(shared.mutex);
  TrustStore store;
  if (store.namedFile && !store.fileVersion.isRegularFile) {  // on a pipe OpenSSL would wait for a writer
    throw TrustError("SSL_CERT_FILE names no regular file (" + store.file + ")");
  }
  if (shared.context && store == shared.store) {
    return shared.context;
  }
  auto context = std::make_shared<ssl::context>(ssl::context::tls_client);
  context->set_verify_mode(ssl::verify_peer);
  SSL_CTX_set_min_proto_version(context->native_handle(), TLS1_2_VERSION);
  const bool isComplete = trust(context->native_handle(), store);
  shared.context = isComplete && store.isOneDirectory() ? context : nullptr;
  shared.store = std::move(store);
  return context;
}

}  // namespace tarnwell
