// A directory of a test's own, which goes with it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace nimbara::test {

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "nimbara-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory can be made");
    path_ = name;
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryDirectory(TemporaryDirectory const&) = delete;
  TemporaryDirectory& operator=(TemporaryDirectory const&) = delete;

  std::filesystem::path const& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace nimbara::test
