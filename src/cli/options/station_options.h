// What `nimbara station` takes.
#pragma once

#include <string>

namespace nimbara {

struct StationOptions {
  enum class Action { link, list, show, choose, unlink };

  Action action = Action::show;
  std::string station;  ///< of choose: its name or identifier
  std::string id;       ///< of the user's application
  std::string address;  ///< in the user's own network
  std::string place;    ///< where that stands, or around which public stations are
  std::string name;
  bool isAround = false;  ///< public stations around the place
  bool hasToken = false;  ///< a refresh token comes on standard input
  bool noBrowser = false;
  bool json = false;
};

}  // namespace nimbara
