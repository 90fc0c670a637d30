#include "feeds/imagery/radar/radar_lists.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>
#include <ranges>

namespace nimbara {

namespace {

struct ListedFrame {
  LenientNumber time;
  Lenient<std::string> path;
};
struct ListedFrames {
  std::vector<Lenient<ListedFrame>> past, nowcast;
};
struct MapList {
  std::string host;
  ListedFrames radar;
};
struct TargetTime {
  Lenient<std::string> basetime, validtime;
  Lenient<std::vector<Lenient<std::string>>> elements;
};

}  // namespace

template <>
inline constexpr auto jsonFields<ListedFrame> =
    FieldList{fieldOr("time", &ListedFrame::time), fieldOr("path", &ListedFrame::path)};
template <>
inline constexpr auto jsonFields<ListedFrames> =
    FieldList{field("past", &ListedFrames::past), fieldOr("nowcast", &ListedFrames::nowcast)};
template <>
inline constexpr auto jsonFields<MapList> =
    FieldList{field("host", &MapList::host), field("radar", &MapList::radar)};
template <>
inline constexpr auto jsonFields<TargetTime> =
    FieldList{fieldOr("basetime", &TargetTime::basetime), fieldOr("validtime", &TargetTime::validtime),
              fieldOr("elements", &TargetTime::elements)};

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using Frames = std::vector<RadarFrame>;

constexpr minutes kPast{60};
constexpr hours kOldest{2};
constexpr minutes kLeastApart{4};
constexpr minutes kClockTolerance{10};

bool isPlainPath(std::string_view path) {
  constexpr std::size_t kLongest = 200;
  constexpr std::string_view kAllowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/_-.";
  return path.starts_with('/') && path.size() <= kLongest && !path.contains("..") && !path.contains("//") &&
         path.find_first_not_of(kAllowed) == std::string_view::npos;
}

void appendFrames(std::vector<Lenient<ListedFrame>> const& listed, bool isForecast, std::string const& host,
                  RadarSupplier const& supplier, Frames& frames) {
  constexpr double kLatest = 4e9;
  for (auto const& entry : listed) {
    auto const time = entry.value ? entry.value->time.value : std::nullopt;
    if (!time || *time < 0 || *time > kLatest) continue;
    std::string const path = entry.value->path.value.value_or("");
    if (!isPlainPath(path)) continue;
    frames.push_back({Instant(std::chrono::seconds(static_cast<long long>(*time))), isForecast,
                      host + path + std::string(supplier.pictures)});
  }
}

Result<FrameList, DecodeError> weatherMaps(ListContext const& context, std::string_view body) {
  auto const list = decodeJson<MapList>(body);
  if (!list) return std::unexpected(list.error());
  auto const host = allowedHost(context.supplier, context.base, list->host);
  if (!host) return std::unexpected(DecodeError{"/host", "it names a host that is not the supplier's"});
  FrameList read{{}, *host};
  appendFrames(list->radar.past, false, *host, context.supplier, read.frames);
  appendFrames(list->radar.nowcast, true, *host, context.supplier, read.frames);
  return read;
}

/// "20261122104500", in UTC.
std::optional<Instant> digitTime(std::string_view text) {
  constexpr std::size_t kLength = 14;
  if (text.size() != kLength || text.find_first_not_of("0123456789") != std::string_view::npos)
    return std::nullopt;
  auto const part = [text](std::size_t from, std::size_t count) {
    return std::string(text.substr(from, count));
  };
  return parseIso8601(part(0, 4) + "-" + part(4, 2) + "-" + part(6, 2) + "T" + part(8, 2) + ":" +
                      part(10, 2) + ":" + part(12, 2) + "Z");
}

bool hasRain(TargetTime const& entry) {
  if (!entry.elements.value) return true;
  return std::ranges::any_of(*entry.elements.value, [](auto const& name) { return name.value == "hrpns"; });
}

Result<Frames, DecodeError> targetTimes(ListContext const& context, std::string_view body, bool isForecast) {
  auto const list = decodeJson<std::vector<Lenient<TargetTime>>>(body);
  if (!list) return std::unexpected(list.error());
  constexpr std::string_view kFrame = "{frame}";
  Frames frames;
  for (auto const& entry : *list) {
    if (!entry.value || !hasRain(*entry.value)) continue;
    std::string const base = entry.value->basetime.value.value_or("");
    std::string const valid = entry.value->validtime.value.value_or("");
    auto const time = digitTime(valid);
    if (!time || !digitTime(base)) continue;
    std::string address = context.base + std::string(context.supplier.pictures);
    address.replace(address.find(kFrame), kFrame.size(), base + "/none/" + valid);
    frames.push_back({*time, isForecast, std::move(address)});
  }
  return frames;
}

Result<FrameList, DecodeError> capabilities(ListContext const& context, std::string_view body) {
  auto const times = layerTimesIn(body, context.supplier.layer);
  if (!times) return std::unexpected(times.error());
  std::string const question =
      context.base + std::string(context.supplier.pictures) +
      "?service=WMS&version=1.3.0&request=GetMap&layers=" + std::string(context.supplier.layer) +
      "&styles=&crs=EPSG:3857&bbox={bbox}&width={width}&height={height}"
      "&format=image/png&transparent=true&time=";
  FrameList list{{}, context.base};
  for (Instant const time : times->times) {
    list.frames.push_back(
        {time, time > times->reference.value_or(context.now), question + formatIso8601(time)});
  }
  return list;
}

Result<FrameList, DecodeError> wholeList(ListContext const& context, std::string_view body,
                                         std::string_view forecastBody) {
  if (context.supplier.list == TimeList::capabilities) return capabilities(context, body);
  if (context.supplier.list == TimeList::weatherMaps) return weatherMaps(context, body);
  auto measured = targetTimes(context, body, false);
  if (!measured) return std::unexpected(measured.error());
  // Without the forecast there is still what was measured.
  auto const forecast = targetTimes(context, forecastBody, true).value_or(Frames());
  measured->insert(measured->end(), forecast.begin(), forecast.end());
  return FrameList{std::move(*measured), context.base};
}

/// One frame a moment, the measured one where there are two, in order.
void order(Frames& frames) {
  std::ranges::sort(frames, {},
                    [](RadarFrame const& frame) { return std::pair(frame.time, frame.isForecast); });
  frames.erase(std::ranges::unique(frames, {}, &RadarFrame::time).begin(), frames.end());
}

/// Counted from the newest that was measured, which is always among them.
Frames within(Frames const& frames, Instant newest, Instant now) {
  constexpr hours kAhead{2};
  Frames kept;
  for (RadarFrame const& frame : std::views::reverse(frames)) {
    bool const isWanted = frame.time <= newest ? !frame.isForecast && frame.time >= newest - kPast
                                               : frame.isForecast && frame.time <= now + kAhead;
    bool const isApart = kept.empty() || frame.time == newest || kept.back().time - frame.time >= kLeastApart;
    if (!isWanted || !isApart) continue;
    while (frame.time == newest && !kept.empty() && kept.back().time - newest < kLeastApart) kept.pop_back();
    kept.push_back(frame);
  }
  std::ranges::reverse(kept);
  return kept;
}

std::string replaced(std::string_view text, std::string_view what, std::string const& with) {
  std::string result(text);
  if (auto const at = result.find(what); at != std::string::npos) result.replace(at, what.size(), with);
  return result;
}

/// The edges in metres: west, south, east, north.
std::string boxOf(PictureArea const& area) {
  constexpr double kHalf = 20037508.342789244;
  MapPoint const northWest = northWestOf(area);
  MapPoint const southEast = southEastOf(area);
  auto const east = [](double x) { return fixedDecimal((2 * x - 1) * kHalf, 3); };
  auto const north = [](double y) { return fixedDecimal((1 - 2 * y) * kHalf, 3); };
  return east(northWest.x) + "," + north(southEast.y) + "," + east(southEast.x) + "," + north(northWest.y);
}

}  // namespace

Result<FrameList, DecodeError> readFrameList(ListContext const& context, std::string_view body,
                                             std::string_view forecastBody) {
  auto list = wholeList(context, body, forecastBody);
  if (!list) return list;
  order(list->frames);
  std::optional<Instant> newest;
  for (RadarFrame const& frame : list->frames) {
    if (!frame.isForecast && frame.time <= context.now + kClockTolerance) newest = frame.time;
  }
  if (!newest) return std::unexpected(DecodeError{"", "it has no times"});
  if (*newest < context.now - kOldest)
    return std::unexpected(DecodeError{"", "its newest time is " + formatIso8601(*newest)});
  list->frames = within(list->frames, *newest, context.now);
  return list;
}

FrameList framesByOffsets(ListContext const& context) {
  constexpr int kFrames = 12;
  auto const since = context.now.time_since_epoch();
  Instant const newest(since - since % context.supplier.step);
  FrameList list{{}, context.base};
  for (int i = kFrames - 1; i >= 0; --i) {
    auto const ago = i * context.supplier.step.count();
    std::string const name =
        i == 0 ? "" : "-m" + std::string(ago < 10 ? "0" : "") + std::to_string(ago) + "m";
    list.frames.push_back({newest - i * context.supplier.step, false,
                           replaced(context.base + std::string(context.supplier.pictures), "{frame}", name)});
  }
  return list;
}

std::optional<std::string> allowedHost(RadarSupplier const& supplier, std::string const& base,
                                       std::string_view host) {
  auto address = normalizedBase(host);
  if (!address) return std::nullopt;
  if (*address == base) return address;
  constexpr std::string_view kSecure = "https://";
  if (supplier.domain.empty() || !address->starts_with(kSecure)) return std::nullopt;
  std::string const name = asciiLowered(address->substr(kSecure.size()));
  constexpr std::string_view kOfNames = "abcdefghijklmnopqrstuvwxyz0123456789.-";
  bool const isName = name.find_first_not_of(kOfNames) == std::string::npos;
  bool const isWithin = name == supplier.domain || name.ends_with("." + std::string(supplier.domain));
  return isName && isWithin ? std::optional(kSecure.data() + name) : std::nullopt;
}

std::string pictureAddress(std::string_view address, PictureArea const& area) {
  if (address.contains("{bbox}")) {
    std::string const box = replaced(address, "{bbox}", boxOf(area));
    std::string const wide = replaced(box, "{width}", std::to_string(area.columns * area.pixels));
    return replaced(wide, "{height}", std::to_string(area.rows * area.pixels));
  }
  std::string result = replaced(address, "{z}", std::to_string(area.first.zoom));
  result = replaced(result, "{x}", std::to_string(area.first.x));
  return replaced(result, "{y}", std::to_string(area.first.y));
}

std::size_t newestMeasured(std::vector<RadarFrame> const& frames) {
  std::size_t newest = 0;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    if (!frames[i].isForecast) newest = i;
  }
  return newest;
}

bool isOld(RadarFrame const& frame, RadarSupplier const& supplier, Instant now) {
  constexpr int kSteps = 3;
  return !frame.isForecast && now - frame.time > kSteps * supplier.step;
}

}  // namespace nimbara
