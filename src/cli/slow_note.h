// A line on standard error for what takes long: said once that is so, to a person at a terminal alone.
#pragma once

#include "cli/cli.h"

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace nimbara {

class SlowNote {
 public:
  /// "nimbara: " and the sentence, unless the note ends within the session's patience.
  SlowNote(Session const& session, std::string sentence);
  ~SlowNote();
  SlowNote(SlowNote const&) = delete;
  SlowNote& operator=(SlowNote const&) = delete;

 private:
  void wait();

  Session const& session_;
  std::string sentence_;
  std::mutex mutex_;
  std::condition_variable over_;
  bool isOver_ = false;
  std::thread waiting_;  ///< last: it uses the others
};

}  // namespace nimbara
