// The page of the air and the climate as display values: the index and its band, the hours ahead, pollutants,
// pollen, ultraviolet light, and today beside what the year usually brings. Pure functions of what the feeds
// have.
#pragma once

#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <string>
#include <vector>

namespace nimbara {

struct ClimateOutlook;
struct SupplementState;

struct AirView {
  bool isAsked = false;    ///< the feed of the air has answered or failed
  bool isKnown = false;    ///< there is an index
  std::string value;       ///< "44"
  std::string band;        ///< "moderate"
  double colour = 0;       ///< of the page's list of colours, by band
  double share = 0;        ///< of the scale, 0-1
  std::string scale;       ///< "European air quality index"
  std::string sentence;    ///< the whole, for those who listen; without an index: that there is none
  std::string leading;     ///< "Main pollutant: PM2.5"; may be empty
  std::string peak;        ///< may be empty
  std::string notice;      ///< why it could not be checked; may be empty
  std::string uv;          ///< "UV index: 2 now, …"
  std::string protection;  ///< a line for each stretch
  std::string pollenState;
  std::string source;
  bool isClimateAsked = false;
  bool isClimateKnown = false;
  std::string climate;        ///< "5° warmer than usual for …", or what is usual
  std::string climateBand;    ///< what is usual, below a sentence; may be empty
  std::string climateToday;   ///< "Daily mean today: 9 °C"; may be empty
  std::string climateNotice;  ///< why it could not be fetched; may be empty
  std::string climateSource;

  bool operator==(AirView const&) const = default;
};

template <>
inline constexpr auto viewFields<AirView> = FieldList{
    viewField("isAsked", &AirView::isAsked),
    viewField("isKnown", &AirView::isKnown),
    viewField("index", &AirView::value),
    viewField("band", &AirView::band),
    viewField("colour", &AirView::colour),
    viewField("share", &AirView::share),
    viewField("scale", &AirView::scale),
    viewField("sentence", &AirView::sentence),
    viewField("leading", &AirView::leading),
    viewField("peak", &AirView::peak),
    viewField("notice", &AirView::notice),
    viewField("uv", &AirView::uv),
    viewField("protection", &AirView::protection),
    viewField("pollenState", &AirView::pollenState),
    viewField("source", &AirView::source),
    viewField("isClimateAsked", &AirView::isClimateAsked),
    viewField("isClimateKnown", &AirView::isClimateKnown),
    viewField("climate", &AirView::climate),
    viewField("climateBand", &AirView::climateBand),
    viewField("climateToday", &AirView::climateToday),
    viewField("climateNotice", &AirView::climateNotice),
    viewField("climateSource", &AirView::climateSource),
};

/// One band of the scale, from 0 to 1 of its length.
struct AirStepView {
  double from = 0;
  double to = 0;
  double colour = 0;
  std::string name;

  bool operator==(AirStepView const&) const = default;
};

template <>
inline constexpr auto viewFields<AirStepView> = FieldList{
    viewField("from", &AirStepView::from),
    viewField("to", &AirStepView::to),
    viewField("colour", &AirStepView::colour),
    viewField("name", &AirStepView::name),
};

/// A pollutant or a kind of pollen.
struct AirPartView {
  std::string name;
  std::string value;   ///< "22.1 µg/m³"
  std::string note;    ///< the band of it alone; may be empty
  double share = 0;    ///< of the bar, 0-1
  double colour = -1;  ///< -1: of no band

  bool operator==(AirPartView const&) const = default;
};

template <>
inline constexpr auto viewFields<AirPartView> = FieldList{
    viewField("name", &AirPartView::name),     viewField("value", &AirPartView::value),
    viewField("note", &AirPartView::note),     viewField("share", &AirPartView::share),
    viewField("colour", &AirPartView::colour),
};

struct AirHourView {
  std::string label;    ///< below the chart; empty at most hours
  std::string reading;  ///< "Sunday 15:00: index 44, moderate, UV 2"
  bool isKnown = false;
  double share = 0;  ///< of the chart's height, 0-1
  double colour = 0;
  double uvShare = 0;
  bool wantsProtection = false;
  bool startsDay = false;

  bool operator==(AirHourView const&) const = default;
};

template <>
inline constexpr auto viewFields<AirHourView> = FieldList{
    viewField("label", &AirHourView::label),
    viewField("reading", &AirHourView::reading),
    viewField("isKnown", &AirHourView::isKnown),
    viewField("share", &AirHourView::share),
    viewField("colour", &AirHourView::colour),
    viewField("uvShare", &AirHourView::uvShare),
    viewField("wantsProtection", &AirHourView::wantsProtection),
    viewField("startsDay", &AirHourView::startsDay),
};

AirView airView(SupplementState const* state, ViewContext const& context);
std::vector<AirStepView> airStepViews(SupplementState const* state, ViewContext const& context);
std::vector<AirPartView> pollutantViews(SupplementState const* state, ViewContext const& context);
/// Those that are in the air within 48 hours, or of which nothing is known while others are.
std::vector<AirPartView> pollenViews(SupplementState const* state, ViewContext const& context);
std::vector<AirHourView> airHourViews(SupplementState const* state, ViewContext const& context);

}  // namespace nimbara
