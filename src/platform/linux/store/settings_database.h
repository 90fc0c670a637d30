// The file of the settings database: making it, naming what is wrong with it, and noticing that it changed.
#pragma once

#include "base/result.h"
#include "platform/linux/store/sqlite.h"
#include "platform/settings/settings_store.h"

#include <filesystem>
#include <memory>
#include <string_view>

namespace nimbara {

inline constexpr std::string_view kSettingsDatabaseName = "nimbara.db";
/// Of the layout. 0 is that of the first databases, which is the same.
inline constexpr std::int64_t kSettingsVersion = 1;

/// Makes the directory, for the user alone, unless it is there.
Result<void, StoreError> makeSettingsDirectory(std::filesystem::path const& directory);
/// Makes an empty database unless there is a file of that name. Several processes may do so at once.
Result<void, StoreError> makeSettingsDatabase(std::filesystem::path const& directory);

/// Refuses what is no regular file before anybody opens it: a pipe would keep its reader forever.
Result<void, StoreError> checkSettingsFile(std::filesystem::path const& file, std::string_view doing);
/// A newer version of the program has written it; false where that cannot be read.
bool isOfNewerVersion(SqliteConnection& connection);
/// What to tell a person of that.
StoreError newerSettings(std::filesystem::path const& file, std::string_view doing);

/// What to tell a person of `problem`, met while `doing` ("read", "changed").
StoreError settingsDatabaseError(std::filesystem::path const& file, SqliteProblem const& problem,
                                 std::string_view doing);

/// A writer calls it when its change has become visible.
void announceSettingsChange(std::filesystem::path const& file);
/// The directory must exist.
Result<std::unique_ptr<SettingsWatch>, StoreError> watchSettingsDatabase(
    std::filesystem::path const& directory);

}  // namespace nimbara
