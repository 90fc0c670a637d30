// The menu that goes to another place: the user's places, those of them that a typed text means, and what a
// search has found beside them. Pure functions.
#pragma once

#include "desktop/views/places/places_view.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// What was searched for. It has been answered: a list that lags behind the typing would let Enter take what
/// was meant for another text.
struct SwitcherSearch {
  std::string text;       ///< without blanks around it; empty shows all places
  bool isOnline = false;  ///< the geocoding service is being asked
  std::string note;       ///< what became of asking it
};

struct SwitcherRow {
  std::string kind;  ///< "here", "place", "found", "online", "locate", "manage"
  std::string id;    ///< of "here" and "place"; the row among the found ones
  std::string title;
  std::string detail;
  std::string temperature;
  std::string sky;
  bool isDay = true;
  std::string mark;  ///< as of a PlaceView
  bool isSelected = false;
  bool isFirstOfKind = false;  ///< a line divides it from what is above
  std::string sentence;        ///< the whole, for those who listen

  bool operator==(SwitcherRow const&) const = default;
};

template <>
inline constexpr auto viewFields<SwitcherRow> = FieldList{
    viewField("kind", &SwitcherRow::kind),
    viewField("target", &SwitcherRow::id),
    viewField("title", &SwitcherRow::title),
    viewField("detail", &SwitcherRow::detail),
    viewField("temperature", &SwitcherRow::temperature),
    viewField("sky", &SwitcherRow::sky),
    viewField("isDay", &SwitcherRow::isDay),
    viewField("mark", &SwitcherRow::mark),
    viewField("isSelected", &SwitcherRow::isSelected),
    viewField("isFirstOfKind", &SwitcherRow::isFirstOfKind),
    viewField("sentence", &SwitcherRow::sentence),
};

/// The best match first: Enter takes the first row.
std::vector<SwitcherRow> switcherRows(std::vector<PlaceView> const& places, HereView const& here,
                                      std::vector<FoundView> const& found, SwitcherSearch const& search,
                                      ViewContext const& context);

/// True when each word of `text` begins a word of `name` or of `area`, whatever the letter case and accents.
bool matchesSearch(std::string_view text, std::string_view name, std::string_view area);

}  // namespace nimbara
