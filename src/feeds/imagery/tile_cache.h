// Pictures of maps on disk, at most 64 MB of them: those that were wanted last. All of the user's programs
// may share the folder; what one of them removes is fetched again by the other. Any thread may ask.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

class TileCache {
 public:
  static constexpr std::uintmax_t kMostBytes = std::uintmax_t{64} << 20;

  /// `folder` empty: nothing is kept.
  explicit TileCache(std::filesystem::path folder, std::uintmax_t mostBytes = kMostBytes);

  std::optional<std::string> find(std::string const& key);
  void keep(std::string const& key, std::string_view bytes);

 private:
  struct Kept {
    std::uintmax_t bytes = 0;
    std::filesystem::file_time_type used;
  };

  void look();
  void note(std::string const& name, std::uintmax_t bytes);
  void makeRoom();

  std::filesystem::path folder_;
  std::uintmax_t mostBytes_;
  std::mutex mutex_;
  bool hasLooked_ = false;
  std::map<std::string, Kept> kept_;  ///< by file name
  std::uintmax_t bytes_ = 0;
};

}  // namespace nimbara
