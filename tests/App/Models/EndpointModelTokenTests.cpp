#include <gmock/gmock.h>

#include "App/support/EndpointModelFixture.h"
#include "MCP/JSON/JSONValue.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using State = EndpointModel::State;
using Kind = EndpointNews::Kind;

class EndpointModelToken : public testing::Test, public EndpointModelFixture {};

TEST_F(EndpointModelToken, renewedTokenCountsAtOnceWhileItRuns) {
  open();
  ASSERT_TRUE(start());
  const std::string before = token();
  model->renewToken();
  EXPECT_TRUE(model->isRenewing());
  ASSERT_TRUE(until([this] { return !model->isRenewing(); }));
  EXPECT_EQ(model->state(), State::running);
  EXPECT_EQ(model->news().kind, Kind::tokenRenewed);
  EXPECT_NE(token(), before);
  EXPECT_EQ(storedToken(), token());
  EXPECT_EQ(statusWith(before), 401);
  EXPECT_EQ(statusWith(token()), 200);
}

TEST_F(EndpointModelToken, tokenCanBeRenewedWhileNothingRuns) {
  open();
  model->renewToken();
  ASSERT_TRUE(until([this] { return !model->isRenewing(); }));
  const std::string renewed = token();
  EXPECT_EQ(model->state(), State::stopped);
  ASSERT_TRUE(start());
  EXPECT_EQ(statusWith(renewed), 200);
}

TEST_F(EndpointModelToken, stopWhileTheTokenIsRenewedCountsAfterIt) {
  open();
  ASSERT_TRUE(start());
  model->renewToken();
  model->stop();
  EXPECT_EQ(model->state(), State::stopping);
  ASSERT_TRUE(become(State::stopped));
  EXPECT_EQ(model->news().kind, Kind::tokenRenewed);
  EXPECT_EQ(storedToken(), token());
}

TEST_F(EndpointModelToken, refusedRenewalLeavesTheTokenInPlace) {
  open();
  ASSERT_TRUE(start());
  const std::string before = token();
  items.answers = {std::nullopt, std::nullopt, SecretStatus::internalError};  // read, remove, add
  model->renewToken();
  ASSERT_TRUE(until([this] { return !model->isRenewing(); }));
  EXPECT_EQ(model->news().kind, Kind::keyring);
  EXPECT_EQ(model->news().keyring, AccountNews::Kind::keyringRefused);
  EXPECT_EQ(token(), before);
  EXPECT_EQ(storedToken(), before);
  EXPECT_EQ(statusWith(before), 200);
}

TEST_F(EndpointModelToken, storedTokenIsReadWhenThePageIsShown) {
  items.put({"app.tarnwell.Tarnwell.endpoint", "local-endpoint", std::nullopt}, "stored-by.hand~1");
  open();
  model->refresh();
  ASSERT_TRUE(until([this] { return model->token().has_value(); }));
  EXPECT_EQ(token(), "stored-by.hand~1");
  ASSERT_TRUE(start());
  EXPECT_EQ(statusWith("stored-by.hand~1"), 200);
}

TEST_F(EndpointModelToken, tokenThatCannotStandInAHeaderIsReplaced) {
  for (const char* stored : {"", "two words", "line\r\nX: y", "ü", "\xff\xfe", "quote\""}) {
    items.put({"app.tarnwell.Tarnwell.endpoint", "local-endpoint", std::nullopt}, stored);
    open();
    ASSERT_TRUE(start()) << stored;
    EXPECT_EQ(token().size(), 43U) << stored;
    EXPECT_EQ(statusWith(token()), 200) << stored;
  }
}

TEST_F(EndpointModelToken, passwordOfTheAccountStaysWhatItIs) {
  open();
  ASSERT_TRUE(start());
  model->renewToken();
  ASSERT_TRUE(until([this] { return !model->isRenewing(); }));
  EXPECT_EQ(items.at({"service", address, std::nullopt}), "app-pass-word");
}

TEST_F(EndpointModelToken, blockForTheClientIsJSON) {
  open();
  ASSERT_TRUE(start());
  const QString block = model->clientBlock(QString::fromStdString(token()));
  const std::optional<JSONValue> json = JSONValue::decode(block.toStdString());
  ASSERT_TRUE(json);
  const JSONValue& entry = (*json)["mcpServers"]["tarnwell"];
  EXPECT_EQ(entry["url"].stringValue(), model->address().toStdString());
  EXPECT_EQ(entry["headers"]["Authorization"].stringValue(), "Bearer " + token());
}

// The keyring

struct KeyringRow {
  const char* name;
  std::int32_t status;
  AccountNews::Kind kind;
  KeyringState state;
};

class EndpointModelWithoutAKeyring : public EndpointModelToken,
                                     public testing::WithParamInterface<KeyringRow> {};

TEST_P(EndpointModelWithoutAKeyring, saysWhatIsTheMatterAndListensNowhere) {
  *keyring = GetParam().state;
  open();
  items.answers = {GetParam().status};
  model->start();
  ASSERT_TRUE(become(State::failed));
  EXPECT_EQ(model->news().kind, Kind::keyring);
  EXPECT_EQ(model->news().keyring, GetParam().kind);
  EXPECT_FALSE(connect().isConnected());
  EXPECT_TRUE(start()) << "it can be tried again";
}

INSTANTIATE_TEST_SUITE_P(Table, EndpointModelWithoutAKeyring,
                         testing::Values(KeyringRow{"locked", SecretStatus::interactionNotAllowed,
                                                    AccountNews::Kind::keyringLocked, KeyringState::locked},
                                         KeyringRow{"absent", SecretStatus::notAvailable,
                                                    AccountNews::Kind::keyringMissing,
                                                    KeyringState::noService},
                                         KeyringRow{"refused", SecretStatus::internalError,
                                                    AccountNews::Kind::keyringRefused, KeyringState::ready}),
                         rowName);

TEST_F(EndpointModelToken, lockedKeyringIsNoNewsOnceItIsUnlockedElsewhere) {
  *keyring = KeyringState::locked;
  open();
  items.answers = {SecretStatus::interactionNotAllowed};
  model->start();
  ASSERT_TRUE(until([this] { return model->keyring() == KeyringState::locked; }));
  EXPECT_EQ(model->news().keyring, AccountNews::Kind::keyringLocked);
  *keyring = KeyringState::ready;
  model->refresh();
  ASSERT_TRUE(until([this] { return model->keyring() == KeyringState::ready; }));
  EXPECT_EQ(model->news().kind, Kind::none);
  EXPECT_EQ(model->state(), State::failed);
}

TEST_F(EndpointModelToken, stopWishedDuringAStartThatFailsIsForgotten) {
  open();
  items.answers = {SecretStatus::interactionNotAllowed};
  model->start();
  model->stop();
  ASSERT_TRUE(become(State::failed));
  EXPECT_TRUE(start());
  EXPECT_EQ(statusWith(token()), 200);
}

TEST_F(EndpointModelToken, unlockingTellsWhatItCameToAndReadsTheToken) {
  items.put({"app.tarnwell.Tarnwell.endpoint", "local-endpoint", std::nullopt}, "stored");
  *keyring = KeyringState::locked;
  items.answers = {SecretStatus::interactionNotAllowed};
  open();
  model->refresh();
  ASSERT_TRUE(until([this] { return model->keyring() == KeyringState::locked && items.callCount() == 1; }));
  *keyring = KeyringState::ready;
  model->unlockKeyring();
  ASSERT_TRUE(until([this] { return model->token().has_value(); }));
  EXPECT_EQ(model->keyring(), KeyringState::ready);

  *keyring = KeyringState::locked;
  *unlocking = UnlockOutcome::dismissed;
  model->unlockKeyring();
  ASSERT_TRUE(until([this] { return model->news().keyring == AccountNews::Kind::unlockDismissed; }));
  EXPECT_EQ(model->news().kind, Kind::keyring);
}

}  // namespace
}  // namespace tarnwell::test
