// `nimbara regions`: the regions that official warnings are given for, and in which of them a place lies.
#pragma once

#include <string>
#include <vector>

namespace nimbara {

struct CommandLine;
struct Session;

struct RegionsOptions {
  enum class Action { show, check, update };

  Action action = Action::show;
  std::string place;
  std::string table;               ///< of places and their regions, to be compared
  std::vector<std::string> files;  ///< outlines to take in place of the published ones
  bool json = false;
};

int runRegions(CommandLine const& line, Session const& session);

}  // namespace nimbara
