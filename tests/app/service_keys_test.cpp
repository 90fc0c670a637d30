#include "app/services/http/keyed_http_client.h"
#include "app/settings/keyed_settings_store.h"
#include "app/settings/settings_registry.h"
#include "base/files/file.h"
#include "platform/linux/store/sqlite_settings_store.h"
#include "support/fake_http_client.h"
#include "support/killed_writer.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sys/stat.h>

namespace nimbara {
namespace {

constexpr char kKey[] = "s3cret/+key";
constexpr char kSetting[] = "firmsApiKey";

/// A keyring that outlives a process: each secret is a file.
struct KeyringState {
  std::filesystem::path folder;
  std::optional<SecretFault> closed;
  bool loses = false;  ///< says that it keeps what it does not
  int made = 0;
};

class Keyring final : public SecretStore {
 public:
  explicit Keyring(KeyringState& state) : state_(state) { ++state.made; }

  Result<void, SecretFault> keep(std::string const& id, std::string const& /*label*/,
                                 std::string const& secret) override {
    if (state_.closed) return std::unexpected(*state_.closed);
    if (!state_.loses) std::ignore = writeFileAtomically(state_.folder / id, secret);
    return {};
  }
  Result<std::string, SecretFault> find(std::string const& id) override {
    if (state_.closed == SecretFault::absent) return std::unexpected(SecretFault::absent);
    auto secret = readFile(state_.folder / id, 1000);
    if (!secret) return std::unexpected(SecretFault::missing);
    if (state_.closed) return std::unexpected(*state_.closed);
    return std::move(*secret);
  }
  Result<void, SecretFault> forget(std::string const& id) override {
    if (state_.closed) return std::unexpected(*state_.closed);
    return std::filesystem::remove(state_.folder / id) ? Result<void, SecretFault>()
                                                       : std::unexpected(SecretFault::missing);
  }

 private:
  KeyringState& state_;
};

class ServiceKeysTest : public testing::Test {
 protected:
  std::filesystem::path folder() const { return temporary_.path() / "nimbara"; }
  std::filesystem::path file() const { return folder() / "keys.json"; }
  std::unique_ptr<SqliteSettingsStore> plainStore() const {
    return std::make_unique<SqliteSettingsStore>(folder(), settingsRegistry());
  }
  /// As another process opens it.
  KeyedSettingsStore open() {
    return {plainStore(), folder(), [this] { return std::make_unique<Keyring>(keyring_); }};
  }
  static std::string keyIn(KeyedSettingsStore& store, std::string_view setting = kSetting) {
    auto const found = store.keys().find(store.settings().settings.text(setting));
    return found ? *found : "(" + found.error() + ")";
  }
  KeyPlace place() {
    auto store = open();
    return store.keys().place(store.settings().settings.text(kSetting));
  }
  /// Whether any file of the settings has it.
  bool isInDatabase(std::string_view key) const {
    for (auto const& entry : std::filesystem::directory_iterator(folder())) {
      std::ifstream stream(entry.path(), std::ios::binary);
      std::string const bytes{std::istreambuf_iterator<char>(stream), {}};
      bool const isOurs = entry.path().filename().string().starts_with("nimbara.db");
      if (isOurs && bytes.find(key) != std::string::npos) return true;
    }
    return false;
  }
  std::size_t inKeyring() const {
    std::error_code error;
    std::size_t count = 0;
    // Without what a killed writer has left beside them.
    for (auto const& entry : std::filesystem::directory_iterator(keyring_.folder, error))
      count += ServiceKeys::isReference(entry.path().filename().string()) ? 1 : 0;
    return count;
  }

  test::TemporaryFolder temporary_;
  KeyringState keyring_{temporary_.path() / "keyring", {}, false, 0};
};

struct KeyringCase {
  std::string name;
  std::optional<SecretFault> closed;
  bool loses = false;
  KeyPlace place = KeyPlace::file;
};

class Keyrings : public ServiceKeysTest, public testing::WithParamInterface<KeyringCase> {
 protected:
  void SetUp() override {
    keyring_.closed = GetParam().closed;
    keyring_.loses = GetParam().loses;
  }
};

TEST_P(Keyrings, TakeAKeyThatIsSetWhereTheyCan) {
  auto store = open();
  ASSERT_TRUE(store.set(kSetting, std::string("former")));
  ASSERT_TRUE(store.set(kSetting, std::string(kKey)));
  EXPECT_TRUE(ServiceKeys::isReference(store.settings().settings.text(kSetting)));
  EXPECT_EQ(place(), GetParam().place);
  auto other = open();
  EXPECT_EQ(keyIn(other), kKey);
  EXPECT_FALSE(isInDatabase(kKey));
  bool const isInFile = readFile(file(), 10'000)->find(kKey) != std::string::npos;
  EXPECT_EQ(isInFile, GetParam().place == KeyPlace::file);
  EXPECT_EQ(inKeyring(), GetParam().place == KeyPlace::keyring ? 1u : 0u) << "the former one has gone";
  struct stat about{};
  ASSERT_EQ(stat(file().c_str(), &about), 0);
  EXPECT_EQ(about.st_mode & 07777U, 0600U);
}

TEST_P(Keyrings, TakeAKeyThatAnEarlierVersionLeft) {
  ASSERT_TRUE(plainStore()->set(kSetting, std::string(kKey)));
  ASSERT_TRUE(isInDatabase(kKey)) << "as it was";
  {
    auto brief = open();
    EXPECT_TRUE(ServiceKeys::isReference(brief.opened().settings.text(kSetting)));
    EXPECT_EQ(keyIn(brief), kKey);
  }
  EXPECT_EQ(keyring_.made, 0) << "a command asks no keyring";
  EXPECT_FALSE(isInDatabase(kKey));
  EXPECT_EQ(place(), KeyPlace::file);
  auto lasting = open();
  lasting.settle();
  EXPECT_EQ(place(), GetParam().place);
  auto other = open();
  EXPECT_EQ(keyIn(other), kKey);
}

INSTANTIATE_TEST_SUITE_P(ServiceKeys, Keyrings,
                         testing::Values(KeyringCase{"Open", {}, false, KeyPlace::keyring},
                                         KeyringCase{"Locked", SecretFault::locked},
                                         KeyringCase{"Absent", SecretFault::absent},
                                         KeyringCase{"Silent", SecretFault::failed},
                                         KeyringCase{"Forgetful", {}, true}),
                         [](auto const& row) { return row.param.name; });

TEST_F(ServiceKeysTest, FollowAKeyringThatComesAndGoes) {
  keyring_.closed = SecretFault::absent;
  auto store = open();
  ASSERT_TRUE(store.set(kSetting, std::string(kKey)));
  keyring_.closed = SecretFault::locked;
  store.settle();
  EXPECT_EQ(place(), KeyPlace::file);
  keyring_.closed.reset();
  store.settle();
  EXPECT_EQ(place(), KeyPlace::keyring);
  keyring_.closed = SecretFault::locked;
  auto locked = open();
  EXPECT_EQ(keyIn(locked), "(the key is in the desktop's keyring, which is locked)");
  keyring_.closed.reset();
  EXPECT_EQ(keyIn(locked), kKey) << "once it is open";
  keyring_.closed = SecretFault::absent;
  EXPECT_EQ(keyIn(locked), kKey) << "it is asked once";
}

TEST_F(ServiceKeysTest, GoWhenTheyAreErased) {
  auto store = open();
  ASSERT_TRUE(store.set(kSetting, std::string(kKey)));
  keyring_.closed = SecretFault::locked;
  ASSERT_TRUE(store.set("openMeteoApiKey", std::string("other")));
  ASSERT_TRUE(store.reset(kSetting));
  EXPECT_EQ(keyIn(store), "");
  EXPECT_EQ(inKeyring(), 1u) << "as long as it is locked";
  keyring_.closed.reset();
  open().settle();
  EXPECT_EQ(inKeyring(), 1u) << "the other one";
  EXPECT_EQ(keyIn(store, "openMeteoApiKey"), "other");
  ASSERT_TRUE(store.set("openMeteoApiKey", std::string()));
  EXPECT_EQ(inKeyring(), 0u);
  EXPECT_EQ(readFile(file(), 1000)->find("other"), std::string::npos);
}

TEST_F(ServiceKeysTest, StayWhileTheSettingsAreAway) {
  ASSERT_TRUE(open().set(kSetting, std::string(kKey)));
  std::filesystem::rename(folder() / "nimbara.db", folder() / "aside");
  open().settle();
  std::filesystem::rename(folder() / "aside", folder() / "nimbara.db");
  auto store = open();
  EXPECT_EQ(keyIn(store), kKey);
}

TEST_F(ServiceKeysTest, AreNeverWrittenOverADamagedFile) {
  ASSERT_TRUE(writeFileAtomically(file(), "{\"keys\":"));
  auto store = open();
  auto const set = store.set(kSetting, std::string(kKey));
  ASSERT_FALSE(set);
  EXPECT_EQ(set.error().message, "the file " + file().string() + " is damaged");
  EXPECT_EQ(readFile(file(), 1000), "{\"keys\":");
  ASSERT_TRUE(plainStore()->set(kSetting, std::string(kKey)));
  EXPECT_EQ(open().opened().settings.text(kSetting), kKey) << "it works from where it is";
}

TEST_F(ServiceKeysTest, OfManyProcessesAreAllKept) {
  constexpr std::string_view kSettings[] = {"firmsApiKey", "openMeteoApiKey", "openMeteoGeocodingApiKey"};
  std::vector<pid_t> children;
  for (std::string_view const setting : kSettings) {
    pid_t const child = fork();
    if (child == 0) {
      for (int i = 0; i <= 2; ++i)
        std::ignore = open().set(setting, std::string(setting) + std::to_string(i));
      _exit(0);
    }
    children.push_back(child);
  }
  for (pid_t const child : children) waitpid(child, nullptr, 0);
  auto store = open();
  for (std::string_view const setting : kSettings)
    EXPECT_EQ(keyIn(store, setting), std::string(setting) + "2");
  EXPECT_EQ(inKeyring(), 3u);
}

/// Of an earlier version's database on its way, and of a key that takes the place of another.
TEST_F(ServiceKeysTest, SurviveWhoeverIsKilledMovingThem) {
  std::mt19937 random(20261123);
  int begun = 0;
  for (int i = 0; i < test::killCount() / 4; ++i) {
    bool const isReplaced = i % 2 == 1;
    std::filesystem::remove_all(folder());
    std::filesystem::remove_all(keyring_.folder);
    ASSERT_TRUE(isReplaced ? open().set(kSetting, std::string("former"))
                           : plainStore()->set(kSetting, std::string(kKey)));
    std::string const before = open().settings().settings.text(kSetting);
    pid_t const child = fork();
    if (child == 0) {
      auto store = open();
      if (isReplaced) std::ignore = store.set(kSetting, std::string(kKey));
      if (!isReplaced) store.settle();
      _exit(0);
    }
    // A busy wait spreads the kills over the whole of it.
    for (auto volatile spin = random() % 20'000'000; spin > 0;) spin = spin - 1;
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    auto store = open();
    std::string const key = keyIn(store);
    bool const isOther = store.settings().settings.text(kSetting) != before;
    ASSERT_EQ(key, isReplaced && !isOther ? "former" : kKey) << i;
    begun += isOther ? 1 : 0;
    store.settle();
    ASSERT_EQ(place(), KeyPlace::keyring) << i;
    ASSERT_EQ(keyIn(store), key) << i;
    ASSERT_TRUE(store.set(kSetting, std::string("last")));
    ASSERT_EQ(inKeyring(), 1u) << i << ": nothing stays there that nobody refers to";
  }
  EXPECT_GT(begun, 0) << "some were killed after they had begun";
}

TEST_F(ServiceKeysTest, AreInRequestsAlone) {
  auto store = open();
  ASSERT_TRUE(store.set(kSetting, std::string(kKey)));
  std::string const reference = store.settings().settings.text(kSetting);
  test::FakeHttpClient network;
  KeyedHttpClient http(network, [&](std::string const& text) { return store.keys().find(text); });
  HttpRequest request;
  request.url = "https://firms.test/csv/" + reference + "/1?apikey=" + reference;
  request.headers = {{"Authorization", "Bearer " + reference}, {"Accept", "*/*"}};
  network.willAnswer(200, "rows");
  ASSERT_TRUE(http.get(request));
  EXPECT_EQ(network.requests.back().url, "https://firms.test/csv/s3cret%2F%2Bkey/1?apikey=s3cret%2F%2Bkey");
  EXPECT_EQ(network.requests.back().headers.front().second, "Bearer s3cret/+key");
  auto const sent = network.requests.size();
  request.url = "https://firms.test/" + std::string(ServiceKeys::kReferencePrefix) +
                "f81d4fae-7dec-41d0-a765-00a0c91e6bf6";
  auto const answer = http.get(request);
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.error().message, "the desktop's keyring no longer has the key; enter it again");
  EXPECT_EQ(network.requests.size(), sent) << "nothing leaves without its key";
}

}  // namespace
}  // namespace nimbara
