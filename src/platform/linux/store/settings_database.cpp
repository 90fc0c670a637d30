#include "platform/linux/store/settings_database.h"

#include "base/files/private_folders.h"

#include <sqlite3.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nimbara {

namespace {

std::unexpected<StoreError> cannotMake(std::filesystem::path const& path, int error) {
  return std::unexpected(StoreError{
      StoreError::Kind::unwritable,
      "the settings cannot be saved: " + path.string() + " cannot be made (" + std::strerror(error) + ")"});
}

constexpr std::string_view kTemporaryPrefix = ".new-";

/// Exists until it has been given its final name.
class TemporaryFile {
 public:
  /// Readable for the user alone.
  explicit TemporaryFile(std::filesystem::path const& directory) {
    std::string name = (directory / (std::string(kTemporaryPrefix) + "XXXXXX")).string();
    int const descriptor = mkstemp(name.data());
    path_ = name;
    error_ = descriptor < 0 ? errno : 0;
    if (descriptor >= 0) fchmod(descriptor, S_IRUSR | S_IWUSR);  // whatever the process's mask
    // Closed before SQLite opens it: closing a file drops all locks that the process holds on it.
    if (descriptor >= 0) close(descriptor);
  }
  ~TemporaryFile() {
    for (char const* const suffix : {"", "-wal", "-shm"}) unlink((path_.string() + suffix).c_str());
  }
  TemporaryFile(TemporaryFile const&) = delete;
  TemporaryFile& operator=(TemporaryFile const&) = delete;

  std::filesystem::path const& path() const { return path_; }
  int error() const { return error_; }
  /// The error number; EEXIST when somebody else was faster.
  int giveName(std::filesystem::path const& name) const {
    if (renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) == 0) return 0;
    // Not every file system knows this kind of renaming.
    if (errno != EINVAL) return errno;
    return link(path_.c_str(), name.c_str()) == 0 ? 0 : errno;
  }

 private:
  std::filesystem::path path_;
  int error_ = 0;
};

Result<void, SqliteProblem> fill(std::filesystem::path const& file) {
  auto connection = SqliteConnection::open(file, SqliteAccess::readWrite);
  if (!connection) return std::unexpected(connection.error());
  std::vector<std::string> statements{"PRAGMA journal_mode=WAL", "PRAGMA synchronous=FULL",
                                      "PRAGMA user_version=" + std::to_string(kSettingsVersion)};
  for (std::string_view const table : enumNames<StoreArea>) {
    statements.push_back("CREATE TABLE " + std::string(table) +
                         " (key TEXT PRIMARY KEY NOT NULL, value ANY NOT NULL) STRICT, WITHOUT ROWID");
  }
  // Everything into the one file, which then moves alone.
  statements.emplace_back("PRAGMA wal_checkpoint(TRUNCATE)");
  for (std::string const& statement : statements) {
    if (auto const done = connection->run(statement); !done) return std::unexpected(done.error());
  }
  return {};
}

void syncDirectory(std::filesystem::path const& directory) {
  int const descriptor = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  fsync(descriptor);
  close(descriptor);
}

struct ProblemRow {
  int code;
  StoreError::Kind kind;
  std::string_view reason;
};

/// What a process that was killed while it made a database has left.
void sweepLeftovers(std::filesystem::path const& directory) {
  std::error_code ignored;
  auto const now = std::filesystem::file_time_type::clock::now();
  for (auto const& entry : std::filesystem::directory_iterator(directory, ignored)) {
    if (!entry.path().filename().string().starts_with(kTemporaryPrefix)) continue;
    auto const written = entry.last_write_time(ignored);
    if (!ignored && now - written > std::chrono::hours(1)) unlink(entry.path().c_str());
  }
}

constexpr std::string_view kDamaged = "it is damaged or not a Nimbara database; move it away to start afresh";

constexpr ProblemRow kProblems[] = {
    {SQLITE_NOTADB, StoreError::Kind::unreadable, kDamaged},
    {SQLITE_CORRUPT, StoreError::Kind::unreadable, kDamaged},
    {SQLITE_ERROR, StoreError::Kind::unreadable, kDamaged},
    {SQLITE_FULL, StoreError::Kind::unwritable, "the disk is full"},
    {SQLITE_IOERR, StoreError::Kind::unwritable, "the disk is full or failing"},
    {SQLITE_READONLY, StoreError::Kind::unwritable, "it or its folder is read-only"},
    {SQLITE_CANTOPEN, StoreError::Kind::unwritable, "it cannot be opened; check its permissions"},
    {SQLITE_PERM, StoreError::Kind::unwritable, "it cannot be opened; check its permissions"},
    {SQLITE_BUSY, StoreError::Kind::busy, "another program has locked it for too long"},
    {SQLITE_LOCKED, StoreError::Kind::busy, "another program has locked it for too long"},
    {SQLITE_PROTOCOL, StoreError::Kind::busy, "another program has locked it for too long"},
};

}  // namespace

Result<void, StoreError> makeSettingsDirectory(std::filesystem::path const& directory) {
  int const error = makePrivateFolders(directory);
  // What is no folder says so when it is used.
  return error != 0 && error != ENOTDIR ? cannotMake(directory, error) : Result<void, StoreError>{};
}

Result<void, StoreError> makeSettingsDatabase(std::filesystem::path const& directory) {
  std::filesystem::path const file = directory / kSettingsDatabaseName;
  if (access(file.c_str(), F_OK) == 0) {
    sweepLeftovers(directory);
    return {};
  }
  if (auto const made = makeSettingsDirectory(directory); !made) return made;
  TemporaryFile const temporary(directory);
  if (temporary.error() != 0) return cannotMake(file, temporary.error());
  if (auto const filled = fill(temporary.path()); !filled) {
    return std::unexpected(settingsDatabaseError(file, filled.error(), "made"));
  }
  int const error = temporary.giveName(file);
  if (error != 0 && error != EEXIST) return cannotMake(file, error);
  syncDirectory(directory);
  return {};
}

Result<void, StoreError> checkSettingsFile(std::filesystem::path const& file, std::string_view doing) {
  struct stat about{};
  bool const isOther = stat(file.c_str(), &about) == 0 && !S_ISREG(about.st_mode);
  if (!isOther) return {};
  return std::unexpected(StoreError{StoreError::Kind::unreadable, "the settings in " + file.string() +
                                                                      " cannot be " + std::string(doing) +
                                                                      ": it is not a regular file"});
}

bool isOfNewerVersion(SqliteConnection& connection) {
  auto const version = connection.run("PRAGMA user_version");
  return version && !version->empty() && version->front().front() > SettingValue(kSettingsVersion);
}

StoreError newerSettings(std::filesystem::path const& file, std::string_view doing) {
  return {StoreError::Kind::unreadable,
          "the settings in " + file.string() + " cannot be " + std::string(doing) +
              ": they were saved by a newer version of Nimbara; update this one"};
}

StoreError settingsDatabaseError(std::filesystem::path const& file, SqliteProblem const& problem,
                                 std::string_view doing) {
  constexpr int kPrimary = 0xFF;
  auto const row = std::ranges::find(kProblems, problem.code & kPrimary, &ProblemRow::code);
  bool const known = row != std::ranges::end(kProblems);
  std::string const reason = known ? std::string(row->reason) : problem.message;
  return {known ? row->kind : StoreError::Kind::unreadable,
          "the settings in " + file.string() + " cannot be " + std::string(doing) + ": " + reason};
}

void announceSettingsChange(std::filesystem::path const& file) {
  // The watchers hear of the new time when the change is visible; of the log's bytes they would hear before.
  utimensat(AT_FDCWD, file.c_str(), nullptr, 0);
}

}  // namespace nimbara
