#pragma once

/// What every TLS connection begins with: the lowest version, the verification of the peer, and the
/// certificates that are trusted.
///
/// Threads: any.

#include <boost/asio/ssl/context.hpp>
#include <stdexcept>

namespace tarnwell {

/// SSL_CERT_FILE cannot be what is to be trusted. `what()` is a text for the user.
struct TrustError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A client's context: at least TLS 1.2, and a certificate chain that ends in what OpenSSL trusts by default,
/// or in SSL_CERT_FILE and SSL_CERT_DIR. A file that cannot be read only means fewer trusted certificates.
/// Throws `TrustError` when SSL_CERT_FILE names something else than a regular file, or nothing that is there;
/// an empty SSL_CERT_FILE is none. Making one takes about a millisecond.
boost::asio::ssl::context newTLSContext();

}  // namespace tarnwell
