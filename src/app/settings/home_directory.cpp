#include "app/settings/home_directory.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace nimbara {

std::filesystem::path homeDirectory() {
  char const* const named = std::getenv("HOME");
  std::filesystem::path given = named != nullptr ? named : "";
  if (given.is_absolute()) return given;
  passwd const* const account = getpwuid(geteuid());
  std::filesystem::path const home = account != nullptr && account->pw_dir != nullptr ? account->pw_dir : "";
  std::error_code ignored;
  // Accounts of services have folders that do not exist, or the file system's root.
  bool const isUsable = home.is_absolute() && home != home.root_path() && is_directory(home, ignored);
  return isUsable ? home : std::filesystem::path();
}

}  // namespace nimbara
