#include "App/Models/AboutModel.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <fstream>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "Platform/Secrets/SecretItems.h"
#include "support/Files.h"
#include "support/InMemorySecretItems.h"
#include "support/RowName.h"
#include "support/ScopedEnvironment.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

const std::string service(BridgeConstants::keychainService);
constexpr char email[] = "anna.lindqvist@meadow.example";
constexpr char host[] = "imap.harbour.example";
constexpr char password[] = "abcd-secret-word";

class AboutModelTest : public testing::Test {
 protected:
  AboutModelTest() {
    store_.update([](AppConfig& config) {
      config.email = email;
      config.imapHost = host;
      config.imapPort = 19993;
      config.lastConnectionTestDate = parseISO8601("2026-03-01T12:00:00Z");
      config.lastConnectionTestSuccess = false;
    });
    items_.put({service, email, std::nullopt}, password);
  }

  std::string diagnosed() {
    SettingsFile settings(store_);
    AboutModel about(settings, {service, std::nullopt, items_});
    QSignalSpy texts(&about, &AboutModel::diagnosed);
    about.diagnose({.platform = "offscreen", .isDark = true, .scale = 1.5});
    EXPECT_TRUE(about.isDiagnosing());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !texts.isEmpty(); }, 10'000));
    return texts.value(0).value(0).toString().toStdString();
  }

  TemporaryDirectory directory_;
  ConfigStore store_{directory_ / "anna"};
  InMemorySecretItems& items_ = InMemorySecretItems::kept();
};

TEST_F(AboutModelTest, languageIsSavedAndMayBeTheSystems) {
  SettingsFile settings(store_);
  AboutModel about(settings, {service, std::nullopt, items_});
  EXPECT_EQ(about.language(), std::nullopt);
  const std::optional<AppLanguage> languages[] = {AppLanguage::japanese, AppLanguage::english, std::nullopt};
  for (const std::optional<AppLanguage>& language : languages) {
    about.setLanguage(language);
    EXPECT_EQ(about.language(), language);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !settings.isSaving(); }, 10'000));
    EXPECT_EQ(store_.load().language, language);
    EXPECT_EQ(store_.load().email, email);
  }
  EXPECT_EQ(fileContents(store_.configURL()).find("language"), std::string::npos);
}

TEST_F(AboutModelTest, namesTheFiles) {
  SettingsFile settings(store_);
  AboutModel about(settings, {service, std::nullopt, items_});
  EXPECT_EQ(about.settingsPath().toStdString(), store_.configURL().string());
  EXPECT_EQ(about.secretService(), "app.tarnwell.Tarnwell");
  EXPECT_TRUE(about.logCommand().contains("app.tarnwell.Tarnwell"));
  EXPECT_EQ(about.version().toStdString(), BridgeConstants::version);
}

TEST_F(AboutModelTest, diagnosticsTellWhatHelps) {
  const ScopedEnvironment environment({{"XDG_CURRENT_DESKTOP", "GNOME"}, {"XDG_SESSION_TYPE", "wayland"}});
  const std::string text = diagnosed();
  for (const std::string& expected :
       {"Tarnwell: " + std::string(BridgeConstants::version) + "\n", "Qt: " + std::string(qVersion()) + "\n",
        std::string("\nSystem: "),
        std::string("\nDesktop: GNOME, wayland, platform offscreen, scale 1.5, dark\n"),
        std::string("\nLanguage: of the system, locale "), std::string("\nSettings: good, read-only\n"),
        std::string("\nPassword: stored\n"),
        std::string("\nLast connection test: failed at 2026-03-01T12:00:00Z")}) {
    EXPECT_NE(text.find(expected), std::string::npos) << expected << "\nis not in\n" << text;
  }
}

/// A state of the program in which something private could slip in.
struct State {
  const char* name;
  /// The bytes of the settings file; absent: those of the fixture.
  std::optional<std::string> file = std::nullopt;
  std::optional<std::int32_t> status = std::nullopt;
  const char* expected = "";
};

void PrintTo(const State& state, std::ostream* stream) { *stream << state.name; }

const State states[] = {
    {"allIsWell", std::nullopt, std::nullopt, "Password: stored"},
    {"noPassword", std::nullopt, SecretStatus::itemNotFound, "Password: not stored"},
    {"locked", std::nullopt, SecretStatus::interactionNotAllowed, "Password: keyring locked"},
    {"noService", std::nullopt, SecretStatus::notAvailable, "Password: no keyring service"},
    {"otherFault", std::nullopt, SecretStatus::internalError, "Password: cannot be read"},
    {"noAccount", "{}", std::nullopt, "Password: not looked for, there is no account"},
    {"wrongType", R"({"email": "anna.lindqvist@meadow.example", "imapPort": "imap.harbour.example"})",
     std::nullopt, "Settings: damaged (imapPort: expected an integer of 64 bits), read-only"},
    {"wrongLanguage", R"({"language": "anna.lindqvist@meadow.example"})", std::nullopt,
     "Settings: damaged (language: expected a known language), read-only"},
    {"notJSON", R"({"email": "anna.lindqvist@meadow.example" "imap.harbour.example")", std::nullopt,
     "Settings: damaged (not JSON, at byte"},
};

class AboutModelPrivacy : public AboutModelTest, public testing::WithParamInterface<State> {};
INSTANTIATE_TEST_SUITE_P(Table, AboutModelPrivacy, testing::ValuesIn(states), rowName);

TEST_P(AboutModelPrivacy, diagnosticsHoldNothingPrivate) {
  if (GetParam().file) {
    std::ofstream(store_.configURL()) << *GetParam().file;
  }
  if (GetParam().status) {
    items_.answers = {GetParam().status};
    items_.messages[*GetParam().status] = std::string("No item for ") + email + " on " + host;
  }
  const std::string text = diagnosed();
  EXPECT_NE(text.find(GetParam().expected), std::string::npos) << text;
  for (const std::string& secret : std::vector<std::string>{"anna", "lindqvist", "meadow", "harbour", "19993",
                                                            password, "@", directory_.path().string()}) {
    EXPECT_EQ(text.find(secret), std::string::npos) << secret << "\nis in\n" << text;
  }
}

}  // namespace
}  // namespace tarnwell::test
