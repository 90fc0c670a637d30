// Where the official warnings of the places come from, as display values: who is asked, how the last check
// went, what the source cannot give and who follows it. Pure functions.
#pragma once

#include "app/state/engine_snapshot.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <string>
#include <vector>

namespace nimbara {

struct SourceView {
  std::string placeId;  ///< empty for the current location
  std::string place;
  /// Of the check: "warnings", "none", …; "asking" before there was one, "checking" during it, "countryWide"
  /// where warnings of no stated place are all for the country.
  std::string state;
  std::string stateText;            ///< in two or three words
  std::string service;              ///< who answered last, else who is asked first
  std::string detail;               ///< the whole sentence, with reasons and areas
  std::string checked;              ///< when the last good check was
  std::string lacks;                ///< what the source cannot give, a line each
  std::string next;                 ///< who is asked when it fails; empty where nobody is left
  std::vector<std::string> values;  ///< sources that may be asked first; empty without a choice
  std::vector<std::string> labels;  ///< of the values, for people
  std::string chosen;               ///< of the values
  std::string sentence;             ///< the whole, for those who listen

  bool operator==(SourceView const&) const = default;
};

template <>
inline constexpr auto viewFields<SourceView> = FieldList{
    viewField("placeId", &SourceView::placeId),    viewField("place", &SourceView::place),
    viewField("checkState", &SourceView::state),   viewField("stateText", &SourceView::stateText),
    viewField("service", &SourceView::service),    viewField("detail", &SourceView::detail),
    viewField("checked", &SourceView::checked),    viewField("lacks", &SourceView::lacks),
    viewField("next", &SourceView::next),          viewField("sources", &SourceView::values),
    viewField("sourceNames", &SourceView::labels), viewField("chosenSource", &SourceView::chosen),
    viewField("sentence", &SourceView::sentence),
};

/// The saved places in their order, behind the current location where that is shown.
std::vector<SourceView> sourceViews(EngineSnapshot const& snapshot, ViewContext const& context);

}  // namespace nimbara
