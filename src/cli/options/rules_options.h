// What `nimbara rules` takes. A value that was not given is absent: an edit leaves it as it is.
#pragma once

#include <optional>
#include <string>

namespace nimbara {

struct RulesOptions {
  enum class Action { list, add, edit, remove, enable, disable, show, test };

  Action action = Action::list;
  std::string id;  ///< the beginning of a rule's identifier
  std::optional<std::string> title;
  std::optional<std::string> type;
  std::optional<std::string> comparison;
  std::optional<double> threshold;  ///< metric
  std::optional<int> lookahead;     ///< hours
  std::optional<int> hour;
  bool immediately = false;
  std::optional<std::string> days;  ///< "mon,tue"
  std::optional<std::string> place;
  bool selectedPlace = false;  ///< an edit takes the place away
  bool json = false;
};

}  // namespace nimbara
