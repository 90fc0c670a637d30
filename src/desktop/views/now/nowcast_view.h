// The next two hours of rain and snow as display values: a sentence, and a bar for each step of a radar or of
// a model of quarter hours. Pure functions of a snapshot.
#pragma once

#include "app/state/weather_state.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <string>
#include <vector>

namespace nimbara {

struct NowcastView {
  bool isShown = false;  ///< a source covers the place and has answered
  std::string sentence;
  std::string source;   ///< who says so, from a radar or a model, and how old it is
  std::string failure;  ///< why nothing is shown though a source covers the place; empty otherwise
  std::string first;    ///< clock at the beginning, the middle and the end of the bars
  std::string middle;
  std::string last;
  double now = 0;  ///< where the present lies between them, 0-1

  bool operator==(NowcastView const&) const = default;
};

template <>
inline constexpr auto viewFields<NowcastView> =
    FieldList{viewField("isShown", &NowcastView::isShown), viewField("sentence", &NowcastView::sentence),
              viewField("source", &NowcastView::source),   viewField("failure", &NowcastView::failure),
              viewField("first", &NowcastView::first),     viewField("middle", &NowcastView::middle),
              viewField("last", &NowcastView::last),       viewField("now", &NowcastView::now)};

/// One step. Where the source says nothing of a time there is no bar at all.
struct NowcastBarView {
  double from = 0;  ///< where it begins and ends, 0-1
  double to = 0;
  std::string kind;     ///< "dry", "rain", "sleet", "snow", "unknown" (something falls), "notKnown"
  double share = 0;     ///< of the height, 0-1
  std::string reading;  ///< "14:35: rain, 1.2 mm/h"

  bool operator==(NowcastBarView const&) const = default;
};

template <>
inline constexpr auto viewFields<NowcastBarView> =
    FieldList{viewField("from", &NowcastBarView::from), viewField("to", &NowcastBarView::to),
              viewField("kind", &NowcastBarView::kind), viewField("share", &NowcastBarView::share),
              viewField("reading", &NowcastBarView::reading)};

/// What a kind of bar stands for.
struct NowcastKindView {
  std::string kind;
  std::string name;

  bool operator==(NowcastKindView const&) const = default;
};

template <>
inline constexpr auto viewFields<NowcastKindView> =
    FieldList{viewField("kind", &NowcastKindView::kind), viewField("name", &NowcastKindView::name)};

NowcastView nowcastView(WeatherState const& state, ViewContext const& context);
std::vector<NowcastBarView> nowcastBarViews(WeatherState const& state, ViewContext const& context);
/// The kinds of bars that are there, without the dry ones.
std::vector<NowcastKindView> nowcastKindViews(std::vector<NowcastBarView> const& bars,
                                              ViewContext const& context);

}  // namespace nimbara
