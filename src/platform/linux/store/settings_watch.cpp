#include "platform/linux/store/settings_database.h"

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace nimbara {

namespace {

using std::chrono::steady_clock;

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(Descriptor const&) = delete;
  Descriptor& operator=(Descriptor const&) = delete;

  int number() const { return number_; }

 private:
  int number_;
};

/// IN_ATTRIB is a writer's announcement. The closing of a file tells of writers that died between their
/// change and the announcement and of those that make none.
constexpr std::uint32_t kEvents =
    IN_ATTRIB | IN_CLOSE_WRITE | IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;

std::optional<timespec> timeUntil(std::optional<steady_clock::time_point> deadline) {
  if (!deadline) return std::nullopt;
  auto const left = std::max(*deadline - steady_clock::now(), steady_clock::duration::zero());
  auto const whole = std::chrono::floor<std::chrono::seconds>(left);
  return timespec{whole.count(), std::chrono::nanoseconds(left - whole).count()};
}

/// SQLite's counter of the commits of others tells true changes from mere events.
class DatabaseWatch final : public SettingsWatch {
 public:
  explicit DatabaseWatch(std::filesystem::path const& directory)
      : file_(directory / kSettingsDatabaseName),
        notices_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)),
        stopping_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
        error_(inotify_add_watch(notices_.number(), directory.c_str(), kEvents) < 0 ? errno : 0) {
    hasChanged();
  }

  int error() const { return error_; }

  WaitOutcome wait(std::stop_token stop, std::optional<steady_clock::time_point> deadline) override {
    eventfd_t ignored = 0;
    eventfd_read(stopping_.number(), &ignored);
    std::stop_callback const wake(stop, [this] { eventfd_write(stopping_.number(), 1); });
    while (true) {
      if (stop.stop_requested()) return WaitOutcome::stopped;
      if (hasChanged()) return WaitOutcome::changed;
      if (!sleep(deadline)) return WaitOutcome::timedOut;
    }
  }

 private:
  /// The database that `version_` was read from, none while there is no readable one.
  struct Seen {
    bool exists = false;
    std::int64_t version = 0;
    bool operator==(Seen const&) const = default;
  };

  bool hasChanged() {
    bool const replaced = connection_ && connection_->hasMoved();
    if (replaced) connection_.reset();
    if (!connection_) {
      if (auto opened = SqliteConnection::open(file_, SqliteAccess::readOnly))
        connection_ = std::move(*opened);
    }
    Seen const now = look();
    bool const changed = replaced || now != seen_;
    seen_ = now;
    return changed;
  }

  Seen look() {
    if (!connection_) return {};
    auto const rows = connection_->run("PRAGMA data_version");
    if (!rows || rows->empty()) return {};
    auto const* const version = std::get_if<std::int64_t>(&rows->front().front());
    return {true, version == nullptr ? 0 : *version};
  }

  /// False when the deadline has come.
  bool sleep(std::optional<steady_clock::time_point> deadline) {
    while (true) {
      pollfd files[] = {{notices_.number(), POLLIN, 0}, {stopping_.number(), POLLIN, 0}};
      auto const time = timeUntil(deadline);
      int const ready = ppoll(files, 2, time ? &*time : nullptr, nullptr);
      if (ready == 0) return false;
      if (ready < 0) continue;
      if (files[1].revents != 0 || drain()) return true;
    }
  }

  /// True when a notice was about the database.
  bool drain() const {
    alignas(inotify_event) char buffer[4096];
    bool ours = false;
    for (ssize_t size = 0; (size = read(notices_.number(), buffer, sizeof buffer)) > 0;) {
      for (ssize_t at = 0; at < size;) {
        auto const* const event = reinterpret_cast<inotify_event const*>(buffer + at);
        bool const named = event->len > 0;
        ours = ours || !named || std::string_view(event->name).starts_with(kSettingsDatabaseName);
        at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
      }
    }
    return ours;
  }

  std::filesystem::path file_;
  Descriptor notices_;
  Descriptor stopping_;
  int error_;
  std::optional<SqliteConnection> connection_;
  Seen seen_;
};

}  // namespace

Result<std::unique_ptr<SettingsWatch>, StoreError> watchSettingsDatabase(
    std::filesystem::path const& directory) {
  auto watch = std::make_unique<DatabaseWatch>(directory);
  if (watch->error() != 0) {
    return std::unexpected(StoreError{StoreError::Kind::unreadable,
                                      "changes of the settings in " + directory.string() +
                                          " cannot be detected: " + std::strerror(watch->error())});
  }
  return watch;
}

}  // namespace nimbara
