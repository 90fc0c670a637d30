// The radar on the map as display values: whose pictures there are and of which times, the one that is shown
// with its age, what its colours mean, and why there is none. Pure functions.
#pragma once

#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"
#include "feeds/imagery/radar/radar_frames.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

/// How far a map has got with the radar.
struct RadarProgress {
  enum class State {
    waiting,  ///< nobody has asked yet
    loading,
    shown,
    none,   ///< nobody has radar of any of it
    failed  ///< it could not be checked
  };
  struct Frame {
    RadarFrame frame;
    bool isLoaded = false;
    bool isDry = false;      ///< nothing falls in the view
    bool isPartial = false;  ///< some of its pictures are missing
    bool isForeign = false;  ///< in its supplier's colours, as they are not those of the legend
    bool operator==(Frame const&) const = default;
  };

  State state = State::waiting;
  RadarSource source = RadarSource::libreWxr;  ///< counts only with frames
  std::vector<Frame> frames;                   ///< oldest first
  std::vector<RadarMiss> misses;               ///< of suppliers that should have had it

  bool operator==(RadarProgress const&) const = default;
};

/// The newest that was measured, by its place among the frames.
std::size_t newestOf(RadarProgress const& progress);
/// The frame of that time, else the newest; 0 without frames.
std::size_t frameOf(RadarProgress const& progress, std::optional<Instant> time);
/// The next loaded one, around from the last to the first; the same where it is the only one.
std::size_t nextLoaded(RadarProgress const& progress, std::size_t frame);

struct RadarView {
  std::string state;  ///< "waiting", "loading", "shown", "dry", "none" or "failed"
  std::string time;   ///< of the frame; empty without one
  std::string age;    ///< "14 min ago", or that it is a forecast
  std::string note;   ///< what else is to be said: that it is dry, why there is none, who was replaced
  std::string veil;   ///< what a part of the map without pictures is
  std::string credit;
  bool isOld = false;       ///< the newest picture is too old to be taken for the present
  bool isForecast = false;  ///< of the frame
  bool canPlay = false;
  double frame = 0;
  double newest = 0;
  double loaded = 0;  ///< how many
  double count = 0;
  std::string sentence;

  bool operator==(RadarView const&) const = default;
};

template <>
inline constexpr auto viewFields<RadarView> = FieldList{
    viewField("state", &RadarView::state),       viewField("time", &RadarView::time),
    viewField("age", &RadarView::age),           viewField("note", &RadarView::note),
    viewField("credit", &RadarView::credit),     viewField("isOld", &RadarView::isOld),
    viewField("canPlay", &RadarView::canPlay),   viewField("isForecast", &RadarView::isForecast),
    viewField("frame", &RadarView::frame),       viewField("newest", &RadarView::newest),
    viewField("loaded", &RadarView::loaded),     viewField("frameCount", &RadarView::count),
    viewField("sentence", &RadarView::sentence), viewField("veil", &RadarView::veil),
};

/// `frame`: the one that was chosen.
RadarView radarView(RadarProgress const& progress, std::optional<Instant> frame, ViewContext const& context);

/// One time of the row that is played.
struct RadarStepView {
  bool isForecast = false;
  bool isLoaded = false;
  bool operator==(RadarStepView const&) const = default;
};

template <>
inline constexpr auto viewFields<RadarStepView> = FieldList{
    viewField("isForecast", &RadarStepView::isForecast), viewField("isLoaded", &RadarStepView::isLoaded)};

std::vector<RadarStepView> radarStepViews(RadarProgress const& progress);

/// A colour of the pictures; from the least rain to the most.
struct RadarColourView {
  std::string colour;  ///< "#aarrggbb"
  std::string amount;  ///< mm/h from which it is drawn
  bool operator==(RadarColourView const&) const = default;
};

template <>
inline constexpr auto viewFields<RadarColourView> =
    FieldList{viewField("colour", &RadarColourView::colour), viewField("amount", &RadarColourView::amount)};

/// "#aarrggbb" of 0xRRGGBBAA.
std::string colourText(std::uint32_t rgba);

/// Of the frame that was chosen; empty without frames.
std::vector<RadarColourView> radarColourViews(RadarProgress const& progress, std::optional<Instant> frame,
                                              ViewContext const& context);

}  // namespace nimbara
