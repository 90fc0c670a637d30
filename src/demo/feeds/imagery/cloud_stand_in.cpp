#include "demo/feeds/imagery/cloud_stand_in.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/world/demo_picture.h"
#include "demo/world/demo_weather.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace nimbara {

namespace {

using std::chrono::hours;

struct CloudTimes {
  hours step, delay;
  int count;
};
constexpr CloudTimes kHourly{hours(1), hours(2), 6}, kThreeHourly{hours(3), hours(1), 4};

Instant newestOf(CloudTimes const& times, Instant now) {
  auto const since = (now - times.delay).time_since_epoch();
  return Instant(since - since % times.step);
}

bool isListed(CloudTimes const& times, std::optional<Instant> time, Instant now) {
  Instant const newest = newestOf(times, now);
  return time && *time <= newest && *time > newest - times.count * times.step &&
         (newest - *time) % times.step == std::chrono::milliseconds(0);
}

DemoAnswer capabilities(std::string_view layer, CloudTimes const& times, DemoRequest const& request,
                        Instant now) {
  std::string listed;
  bool const isEmpty = request.fault == DemoFault::Kind::emptyList;
  for (int i = times.count - 1; i >= 0 && !isEmpty; --i)
    listed += (listed.empty() ? "" : ",") + formatIso8601(newestOf(times, now) - i * times.step);
  return {200,
          "<?xml version=\"1.0\"?><WMS_Capabilities version=\"1.3.0\"><Capability><Layer><Layer><Name>" +
              std::string(layer) + "</Name><Dimension name=\"time\">" + listed +
              "</Dimension></Layer></Layer></Capability></WMS_Capabilities>",
          {}};
}

/// Clouds at every fifth degree, between which they go over.
class CloudNodes {
 public:
  explicit CloudNodes(Instant time) {
    cover_.reserve(std::size_t{kRows} * kColumns);
    for (int row = 0; row < kRows; ++row) {
      for (int column = 0; column < kColumns; ++column)
        cover_.push_back(demoWeather({90.0 - row * kStep, -180.0 + column * kStep}, time).cloudCover);
    }
  }

  /// Percent.
  double at(double latitude, double longitude) const {
    double const down = (90 - latitude) / kStep, right = (longitude + 180) / kStep;
    int const row = std::clamp(static_cast<int>(down), 0, kRows - 2), column = static_cast<int>(right);
    double const below = down - row, beside = right - column;
    auto const edge = [&](int r) {
      return node(r, column) + (node(r, column + 1) - node(r, column)) * beside;
    };
    return edge(row) + (edge(row + 1) - edge(row)) * below;
  }

 private:
  static constexpr int kStep = 5, kRows = 180 / kStep + 1, kColumns = 360 / kStep;

  double node(int row, int column) const {
    return cover_[static_cast<std::size_t>(row) * kColumns + static_cast<std::size_t>(column % kColumns)];
  }

  std::vector<double> cover_;
};

DemoAnswer picture(DemoRequest const& request, CloudTimes const& times, Instant now) {
  constexpr int kMost = 2048, kBlock = 4, kShades = 256;
  auto const width = parseInteger(request.query("width")), height = parseInteger(request.query("height"));
  auto const time = parseIso8601(request.query("time"));
  auto const box = split(request.query("bbox"), ',');
  if (!width || !height || *width < kBlock || *height < kBlock || *width > kMost || *height > kMost ||
      box.size() != 4)
    return {200, "<ServiceExceptionReport/>", {}};
  double const north = parseDouble(box[3]).value_or(90), south = parseDouble(box[1]).value_or(-90);
  DemoPicture drawn(*width, *height);
  bool const isBlank = request.fault == DemoFault::Kind::transparent || !isListed(times, time, now);
  if (request.fault == DemoFault::Kind::status429) return {429, "too many requests", {}};
  if (isBlank) {
    drawn.palette = {0};
    return {200, pngOf(drawn), {}};
  }
  for (std::uint32_t i = 0; i < kShades; ++i) drawn.palette.push_back(i << 24 | i << 16 | i << 8 | 0xff);
  CloudNodes const clouds(*time);
  for (int y = 0; y < *height; ++y) {
    double const latitude = north - (north - south) * (y - y % kBlock + 2.0) / *height;
    for (int x = 0; x < *width; x += kBlock) {
      double const cover = clouds.at(latitude, -180 + 360 * (x + 2.0) / *width);
      auto const shade = static_cast<std::uint8_t>(std::clamp(70 + 1.7 * cover, 0.0, 255.0));
      for (int i = x; i < std::min(x + kBlock, *width); ++i) drawn.at(i, y) = shade;
    }
  }
  if (request.fault == DemoFault::Kind::writing) std::ranges::fill(drawn.points, std::uint8_t{128});
  return {200, pngOf(drawn), {}};
}

}  // namespace

DemoAnswer nowCoastClouds(DemoRequest const& request, Instant now) {
  if (request.query("request") == "GetCapabilities")
    return capabilities("global_longwave_imagery_mosaic", kHourly, request, now);
  return picture(request, kHourly, now);
}

DemoAnswer eumetViewTimes(DemoRequest const& request, Instant now) {
  return capabilities("worldcloudmap_ir108", kThreeHourly, request, now);
}

DemoAnswer eumetViewClouds(DemoRequest const& request, Instant now) {
  return picture(request, kThreeHourly, now);
}

}  // namespace nimbara
