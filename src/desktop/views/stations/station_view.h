// The page of the weather station as display values. Pure functions.
#pragma once

#include "app/engine/station_actions.h"
#include "app/state/engine_snapshot.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <string>
#include <vector>

namespace nimbara {

struct StationView {
  bool isLinked = false;
  bool isBusy = false;      ///< something is being done
  bool isWaiting = false;   ///< for the consent in the browser
  bool needsFields = true;  ///< test servers take any application
  std::string name;
  std::string source;     ///< what kind of station it is
  std::string live;       ///< what of the present is its
  std::string problem;    ///< why nothing, or nothing newer, is known of it
  std::string elsewhere;  ///< it does not stand near the selected place
  std::vector<std::string> doubts;
  std::string busy;         ///< what is being done
  std::string note;         ///< what became of the last linking or change
  bool isTroubled = false;  ///< that failed
  std::string consentUrl;
  std::string redirect;
  std::string lookAround;  ///< the button's text; empty where nothing can be looked for
  std::string around;      ///< what was found there, or why not
  bool hasMedian = false;
  bool isMedian = false;  ///< and it is what is shown
  bool isAround = false;  ///< public stations are shown, in place of the account's

  bool operator==(StationView const&) const = default;
};

template <>
inline constexpr auto viewFields<StationView> = FieldList{
    viewField("isLinked", &StationView::isLinked),
    viewField("isBusy", &StationView::isBusy),
    viewField("isWaiting", &StationView::isWaiting),
    viewField("needsFields", &StationView::needsFields),
    viewField("name", &StationView::name),
    viewField("source", &StationView::source),
    viewField("live", &StationView::live),
    viewField("problem", &StationView::problem),
    viewField("elsewhere", &StationView::elsewhere),
    viewField("doubts", &StationView::doubts),
    viewField("busy", &StationView::busy),
    viewField("note", &StationView::note),
    viewField("isTroubled", &StationView::isTroubled),
    viewField("consentUrl", &StationView::consentUrl),
    viewField("redirect", &StationView::redirect),
    viewField("lookAround", &StationView::lookAround),
    viewField("around", &StationView::around),
    viewField("hasMedian", &StationView::hasMedian),
    viewField("isMedian", &StationView::isMedian),
    viewField("isAround", &StationView::isAround),
};

/// A module, or a station that can be chosen.
struct StationRowView {
  std::string id;
  std::string name;
  std::string values;
  std::string detail;  ///< age, battery, distance
  bool isChosen = false;
  bool isTroubled = false;  ///< silent, or its battery is low
  std::string sentence;     ///< the whole, for those who listen

  bool operator==(StationRowView const&) const = default;
};

template <>
inline constexpr auto viewFields<StationRowView> = FieldList{
    viewField("stationId", &StationRowView::id),      viewField("name", &StationRowView::name),
    viewField("values", &StationRowView::values),     viewField("detail", &StationRowView::detail),
    viewField("isChosen", &StationRowView::isChosen), viewField("isTroubled", &StationRowView::isTroubled),
    viewField("sentence", &StationRowView::sentence),
};

StationView stationView(StationDesk const& desk, EngineSnapshot const& snapshot, ViewContext const& context);
/// Of the station that is shown.
std::vector<StationRowView> stationModuleViews(StationDesk const& desk, EngineSnapshot const& snapshot,
                                               ViewContext const& context);
/// The account's.
std::vector<StationRowView> stationChoiceViews(StationDesk const& desk, ViewContext const& context);
/// The nearest public ones.
std::vector<StationRowView> publicStationViews(StationDesk const& desk, ViewContext const& context);
/// One of them, which stands there.
StationRowView publicStationView(StationDesk const& desk, StationReading const& station, Coordinate stands,
                                 ViewContext const& context);
/// What was found around the place, or why nothing; empty before anybody has looked.
std::string publicStationsText(StationDesk const& desk, ViewContext const& context);

}  // namespace nimbara
