#pragma once

/// The settings of every TLS connection: the lowest version, the verification of the peer, and the trusted
/// certificates.
///
/// Threads: any.

#include <boost/asio/ssl/context.hpp>
#include <stdexcept>

namespace tarnwell {

/// SSL_CERT_FILE does not name a regular file. `what()` is a text for the user.
struct TrustError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Makes a client's context in about a millisecond. The context requires TLS 1.2 or later. The certificate
/// chain must end in a certificate that OpenSSL trusts by default, or that SSL_CERT_FILE or SSL_CERT_DIR
/// provides. A file that cannot be read only means fewer trusted certificates. Throws `TrustError` when
/// SSL_CERT_FILE names a missing file or something other than a regular file. An empty SSL_CERT_FILE counts
/// as unset.
boost::asio::ssl::context newTLSContext();

}  // namespace tarnwell
