// Geomagnetic activity as display values: the present K index on its scale, the last days and the next as
// bars. Pure functions.
#pragma once

#include "app/state/hazards_state.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"
#include "feeds/space/kp_scale.h"

#include <string>
#include <vector>

namespace nimbara {

struct KpView {
  bool isKnown = false;
  std::string value;  ///< "5.3"
  std::string word;   ///< "Minor storm (G1)"
  std::string meaning;
  double share = 0;  ///< of the scale from 0 to 9
  double level = 0;  ///< 0 to 7
  std::string notice;
  std::string source;
  std::string hint;  ///< what the bars are; empty without
  std::string sentence;

  bool operator==(KpView const&) const = default;
};

template <>
inline constexpr auto viewFields<KpView> = FieldList{
    viewField("isKnown", &KpView::isKnown), viewField("value", &KpView::value),
    viewField("word", &KpView::word),       viewField("meaning", &KpView::meaning),
    viewField("share", &KpView::share),     viewField("level", &KpView::level),
    viewField("notice", &KpView::notice),   viewField("source", &KpView::source),
    viewField("hint", &KpView::hint),       viewField("sentence", &KpView::sentence),
};

/// Three hours.
struct KpBar {
  double x = 0;  ///< hours from the first bar's beginning
  double kp = 0;
  int level = 0;
  bool isForecast = false;
  std::string reading;  ///< "Saturday 15:00 – 18:00: 4.3, active"

  bool operator==(KpBar const&) const = default;
};

struct KpDay {
  double x = 0;
  std::string name;

  bool operator==(KpDay const&) const = default;
};

struct KpBars {
  std::vector<KpBar> bars;
  std::vector<KpDay> days;
  double hours = 0;  ///< the whole width
  double now = -1;   ///< where the present is

  bool operator==(KpBars const&) const = default;
};

KpView kpView(HazardsState const& state, ViewContext const& context);
/// The last week and, as far as it is foreseen, the next days, in the machine's days.
KpBars kpBars(HazardsState const& state, ViewContext const& context);

}  // namespace nimbara
