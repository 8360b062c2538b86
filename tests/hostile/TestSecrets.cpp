#include "hostile/TestSecrets.h"

#include "support/FakeIMAPServer.h"

namespace tarnwell::test {

std::string byteList(std::string_view text) {
  std::string list;
  for (const char byte : text) {
    list += (list.empty() ? "byte " : ", ") + std::to_string(static_cast<unsigned char>(byte));
  }
  return "[" + list + "]";
}

FakeSecretService::Answers passwordAnswers(std::string_view password) {
  FakeSecretService::Answers answers = FakeSecretService::oneItem();
  answers["GetAll /collection/item"] =
      std::string("({'Attributes': <{'service': 'app.tarnwell.Tarnwell', 'account': '") + testEmail +
      "'}>, 'Label': <'Tarnwell'>, 'Locked': <false>, 'Created': <uint64 1>, 'Modified': <uint64 1>},)";
  answers["GetSecret"] = "((objectpath '/session', @ay [], " + byteList(password) + ", 'text/plain'),)";
  return answers;
}

namespace {

struct SecretsOnABus {
  PrivateBus bus;
  FakeSecretService service{bus, passwordAnswers(testPassword)};
};

SecretsOnABus& secrets() {
  static SecretsOnABus shared;
  return shared;
}

}  // namespace

std::string busWithPassword() { return secrets().bus.address(); }

void storePassword(std::string_view password) { secrets().service.holdSecret(std::string(password)); }

}  // namespace tarnwell::test
