// Which sources of official warnings may be chosen for a saved place. Pure.
#pragma once

#include "app/places/places.h"
#include "base/json/json.h"

#include <string>
#include <vector>

namespace nimbara {

struct SourceChoice {
  std::string name;
  std::string service;
  bool usual = false;
  bool chosen = false;  ///< asked first, by the user's choice or as usual
};

template <>
inline constexpr auto jsonFields<SourceChoice> =
    FieldList{field("name", &SourceChoice::name), field("service", &SourceChoice::service),
              field("usual", &SourceChoice::usual), field("chosen", &SourceChoice::chosen)};

/// The usual one first.
std::vector<SourceChoice> sourceChoices(SavedPlace const& place);

/// A line for each; * marks the one that is asked first.
std::string sourceTable(std::vector<SourceChoice> const& choices);

}  // namespace nimbara
