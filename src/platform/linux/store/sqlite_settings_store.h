// The settings store in one SQLite database, `nimbara.db` in the user's data directory: a write-ahead log,
// synchronous to the disk, open to the user alone (0600 in 0700). Reading a database that is missing creates
// nothing; a file that is damaged or not ours is never written to. A new database appears under its name only
// when it is complete.
#pragma once

#include "platform/linux/store/sqlite.h"
#include "platform/settings/settings_store.h"

#include <filesystem>
#include <mutex>
#include <optional>

namespace nimbara {

/// How long a process reads: a brief one gives file and memory back after each reading, at the cost of a
/// third of a millisecond for the next.
enum class SettingsUse { lasting, brief };

class SqliteSettingsStore final : public SettingsStore {
 public:
  /// Opens nothing yet. The registry outlives the store.
  SqliteSettingsStore(std::filesystem::path directory, SettingsRegistry const& registry,
                      SettingsUse use = SettingsUse::lasting);

  Result<SettingValues, StoreError> read(StoreArea area) override;
  Result<void, StoreError> update(StoreArea area, StoreDecision const& decide) override;
  /// Makes the directory when it is missing: a directory that does not exist cannot be watched.
  Result<std::unique_ptr<SettingsWatch>, StoreError> watch() override;

  std::filesystem::path file() const;

 private:
  Result<SettingValues, StoreError> readLocked(StoreArea area);
  Result<SettingValues, StoreError> readOnce(StoreArea area, SqliteAccess access);
  Result<void, StoreError> openForWriting();
  Result<void, StoreError> change(StoreArea area, StoreDecision const& decide);
  StoreError errorOf(SqliteProblem const& problem, std::string_view doing) const;

  std::filesystem::path directory_;
  SettingsUse use_;
  std::mutex mutex_;
  std::optional<SqliteConnection> connection_;
  bool writable_ = false;
};

}  // namespace nimbara
