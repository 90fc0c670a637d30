// The air, storms, fires, lightning and travel advisories as cards: what is known, how it was checked, and
// what was found, in the words that every face has. Pure functions.
#pragma once

#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <string>
#include <vector>

namespace nimbara {

struct SupplementState;

struct SupplementCard {
  std::string name;  ///< "air", "storms", …
  std::string title;
  std::string headline;  ///< how the check ended
  std::string body;      ///< a line for each of what was found; may be empty
  std::string source;
  std::string page;  ///< that shows more of it; may be empty
  bool isUnchecked = false;
  double lane = 0;  ///< of the board: 0 beside the warnings, 1 beside the earthquakes

  bool operator==(SupplementCard const&) const = default;
};

template <>
inline constexpr auto viewFields<SupplementCard> = FieldList{
    viewField("name", &SupplementCard::name),         viewField("heading", &SupplementCard::title),
    viewField("headline", &SupplementCard::headline), viewField("body", &SupplementCard::body),
    viewField("source", &SupplementCard::source),     viewField("page", &SupplementCard::page),
    viewField("place", &SupplementCard::lane),        viewField("isUnchecked", &SupplementCard::isUnchecked),
};

/// None before anybody has asked.
std::vector<SupplementCard> supplementCards(SupplementState const* state, ViewContext const& context);

}  // namespace nimbara
