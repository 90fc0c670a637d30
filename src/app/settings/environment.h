// What the process finds around itself, as one value that the entry of a program reads once and hands down.
// Only what belongs to one part is asked for there: the zone and its folder by the calendar, addresses of
// buses by D-Bus.
#pragma once

#include "base/time/calendar.h"

#include <filesystem>
#include <string>

namespace nimbara {

struct Environment {
  std::string services;                  ///< NIMBARA_SERVICES
  std::string now;                       ///< NIMBARA_NOW
  std::string language;                  ///< LC_ALL, LC_MESSAGES or LANG, whichever is set first
  std::string measurement;               ///< LC_ALL, LC_MEASUREMENT or LANG: whose units are in use
  std::string time;                      ///< LC_ALL, LC_TIME or LANG: whose clock is in use
  bool utf8 = true;                      ///< the locale's encoding
  bool noColor = false;                  ///< NO_COLOR
  int columns = 0;                       ///< COLUMNS; 0 when unset
  std::filesystem::path dataDirectory;   ///< …/nimbara below XDG_DATA_HOME
  std::filesystem::path cacheDirectory;  ///< …/Nimbara below XDG_CACHE_HOME; empty: nothing is kept
  std::filesystem::path configHome;      ///< XDG_CONFIG_HOME: where other programs' settings are, too
  std::filesystem::path program;         ///< this program's own file
  Calendar machineCalendar = Calendar::utc();

  static Environment ofProcess();
};

}  // namespace nimbara
