#pragma once

/// What the TLS connections of the process have in common: the lowest version, the verification of the peer,
/// and the certificates that are trusted.
///
/// Making a context and reading an authority's certificate takes about a millisecond, so one is kept.
///
/// Threads: any.

#include <boost/asio/ssl/context.hpp>
#include <memory>
#include <stdexcept>

namespace tarnwell {

/// SSL_CERT_FILE cannot be what is to be trusted. `what()` is a text for the user.
struct TrustError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A client's context: at least TLS 1.2, and a certificate chain that ends in what OpenSSL trusts by default,
/// or in SSL_CERT_FILE and SSL_CERT_DIR. The next call makes another one when these name other places, when
/// the file or the directory is not the one that it was, and when something could not be read. A file that is
/// rewritten in its place inside of the directory is not noticed. Throws `TrustError` when SSL_CERT_FILE
/// names something else than a regular file, or nothing that is there; an empty SSL_CERT_FILE is none.
std::shared_ptr<boost::asio::ssl::context> sharedTLSContext();

}  // namespace tarnwell
