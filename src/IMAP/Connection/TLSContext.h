#pragma once

/// The settings that all TLS connections of the process share: the lowest version, the verification of the
/// peer and the trusted certificates.
///
/// It takes about a millisecond to make a context and to read an authority's certificate, so one is kept.
///
/// Threads: any.

#include <boost/asio/ssl/context.hpp>
#include <memory>
#include <stdexcept>

namespace tarnwell {

/// SSL_CERT_FILE cannot be used as the trusted certificates. `what()` is a text for the user.
struct TrustError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A context for clients. It requires TLS 1.2 or later and a certificate chain to a certificate that OpenSSL
/// trusts by default, or to one in SSL_CERT_FILE or SSL_CERT_DIR.
///
/// A call makes a new context when these variables changed, when the file or the directory was replaced or
/// changed, when something could not be read, or when SSL_CERT_DIR is a list of directories. It does not
/// notice a file inside the directory that was rewritten in place. Throws `TrustError` when SSL_CERT_FILE
/// does not name an existing regular file. An empty SSL_CERT_FILE counts as unset.
std::shared_ptr<boost::asio::ssl::context> sharedTLSContext();

}  // namespace tarnwell
