#include "base/time/zone_database.h"

#include "base/files/file.h"
#include "base/text/text.h"

#include <unicode/basictz.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <cstdlib>

namespace nimbara {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr std::size_t kLongestName = 64;
constexpr std::size_t kLargestFile = 262'144;

bool isNamePart(std::string_view part) {
  auto const belongs = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '+' || c == '-';
  };
  return !part.empty() && std::ranges::all_of(part, belongs);
}

/// The database's folder also holds variants of all zones and the machine's own.
bool isZoneName(std::string_view name) {
  if (name.size() > kLongestName || name == "localtime" || name == "posixrules") return false;
  auto const parts = split(name, '/');
  return parts.front() != "posix" && parts.front() != "right" && std::ranges::all_of(parts, isNamePart);
}

double icuTime(sys_seconds moment) {
  return static_cast<double>(milliseconds(moment.time_since_epoch()).count());
}

seconds icuOffset(icu::BasicTimeZone const& zone, sys_seconds moment) {
  std::int32_t raw = 0;
  std::int32_t saving = 0;
  UErrorCode status = U_ZERO_ERROR;
  zone.getOffset(icuTime(moment), false, raw, saving, status);
  return std::chrono::floor<seconds>(milliseconds(raw + saving));
}

/// ICU answers an unknown name with a zone of its own called "Etc/Unknown".
std::shared_ptr<ZoneRules const> icuRules(std::string_view name) {
  constexpr sys_seconds kFrom = std::chrono::sys_days(std::chrono::year(1970) / 1 / 1);
  constexpr sys_seconds kTo = std::chrono::sys_days(std::chrono::year(2100) / 1 / 1);
  auto const length = static_cast<std::int32_t>(name.size());
  auto const id = icu::UnicodeString::fromUTF8(icu::StringPiece(name.data(), length));
  std::unique_ptr<icu::TimeZone> const found(icu::TimeZone::createTimeZone(id));
  auto const* const zone = dynamic_cast<icu::BasicTimeZone const*>(found.get());
  icu::UnicodeString foundId;
  if (zone == nullptr || zone->getID(foundId) == icu::UnicodeString("Etc/Unknown")) return nullptr;
  std::vector<ZoneRules::Change> changes;
  icu::TimeZoneTransition next;
  for (sys_seconds at = kFrom; at < kTo && zone->getNextTransition(icuTime(at), false, next);) {
    at = sys_seconds(std::chrono::floor<seconds>(milliseconds(static_cast<std::int64_t>(next.getTime()))));
    changes.push_back({at, icuOffset(*zone, at)});
  }
  return std::make_shared<ZoneRules const>(icuOffset(*zone, kFrom), std::move(changes));
}

/// What stands behind the folder of the database in a path.
std::string nameIn(std::string const& path) {
  constexpr std::string_view kFolder = "zoneinfo/";
  auto const at = path.rfind(kFolder);
  return at == std::string::npos ? "" : path.substr(at + kFolder.size());
}

std::shared_ptr<ZoneRules const> shared(std::optional<ZoneRules> rules) {
  return rules ? std::make_shared<ZoneRules const>(*std::move(rules)) : nullptr;
}

std::optional<NamedZone> zoneOfFile(std::filesystem::path const& file, std::string name) {
  auto rules = shared(readZoneFile(file));
  if (!rules) return std::nullopt;
  return NamedZone{name.empty() ? file.filename().string() : std::move(name), std::move(rules)};
}

std::optional<NamedZone> zoneOfVariable(std::string_view text, ZoneDatabase& database) {
  if (text.starts_with(':')) text.remove_prefix(1);
  std::string const name(text);
  if (name.empty()) return std::nullopt;
  if (name.starts_with('/')) return zoneOfFile(name, nameIn(name));
  if (auto rules = database.find(name)) return NamedZone{name, std::move(rules)};
  auto const zone = parsePosixZone(name);
  if (!zone) return std::nullopt;
  return NamedZone{name,
                   std::make_shared<ZoneRules const>(zone->standard, std::vector<ZoneRules::Change>(), zone)};
}

/// A link says the name by its target.
NamedZone zoneOfLink(std::filesystem::path const& file, std::filesystem::path const& target,
                     ZoneDatabase& database, NamedZone const& otherwise) {
  std::string name = nameIn(target.string());
  if (auto rules = database.find(name)) return {std::move(name), std::move(rules)};
  return zoneOfFile(file, std::move(name)).value_or(otherwise);
}

/// A copy counts before the name that stands in a file of its own, which may be about another zone.
NamedZone zoneOfCopy(MachineZone const& machine, ZoneDatabase& database, NamedZone const& otherwise) {
  auto copy = zoneOfFile(machine.localTime, "");
  if (!copy) return otherwise;
  std::string name(trimmed(readFile(machine.name, kLongestName + 1).value_or("")));
  auto const named = database.find(name);
  if (named && *named == *copy->rules) copy->name = std::move(name);
  return *std::move(copy);
}

}  // namespace

std::optional<ZoneRules> readZoneFile(std::filesystem::path const& file) {
  auto const bytes = readFile(file, kLargestFile);
  return bytes ? ZoneRules::fromTzif(*bytes) : std::nullopt;
}

ZoneDatabase& ZoneDatabase::ofSystem() {
  static ZoneDatabase database = [] {
    char const* const given = std::getenv("TZDIR");
    bool const isGiven = given != nullptr && *given == '/';
    return ZoneDatabase(isGiven ? given : "/usr/share/zoneinfo");
  }();
  return database;
}

std::shared_ptr<ZoneRules const> ZoneDatabase::find(std::string_view name) {
  if (!isZoneName(name)) return nullptr;
  std::lock_guard const lock(mutex_);
  if (auto const known = known_.find(name); known != known_.end()) return known->second;
  auto rules = shared(readZoneFile(folder_ / name));
  if (!rules) rules = icuRules(name);
  // Only names that there are: those of answers have no end.
  if (rules) known_.emplace(name, rules);
  return rules;
}

NamedZone findMachineZone(MachineZone const& machine, ZoneDatabase& database) {
  NamedZone utc{"UTC", std::make_shared<ZoneRules const>(ZoneRules::constant(seconds(0)))};
  if (machine.variable) {
    if (machine.variable->empty()) return utc;
    if (auto zone = zoneOfVariable(*machine.variable, database)) return *std::move(zone);
  }
  std::error_code noLink;
  auto const target = std::filesystem::read_symlink(machine.localTime, noLink);
  return noLink ? zoneOfCopy(machine, database, utc) : zoneOfLink(machine.localTime, target, database, utc);
}

}  // namespace nimbara
