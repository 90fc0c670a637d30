#include "platform/linux/store/sqlite_settings_store.h"
#include "support/killed_writer.h"
#include "support/notification_engine.h"
#include "support/shared_texts.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <map>
#include <unistd.h>

namespace nimbara {
namespace {

constexpr char kBegin[] = "2026-11-21T09:00:00Z";

/// Writes the identifier of each delivery to a file, a line each, before it says that it has it.
class FileCenter final : public NotificationCenter {
 public:
  explicit FileCenter(std::filesystem::path const& file)
      : descriptor_(open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600)) {}
  ~FileCenter() { close(descriptor_); }
  FileCenter(FileCenter const&) = delete;
  FileCenter& operator=(FileCenter const&) = delete;

  AuthorizationStatus authorizationStatus() override { return AuthorizationStatus::authorized; }
  AuthorizationStatus requestAuthorization() override { return AuthorizationStatus::authorized; }
  Result<void, DeliveryError> deliver(NotificationRequest const& request) override {
    std::string const line = request.identifier + "\n";
    auto const written = write(descriptor_, line.data(), line.size());
    if (written == static_cast<ssize_t>(line.size())) return {};
    return std::unexpected(DeliveryError{DeliveryError::Kind::refused, "not written"});
  }
  Result<void, DeliveryError> update(NotificationRequest const& /*request*/) override { return {}; }
  void withdraw(std::string_view /*identifier*/) override {}
  void setListener(Listener /*listener*/) override {}

 private:
  int descriptor_;
};

/// Passes of which each finds two warnings more than the one before, until somebody kills the process.
class Passes {
 public:
  explicit Passes(std::filesystem::path folder) : folder_(std::move(folder)) {}

  std::filesystem::path log() const { return folder_ / "told"; }
  std::filesystem::path mark() const { return folder_ / "found"; }

  /// One pass that knows `count` warnings.
  void pass(int count) const {
    SqliteSettingsStore store(folder_, test::notificationRegistry());
    FileCenter center(log());
    test::ManualClock const clock(test::at(kBegin) + std::chrono::seconds(count));
    NotificationManager manager({store, center, clock, test::sharedEnglishTexts(), folder_ / "lock"});
    RuleInputs inputs = test::ruleInputs(clock.now());
    std::vector<WeatherAlert> warnings;
    for (int i = 0; i < count; ++i) {
      warnings.push_back(test::officialWarning(i, AlertSeverity::warning, clock.now()));
    }
    inputs.govAlerts = InputReading<std::vector<WeatherAlert>>::of(std::move(warnings));
    std::ignore = manager.evaluate(
        [&](NeededInputs const&, std::stop_token const&) { return PassInputs{{inputs}, {}}; });
  }

  std::map<std::string, int> told() const {
    std::map<std::string, int> counts;
    std::ifstream file(log());
    for (std::string line; std::getline(file, line);) ++counts[line];
    return counts;
  }

 private:
  std::filesystem::path folder_;
};

TEST(KilledPass, TellsNothingTwiceAndLosesNothingButWhatWasInFlight) {
  test::TemporaryFolder const folder;
  Passes const passes(folder.path());
  int known = 0;
  int const kills = test::killCount();
  test::killWriters(
      kills,
      [&](auto const& reportStep) {
        for (int count = known + 2;; count += 2) {
          passes.pass(count);
          reportStep();
        }
      },
      [&] {
        // What the killed one may have found at most; the next goes on behind it.
        known += 8;
        for (auto const& [identifier, count] : passes.told()) ASSERT_EQ(count, 1) << identifier;
      });
  passes.pass(known);
  auto const told = passes.told();
  for (auto const& [identifier, count] : told) EXPECT_EQ(count, 1) << identifier;
  int lost = 0;
  for (int i = 0; i < known; ++i) {
    lost += told.contains(test::identifierOf(test::officialWarning(i, AlertSeverity::warning, {}))) ? 0 : 1;
  }
  EXPECT_LE(lost, 2 * kills)
      << "each kill may meet the two of a pass between being remembered and being told";
  RecordProperty("lost", lost);
  std::printf("%d kills, %d warnings, %d in flight\n", kills, known, lost);
}

}  // namespace
}  // namespace nimbara
