// A folder for one run of the demo, which goes with it. What runs that were killed have left behind goes with
// the next one.
#pragma once

#include <filesystem>

namespace nimbara {

class DemoFolder {
 public:
  /// Below the system's folder of temporary files.
  DemoFolder();
  explicit DemoFolder(std::filesystem::path const& parent);
  ~DemoFolder();
  DemoFolder(DemoFolder const&) = delete;
  DemoFolder& operator=(DemoFolder const&) = delete;

  /// Empty where none could be made.
  std::filesystem::path const& path() const { return path_; }

 private:
  std::filesystem::path path_;
  int lock_ = -1;  ///< held while the run lasts; the system lets go of it whatever ends the run
};

}  // namespace nimbara
