#include "hostile/TestSecrets.h"

#include "integration/FakeSecretService.h"
#include "support/FakeIMAPServer.h"

namespace tarnwell::test {

namespace {

FakeSecretService::Answers onePassword() {
  FakeSecretService::Answers answers = FakeSecretService::oneItem();
  answers["GetAll /collection/item"] =
      std::string("({'Attributes': <{'service': 'app.tarnwell.Tarnwell', 'account': '") + testEmail +
      "'}>, 'Label': <'Tarnwell'>, 'Locked': <false>, 'Created': <uint64 1>, 'Modified': <uint64 1>},)";
  return answers;
}

struct SecretsOnABus {
  SecretsOnABus() { service.holdSecret(testPassword); }

  PrivateBus bus;
  FakeSecretService service{bus, onePassword()};
};

SecretsOnABus& secrets() {
  static SecretsOnABus shared;
  return shared;
}

}  // namespace

std::string busWithPassword() { return secrets().bus.address(); }

void storePassword(std::string_view password) { secrets().service.holdSecret(std::string(password)); }

}  // namespace tarnwell::test
