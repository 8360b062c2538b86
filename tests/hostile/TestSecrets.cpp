#include "hostile/TestSecrets.h"

#include "integration/FakeSecretService.h"
#include "support/FakeIMAPServer.h"

namespace tarnwell::test {

namespace {

/// The password as GVariant writes bytes.
std::string byteList(std::string_view text) {
  std::string list;
  for (const char byte : text) {
    list += (list.empty() ? "byte " : ", ") + std::to_string(static_cast<unsigned char>(byte));
  }
  return "[" + list + "]";
}

FakeSecretService::Answers onePassword() {
  FakeSecretService::Answers answers = FakeSecretService::oneItem();
  answers["GetAll /collection/item"] =
      std::string("({'Attributes': <{'service': 'app.tarnwell.Tarnwell', 'account': '") + testEmail +
      "'}>, 'Label': <'Tarnwell'>, 'Locked': <false>, 'Created': <uint64 1>, 'Modified': <uint64 1>},)";
  answers["GetSecret"] = "((objectpath '/session', @ay [], " + byteList(testPassword) + ", 'text/plain'),)";
  return answers;
}

struct SecretsOnABus {
  PrivateBus bus;
  FakeSecretService service{bus, onePassword()};
};

}  // namespace

std::string busWithPassword() {
  static const SecretsOnABus secrets;
  return secrets.bus.address();
}

}  // namespace tarnwell::test
