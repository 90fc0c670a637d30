#include "app/settings/watch_install.h"

#include "base/files/file.h"
#include "base/sha256.h"
#include "base/text/text.h"
#include "platform/application_id.h"

#include <algorithm>

namespace nimbara {

namespace resources {
extern std::string_view const nimbara_watch_service_in;
}

namespace {

constexpr char kUnit[] = "nimbara-watch.service";
constexpr std::string_view kSealOpening =
    "# Made by \"nimbara watch --install\", which leaves this file alone once it is changed. Seal: ";

struct Target {
  std::filesystem::path unit;
  std::filesystem::path wantedLink;  ///< what enabling the unit makes
  std::filesystem::path autostart;
};

Target targetOf(Environment const& environment) {
  auto const units = environment.configHome / "systemd" / "user";
  return {units / kUnit, units / "default.target.wants" / kUnit,
          environment.configHome / "autostart" / (std::string(kApplicationId) + ".watch.desktop")};
}

std::string sealed(std::string const& content) {
  return std::string(kSealOpening) + sha256Hex(content) + "\n" + content;
}

enum class Found { absent, ours, changed };

Found find(std::filesystem::path const& file) {
  std::error_code ignored;
  if (!std::filesystem::exists(std::filesystem::symlink_status(file, ignored))) return Found::absent;
  constexpr std::size_t kLargest = 65'536;
  auto const content = readFile(file, kLargest);
  if (!content) return Found::changed;
  auto const end = content->find('\n');
  return end != std::string::npos && *content == sealed(content->substr(end + 1)) ? Found::ours
                                                                                  : Found::changed;
}

/// `text` with each of `letters` behind an escape.
std::string escaped(std::string_view text, std::string_view letters, char escape = '\\') {
  std::string out;
  for (char const letter : text) {
    if (letters.find(letter) != std::string_view::npos) out += escape;
    out += letter;
  }
  return out;
}

std::string percentDoubled(std::string_view text) {
  return escaped(text, "%", '%');
}

/// Programs at such places cannot be named in a unit or an entry.
bool hasOddName(std::filesystem::path const& program) {
  std::string const text = program.string();
  return !program.is_absolute() ||
         std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

std::unexpected<std::string> leftAlone(std::filesystem::path const& file) {
  return std::unexpected(file.string() + " was edited manually and is left unchanged");
}

/// The user's systemd.
class UserManager {
 public:
  explicit UserManager(ProgramRunner const& runProgram) : runProgram_(runProgram) {}

  bool answers() const { return runs({"show-environment"}); }

  /// The first command that fails, for people; empty when all succeed.
  std::string run(std::vector<std::vector<std::string>> const& commands) const {
    for (auto const& command : commands) {
      if (runs(command)) continue;
      std::string text = "systemctl --user";
      for (std::string const& word : command) text += " " + word;
      return text;
    }
    return {};
  }

 private:
  bool runs(std::vector<std::string> const& words) const {
    std::vector<std::string> command{"systemctl", "--user"};
    command.insert(command.end(), words.begin(), words.end());
    return runProgram_(command) == 0;
  }

  ProgramRunner const& runProgram_;
};

/// Removes a file of ours; the error is a sentence. True when there was one.
Result<bool, std::string> removeOurs(std::filesystem::path const& file) {
  std::error_code error;
  if (find(file) != Found::ours) return false;
  std::filesystem::remove(file, error);
  if (error) return std::unexpected(file.string() + " cannot be removed: " + error.message());
  return true;
}

Result<std::string, std::string> installUnit(Target const& target, std::filesystem::path const& program,
                                             UserManager const& manager) {
  if (find(target.unit) == Found::changed) return leftAlone(target.unit);
  if (auto const written = writeFileAtomically(target.unit, watchUnit(program)); !written) {
    return std::unexpected(written.error());
  }
  // The watch runs once: not by the autostart of a time without systemd as well.
  if (auto const removed = removeOurs(target.autostart); !removed) return std::unexpected(removed.error());
  std::string const failed = manager.run({{"daemon-reload"}, {"enable", kUnit}, {"restart", kUnit}});
  if (!failed.empty()) {
    return std::unexpected(target.unit.string() + " was written, but \"" + failed +
                           "\" failed; try it yourself");
  }
  return "Wrote " + target.unit.string() +
         ", enabled and started it: Nimbara runs in the background now and at every login.\nSee its log: "
         "journalctl --user -u " +
         kUnit + "\nTo undo: nimbara watch --uninstall\n";
}

Result<std::string, std::string> installAutostart(Target const& target,
                                                  std::filesystem::path const& program) {
  if (find(target.autostart) == Found::changed) return leftAlone(target.autostart);
  if (auto const written = writeFileAtomically(target.autostart, watchAutostart(program)); !written) {
    return std::unexpected(written.error());
  }
  return "Your session does not use systemd, so the desktop will start Nimbara in the background: wrote " +
         target.autostart.string() +
         ".\nIt starts at your next login; to start it now: nimbara watch\nTo undo: nimbara watch "
         "--uninstall\n";
}

/// Adds what was done to `done`; the error is a sentence.
Result<void, std::string> uninstallUnit(Target const& target, UserManager const& manager, std::string& done) {
  if (find(target.unit) == Found::absent) return {};
  bool const managed = manager.answers();
  if (managed) {
    std::string const failed = manager.run({{"disable", "--now", kUnit}});
    if (!failed.empty()) return std::unexpected("\"" + failed + "\" failed; nothing was removed");
  }
  if (auto const removed = removeOurs(target.unit); !removed) return std::unexpected(removed.error());
  std::error_code ignored;
  std::filesystem::remove(target.wantedLink, ignored);
  done += std::string(managed ? "Stopped and disabled " : "Disabled ") + kUnit + " and removed " +
          target.unit.string() + ".\n";
  if (!managed)
    done += "Your session does not use systemd; a running nimbara watch continues until you stop it.\n";
  std::string const failed = managed ? manager.run({{"daemon-reload"}}) : "";
  if (!failed.empty())
    return std::unexpected(target.unit.string() + " was removed, but \"" + failed + "\" failed");
  return {};
}

}  // namespace

std::string watchUnit(std::filesystem::path const& program) {
  constexpr std::string_view kMark = "@program@";
  std::string unit(resources::nimbara_watch_service_in);
  unit.replace(unit.find(kMark), kMark.size(), percentDoubled(escaped(program.string(), "\\\"")));
  return sealed(unit);
}

std::string watchAutostart(std::filesystem::path const& program) {
  // Escaped as an argument first, then as a text of the file.
  std::string const argument = escaped(escaped(program.string(), "\\\"`$"), "\\");
  return sealed(R"([Desktop Entry]
Type=Application
Name=Nimbara
Comment=Forecasts and warnings for your places
Exec=")" + percentDoubled(argument) +
                R"(" watch
Terminal=false
NoDisplay=true
)");
}

Result<std::string, std::string> installWatch(Environment const& environment,
                                              ProgramRunner const& runProgram) {
  Target const target = targetOf(environment);
  if (hasOddName(environment.program))
    return std::unexpected("this program's path cannot be used in a systemd unit");
  UserManager const manager(runProgram);
  return manager.answers() ? installUnit(target, environment.program, manager)
                           : installAutostart(target, environment.program);
}

Result<std::string, std::string> uninstallWatch(Environment const& environment,
                                                ProgramRunner const& runProgram) {
  Target const target = targetOf(environment);
  for (auto const& file : {target.unit, target.autostart}) {
    if (find(file) == Found::changed) return leftAlone(file);
  }
  std::string done;
  if (auto const unit = uninstallUnit(target, UserManager(runProgram), done); !unit)
    return std::unexpected(unit.error());
  auto const autostart = removeOurs(target.autostart);
  if (!autostart) return std::unexpected(autostart.error());
  if (*autostart) done += "Removed " + target.autostart.string() + ".\n";
  return done.empty() ? "The background service is not installed.\n" : done;
}

WatchStart watchStart(Environment const& environment) {
  Target const target = targetOf(environment);
  Found const unit = find(target.unit);
  Found const autostart = find(target.autostart);
  if (unit == Found::changed || autostart == Found::changed) return WatchStart::changedByHand;
  if (unit == Found::ours) return WatchStart::atLogin;
  return autostart == Found::ours ? WatchStart::fromNextLogin : WatchStart::byHand;
}

}  // namespace nimbara
