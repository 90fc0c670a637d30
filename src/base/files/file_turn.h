// A file that one of several processes holds for as long as it wants, until its end at the latest; the next
// in line is told by the system and sleeps until then. Owned by whoever takes turns. Where no such file can
// be made or watched, everybody's turn comes at once.
#pragma once

#include <atomic>
#include <filesystem>
#include <stop_token>
#include <string>
#include <string_view>

namespace nimbara {

class FileTurn {
 public:
  /// Takes the turn if it is free. `file` is made when missing, its folder is not. `holder` is what others
  /// read of whoever has the turn.
  FileTurn(std::filesystem::path file, std::string_view holder);
  ~FileTurn();
  FileTurn(FileTurn const&) = delete;
  FileTurn& operator=(FileTurn const&) = delete;

  bool isHeld() const { return isHeld_; }
  /// What whoever holds it has written there; empty when that cannot be read.
  std::string holder() const;

  /// Sleeps until somebody has let go of the file, and takes it if nobody was quicker. At once when it is
  /// held already. One thread at a time.
  void wait(std::stop_token const& stop);

 private:
  void attempt();
  void watch();

  std::filesystem::path file_;
  std::string name_;
  int descriptor_ = -1;
  int notices_ = -1;   ///< of the system, about the file being closed
  int stopping_ = -1;  ///< wakes the waiting thread
  std::atomic<bool> isHeld_ = false;
};

}  // namespace nimbara
