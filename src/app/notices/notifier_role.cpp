#include "app/notices/notifier_role.h"

#include "base/files/private_folders.h"

namespace nimbara {

namespace {

/// Where the folder cannot be made, nothing can be shared, and so nobody else is there.
std::filesystem::path withFolder(std::filesystem::path const& file) {
  std::ignore = makePrivateFolders(file.parent_path());
  return file;
}

}  // namespace

NotifierRole::NotifierRole(std::filesystem::path const& file, std::string_view program)
    : turn_(withFolder(file), program), isOurs_(turn_.isHeld()) {}

void NotifierRole::follow(std::function<void()> onChange) {
  if (isOurs_) return;
  waiting_ = std::jthread([this, onChange = std::move(onChange)](std::stop_token const& stop) {
    while (!isOurs_) {
      turn_.wait(stop);
      if (stop.stop_requested()) return;
      isOurs_ = turn_.isHeld();
      onChange();
    }
  });
}

}  // namespace nimbara
