// The time zones that the system knows, by name. They are read from the system's own tz database, which is
// renewed whenever a country changes its clocks; only a name that it lacks is looked up in the tables of ICU,
// which are as old as that library. What is read once stays for the life of the process. Thread-safe.
#pragma once

#include "base/time/zone_rules.h"

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace nimbara {

class ZoneDatabase {
 public:
  explicit ZoneDatabase(std::filesystem::path folder) : folder_(std::move(folder)) {}

  /// The one in `TZDIR`, where that is set, else in /usr/share/zoneinfo.
  static ZoneDatabase& ofSystem();

  /// Null for an unknown name. Names are IANA's ("Europe/Berlin"); what only looks like one, as a
  /// path does, is refused, for names come from answers of the network.
  std::shared_ptr<ZoneRules const> find(std::string_view name);

 private:
  std::filesystem::path folder_;
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<ZoneRules const>, std::less<>> known_;
};

/// The zone of a compiled file of the tz database; nothing when it cannot be read.
std::optional<ZoneRules> readZoneFile(std::filesystem::path const& file);

/// Where a machine says in which zone it stands.
struct MachineZone {
  std::optional<std::string> variable;  ///< TZ: a name, a path or a POSIX text; empty means UTC
  std::filesystem::path localTime = "/etc/localtime";  ///< a link into the tz database, or a copy from it
  std::filesystem::path name = "/etc/timezone";        ///< holds the name on some systems
};

struct NamedZone {
  std::string name;
  std::shared_ptr<ZoneRules const> rules;
};

/// UTC where the machine says nothing that can be read.
NamedZone findMachineZone(MachineZone const& machine, ZoneDatabase& database);

}  // namespace nimbara
