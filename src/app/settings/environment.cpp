#include "app/settings/environment.h"

#include "app/settings/home_directory.h"
#include "base/text/number.h"
#include "base/text/text.h"

#include <cstdlib>

namespace nimbara {

namespace {

std::string variable(char const* name) {
  char const* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::string firstOf(std::initializer_list<char const*> names) {
  for (char const* const name : names) {
    if (std::string value = variable(name); !value.empty()) return value;
  }
  return {};
}

/// The base directory rules let only absolute paths count. Empty where there is no home either.
std::filesystem::path baseDirectory(char const* name, std::string_view belowHome,
                                    std::filesystem::path const& home) {
  std::filesystem::path given = variable(name);
  if (given.is_absolute()) return given;
  return home.empty() ? home : home / belowHome;
}

std::filesystem::path below(std::filesystem::path const& base, std::string_view name) {
  return base.empty() ? base : base / name;
}

bool namesUtf8(std::string const& locale) {
  std::string const lowered = asciiLowered(locale);
  return lowered.find("utf-8") != std::string::npos || lowered.find("utf8") != std::string::npos;
}

}  // namespace

Environment Environment::ofProcess() {
  Environment environment;
  environment.services = variable("NIMBARA_SERVICES");
  environment.now = variable("NIMBARA_NOW");
  environment.language = firstOf({"LC_ALL", "LC_MESSAGES", "LANG"});
  environment.measurement = firstOf({"LC_ALL", "LC_MEASUREMENT", "LANG"});
  environment.time = firstOf({"LC_ALL", "LC_TIME", "LANG"});
  std::string const encoding = firstOf({"LC_ALL", "LC_CTYPE", "LANG"});
  // Without any locale, as in a container, today's terminals read UTF-8 all the same.
  environment.utf8 = encoding.empty() || namesUtf8(encoding);
  environment.noColor = !variable("NO_COLOR").empty();
  environment.columns = parseInteger(variable("COLUMNS")).value_or(0);
  std::filesystem::path const home = homeDirectory();
  environment.dataDirectory = below(baseDirectory("XDG_DATA_HOME", ".local/share", home), "nimbara");
  environment.cacheDirectory = below(baseDirectory("XDG_CACHE_HOME", ".cache", home), "Nimbara");
  environment.configHome = baseDirectory("XDG_CONFIG_HOME", ".config", home);
  std::error_code ignored;
  environment.program = std::filesystem::read_symlink("/proc/self/exe", ignored);
  environment.machineCalendar = Calendar::machine();
  return environment;
}

}  // namespace nimbara
