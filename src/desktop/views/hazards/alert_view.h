// Warnings as display values: those made from the forecast and the official ones, and how the check of the
// official ones went. Pure functions.
#pragma once

#include "app/state/hazards_state.h"
#include "app/state/weather_state.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct AlertView {
  std::string id;
  std::string severity;  ///< the level's word
  std::string level;     ///< "info", "advisory", "warning", "critical"
  std::string title;
  std::string message;  ///< the beginning of it, where it is long
  std::string area;     ///< where the place is in it, or how far from it
  std::string when;     ///< from, until
  std::string near;     ///< which areas of it are only near, and what is said of those
  std::string issuer;
  std::string age;     ///< of the newest message about it
  std::string colour;  ///< of the issuer's awareness level: "yellow", "orange", "red"; may be empty
  bool isOfficial = false;
  bool hasDetails = false;  ///< there is more to read
  std::string sentence;     ///< the whole, for those who listen

  bool operator==(AlertView const&) const = default;
};

template <>
inline constexpr auto viewFields<AlertView> = FieldList{
    viewField("alertId", &AlertView::id),
    viewField("severity", &AlertView::severity),
    viewField("level", &AlertView::level),
    viewField("title", &AlertView::title),
    viewField("message", &AlertView::message),
    viewField("area", &AlertView::area),
    viewField("when", &AlertView::when),
    viewField("near", &AlertView::near),
    viewField("issuer", &AlertView::issuer),
    viewField("age", &AlertView::age),
    viewField("colour", &AlertView::colour),
    viewField("isOfficial", &AlertView::isOfficial),
    viewField("hasDetails", &AlertView::hasDetails),
    viewField("sentence", &AlertView::sentence),
};

/// How far the list of official warnings can be trusted.
struct OfficialView {
  bool hasPlace = false;
  bool isUnchecked = false;
  bool isUncovered = false;
  std::string
      state;  ///< "warnings", "none", "unchecked", "unplaced", "uncovered"; empty while being asked for
  std::string headline;  ///< how many there are for the place, or that this is not known
  std::string notice;    ///< what the headline leaves open and what happens next; may be empty
  std::string brief;     ///< the state in one sentence, for other pages; empty while being asked for
  std::string source;    ///< who was asked and when

  bool operator==(OfficialView const&) const = default;
};

template <>
inline constexpr auto viewFields<OfficialView> = FieldList{
    viewField("hasPlace", &OfficialView::hasPlace),
    viewField("isUnchecked", &OfficialView::isUnchecked),
    viewField("isUncovered", &OfficialView::isUncovered),
    viewField("state", &OfficialView::state),
    viewField("headline", &OfficialView::headline),
    viewField("notice", &OfficialView::notice),
    viewField("brief", &OfficialView::brief),
    viewField("source", &OfficialView::source),
};

/// Those that have not ended, official ones and the forecast's, the most severe first.
std::vector<AlertView> alertViews(WeatherState const& state, ViewContext const& context);
/// The official ones alone.
std::vector<AlertView> officialViews(WeatherState const& state, ViewContext const& context);
/// All there is to read of one of them; empty when there is none of that identifier.
std::string alertDetails(WeatherState const& state, std::string_view id, ViewContext const& context);

/// `place` is the selected one; a check of another one says nothing of it.
OfficialView officialView(OfficialCheck const& check, std::optional<Place> const& place,
                          WeatherState const& state, ViewContext const& context);

/// Paragraphs without the line breaks that a service put in to fit its own lines.
std::string reflowed(std::string_view text);
/// At most `limit` bytes, cut at a character's boundary, with "…" when something was cut.
std::string cutAt(std::string_view text, std::size_t limit);

}  // namespace nimbara
