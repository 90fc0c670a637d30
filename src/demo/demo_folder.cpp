#include "demo/demo_folder.h"

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nimbara {

namespace {

constexpr std::string_view kPrefix = "nimbara-demo-";

/// The folder itself is the lock. -1 where somebody holds it or it is none of ours.
int lockOf(std::filesystem::path const& folder) {
  int const handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  struct stat about{};
  bool const isOurs = handle >= 0 && fstat(handle, &about) == 0 && about.st_uid == geteuid();
  if (isOurs && flock(handle, LOCK_EX | LOCK_NB) == 0) return handle;
  if (handle >= 0) close(handle);
  return -1;
}

/// A run locks its folder at once; for whoever looks in between, a folder is left behind after a minute only.
void sweep(std::filesystem::path const& parent) {
  std::error_code ignored;
  auto const now = std::filesystem::file_time_type::clock::now();
  for (auto const& entry : std::filesystem::directory_iterator(parent, ignored)) {
    if (!entry.path().filename().string().starts_with(kPrefix)) continue;
    auto const touched = entry.last_write_time(ignored);
    if (ignored || now - touched < std::chrono::minutes(1)) continue;
    int const lock = lockOf(entry.path());
    if (lock < 0) continue;
    std::filesystem::remove_all(entry.path(), ignored);
    close(lock);
  }
}

/// TMPDIR may name anything.
std::filesystem::path temporaryFiles() {
  std::error_code error;
  std::filesystem::path const named = std::filesystem::temp_directory_path(error);
  return error ? std::filesystem::path("/tmp") : named;
}

}  // namespace

DemoFolder::DemoFolder() : DemoFolder(temporaryFiles()) {}

DemoFolder::DemoFolder(std::filesystem::path const& parent) {
  sweep(parent);
  std::string name = (parent / (std::string(kPrefix) + "XXXXXX")).string();
  if (mkdtemp(name.data()) == nullptr) return;
  path_ = name;
  lock_ = lockOf(path_);
}

DemoFolder::~DemoFolder() {
  std::error_code ignored;
  if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  if (lock_ >= 0) close(lock_);
}

}  // namespace nimbara
