#include "base/files/private_folders.h"

#include <cerrno>
#include <sys/stat.h>

namespace nimbara {

int makePrivateFolders(std::filesystem::path const& folder) {
  if (folder.empty()) return 0;
  struct stat about{};
  if (stat(folder.c_str(), &about) == 0) return S_ISDIR(about.st_mode) ? 0 : ENOTDIR;
  if (folder.has_parent_path() && folder.parent_path() != folder) {
    if (int const error = makePrivateFolders(folder.parent_path())) return error;
  }
  // The process's mask takes rights away, also the user's own.
  if (mkdir(folder.c_str(), S_IRWXU) == 0) return chmod(folder.c_str(), S_IRWXU) == 0 ? 0 : errno;
  return errno == EEXIST ? 0 : errno;
}

}  // namespace nimbara
