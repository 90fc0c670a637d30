#include "app/environment.h"

#include "base/number.h"
#include "base/text.h"

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

/// The base directory rules let only absolute paths count.
std::filesystem::path baseDirectory(char const* name, std::string_view belowHome) {
  std::filesystem::path const given = variable(name);
  return given.is_absolute() ? given : std::filesystem::path(variable("HOME")) / belowHome;
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
  environment.dataDirectory = baseDirectory("XDG_DATA_HOME", ".local/share") / "nimbara";
  environment.cacheDirectory = baseDirectory("XDG_CACHE_HOME", ".cache") / "Nimbara";
  environment.configHome = baseDirectory("XDG_CONFIG_HOME", ".config");
  std::error_code ignored;
  environment.program = std::filesystem::read_symlink("/proc/self/exe", ignored);
  environment.machineCalendar = Calendar::machine();
  return environment;
}

}  // namespace nimbara
