// The suppliers' lists of times as frames. Pure; any bytes may be given. Times, hosts and paths come from the
// list alone, but the list may send nobody to a host that its supplier's row does not allow.
#pragma once

#include "base/json/json.h"
#include "base/result.h"
#include "feeds/imagery/radar/radar_frames.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct FrameList {
  std::vector<RadarFrame> frames;  ///< oldest first, one a moment
  std::string host;                ///< that the list names; else the service's address

  bool operator==(FrameList const&) const = default;
};

/// What a list is read for.
struct ListContext {
  RadarSupplier const& supplier;
  std::string base;  ///< the service's address
  Instant now;
};

/// The last hour of what was measured and two hours of forecast, at least four minutes apart. An error where
/// nothing was measured within the last two hours.
Result<FrameList, DecodeError> readFrameList(ListContext const& context, std::string_view body,
                                             std::string_view forecastBody = {});

/// Of a supplier without a list.
FrameList framesByOffsets(ListContext const& context);

/// The times that capabilities give for a layer: single ones and periods with a step, in order. `reference`
/// is when the newest of them was computed, where the layer says so: what is later is a forecast.
struct LayerTimes {
  std::vector<Instant> times;
  std::optional<Instant> reference;
};
Result<LayerTimes, DecodeError> layerTimesIn(std::string_view capabilities, std::string_view layer);

/// "https://tilecache.rainviewer.com" where the row allows the host; nothing otherwise.
std::optional<std::string> allowedHost(RadarSupplier const& supplier, std::string const& base,
                                       std::string_view host);

/// The address of one picture.
std::string pictureAddress(std::string_view address, PictureArea const& area);

}  // namespace nimbara
