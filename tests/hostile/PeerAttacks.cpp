/// Attacks by the peer on the port: certificates, versions of TLS, no TLS. None of them may receive data of
/// the user.

#include <openssl/ssl.h>

#include "hostile/ServerAttack.h"

namespace tarnwell::test {

namespace {

std::string refusal(const std::string& reason) {
  return "Could not connect to the IMAP server: localhost:PORT: " + reason;
}

std::string untrusted(const std::string& reason) {
  return refusal("the server's certificate is not accepted (" + reason + ")");
}

}  // namespace

std::vector<Attack> peerAttacks() {
  return byServer({
      {.name = "certificateForAnotherHost",
       .attack = "a trusted certificate, but for another host",
       .outcome = "names the mismatch; no login is sent",
       .options = {.certificate = {.subjectAltName = "DNS:imap.example.org"}},
       .error = untrusted("hostname mismatch"),
       .isBrokenOff = true},
      {.name = "expiredCertificate",
       .attack = "a certificate that expired yesterday",
       .outcome = "says so; no login is sent",
       .options = {.certificate = {.validFrom = -30, .validUntil = -1}},
       .error = untrusted("certificate has expired"),
       .isBrokenOff = true},
      {.name = "selfSignedCertificate",
       .attack = "a certificate that the server signed itself",
       .outcome = "says so; no login is sent",
       .options = {.certificate = {.selfSigned = true}},
       .error = untrusted("self-signed certificate"),
       .isBrokenOff = true},
      {.name = "outdatedTLS",
       .attack = "a server that speaks TLS 1.1 at most",
       .outcome = "says that TLS failed; no login is sent",
       .options = {.maximumTLSVersion = TLS1_1_VERSION},
       .error = refusal("TLS failed (tlsv1 alert protocol version (SSL routines))"),
       .isBrokenOff = true},
      {.name = "noTLS",
       .attack = "a server without TLS, which greets in plain text",
       .outcome = "says that TLS failed; no login is sent",
       .dialogue = {answer("* OK ready\r\n")},
       .options = {.plainText = true},
       .error = refusal("TLS failed (wrong version number (SSL routines))"),
       .isBrokenOff = true},
  });
}

}  // namespace tarnwell::test
