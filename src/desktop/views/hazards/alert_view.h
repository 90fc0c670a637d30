// Warnings as display values: those made from the forecast and the official ones, and how the check of the
// official ones went. Pure functions.
#pragma once

#include "app/state/hazards_state.h"
#include "app/state/weather_state.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct AlertView {
  std::string id;
  std::string severity;  ///< the level's word
  std::string level;  ///< "info", "advisory", "warning", "critical"; "unstated" where the issuer names none
  std::string title;
  std::string heading;  ///< the level's word and the title
  std::string message;  ///< the beginning of it, where it is long
  std::string area;     ///< where the place is in it, or how far from it, or whom it is for
  std::string group;    ///< the heading that it stands under behind those of the place
  std::string when;     ///< from, until
  std::string near;     ///< which areas of it are only near, and what is said of those
  std::string issuer;
  std::string age;     ///< of the newest message about it
  std::string colour;  ///< of the issuer's awareness level: "yellow", "orange", "red"; may be empty
  bool isOfficial = false;
  std::string sentence;  ///< the whole, for those who listen

  bool operator==(AlertView const&) const = default;
};

template <>
inline constexpr auto viewFields<AlertView> = FieldList{
    viewField("alertId", &AlertView::id),        viewField("severity", &AlertView::severity),
    viewField("level", &AlertView::level),       viewField("title", &AlertView::title),
    viewField("heading", &AlertView::heading),   viewField("message", &AlertView::message),
    viewField("area", &AlertView::area),         viewField("group", &AlertView::group),
    viewField("when", &AlertView::when),         viewField("near", &AlertView::near),
    viewField("issuer", &AlertView::issuer),     viewField("age", &AlertView::age),
    viewField("colour", &AlertView::colour),     viewField("isOfficial", &AlertView::isOfficial),
    viewField("sentence", &AlertView::sentence),
};

/// All there is to read of one warning.
struct WarningView {
  std::string id;  ///< empty when there is none of the identifier that was asked for
  std::string severity;
  std::string level;
  std::string title;
  std::string area;
  std::string near;    ///< further areas, which the place is not in
  std::string when;    ///< from, until, or that no end is given
  std::string issued;  ///< when its newest message was sent
  std::string issuer;
  std::string text;
  std::string note;  ///< what of the text is missing
  std::string instruction;
  std::string link;      ///< to the original; empty without
  std::string position;  ///< "2 of 3"; empty for the only one
  std::string previous;  ///< the identifiers of the warnings beside it; empty at either end
  std::string next;
  std::string kind;   ///< what mutes its like, "gov:wind"; empty for a warning from the forecast
  std::string mute;   ///< the button's words: to mute its like until tomorrow, or to end that
  std::string mutes;  ///< what holds its like back, kinds by "+"; empty when it is sent
  bool isOfficial = false;

  bool operator==(WarningView const&) const = default;
};

template <>
inline constexpr auto viewFields<WarningView> = FieldList{
    viewField("alertId", &WarningView::id),        viewField("severity", &WarningView::severity),
    viewField("level", &WarningView::level),       viewField("title", &WarningView::title),
    viewField("area", &WarningView::area),         viewField("near", &WarningView::near),
    viewField("when", &WarningView::when),         viewField("issued", &WarningView::issued),
    viewField("issuer", &WarningView::issuer),     viewField("content", &WarningView::text),
    viewField("note", &WarningView::note),         viewField("instruction", &WarningView::instruction),
    viewField("link", &WarningView::link),         viewField("position", &WarningView::position),
    viewField("previous", &WarningView::previous), viewField("next", &WarningView::next),
    viewField("kind", &WarningView::kind),         viewField("mute", &WarningView::mute),
    viewField("mutes", &WarningView::mutes),       viewField("isOfficial", &WarningView::isOfficial),
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
/// The official ones alone; behind them, in a group of their own, those of the check that nobody can locate.
std::vector<AlertView> officialViews(WeatherState const& state, ViewContext const& context,
                                     OfficialCheck const& check = {});
/// The warning of that identifier, and those before and after it in `alertViews`, or among those that nobody
/// can locate.
WarningView warningView(WeatherState const& state, std::string_view id, ViewContext const& context,
                        OfficialCheck const& check = {});
/// The warning of that identifier, ended or not; nothing when there is none.
std::optional<WeatherAlert> alertOf(WeatherState const& state, std::string_view id,
                                    OfficialCheck const& check = {});

/// `place` is the selected one; a check of another one says nothing of it.
OfficialView officialView(OfficialCheck const& check, std::optional<Place> const& place,
                          WeatherState const& state, ViewContext const& context);

/// Paragraphs without the line breaks that a service put in to fit its own lines.
std::string reflowed(std::string_view text);
/// At most `limit` bytes, cut at a character's boundary, with "…" when something was cut.
std::string cutAt(std::string_view text, std::size_t limit);

}  // namespace nimbara
