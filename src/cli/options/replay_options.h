// What `nimbara replay` is asked for.
#pragma once

#include "base/time/instant.h"

#include <string>

namespace nimbara {

struct ReplayOptions {
  std::string directory;
  std::string place;
  std::string from;
  std::string to;
  int stepSeconds = 900;
  bool json = false;
};

struct CommandLine;
struct Session;

int runReplay(CommandLine const& line, Session const& session);

}  // namespace nimbara
