// Official warnings of the saved places that are not shown: one line each. Pure functions.
#pragma once

#include "app/state/hazards_state.h"
#include "app/state/places_state.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct ElsewhereView {
  std::string placeId;
  std::string text;  ///< "Tromsø, Cold Warning"
  std::string level;
  std::string sentence;  ///< with the level's word, for those who listen

  bool operator==(ElsewhereView const&) const = default;
};

template <>
inline constexpr auto viewFields<ElsewhereView> = FieldList{
    viewField("placeId", &ElsewhereView::placeId),
    viewField("caption", &ElsewhereView::text),
    viewField("level", &ElsewhereView::level),
    viewField("sentence", &ElsewhereView::sentence),
};

/// The most severe warning of each other place that has any, and how many more there are; the most severe
/// place first, otherwise in the list's order. `shown` is the selected place.
std::vector<ElsewhereView> elsewhereViews(PlaceList const& list, std::vector<PlaceCoverage> const& all,
                                          std::optional<Place> const& shown, ViewContext const& context);

}  // namespace nimbara
