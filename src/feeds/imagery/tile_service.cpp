#include "feeds/imagery/tile_service.h"

#include "feeds/imagery/radar/radar_lists.h"

namespace nimbara {

namespace {

/// The pages of a network that wants a log-in, and the messages of map services, are no pictures.
bool isPicture(std::string_view bytes) {
  using std::string_view_literals::operator""sv;
  constexpr std::string_view kPng = "\x89PNG\r\n\x1a\n"sv;
  bool const isWebP = bytes.starts_with("RIFF") && bytes.size() > 12 && bytes.substr(8, 4) == "WEBP";
  return bytes.starts_with(kPng) || isWebP;
}

std::string nameOf(TileAddress tile) {
  return " " + std::to_string(tile.zoom) + " " + std::to_string(tile.x) + " " + std::to_string(tile.y);
}

}  // namespace

TileService::TileService(ImageryRequests& requests, Clock const& clock, std::filesystem::path folder)
    : requests_(requests), clock_(clock), cache_(std::move(folder)) {}

Result<std::string, ServiceFailure> TileService::picture(RadarReading const& reading, RadarFrame const& frame,
                                                         TileAddress tile, std::stop_token const& stop) {
  return picture(reading, frame, PictureArea{tile, 1, 1, supplierOf(reading.source).pixels}, stop);
}

Result<std::string, ServiceFailure> TileService::picture(RadarReading const& reading, RadarFrame const& frame,
                                                         PictureArea const& area,
                                                         std::stop_token const& stop) {
  return picture(pictureAddress(frame.address, area), tileKey(reading, frame, area), stop);
}

Result<std::string, ServiceFailure> TileService::coverage(RadarReading const& reading, TileAddress tile,
                                                          std::stop_token const& stop) {
  auto const day = std::chrono::floor<std::chrono::days>(clock_.now()).time_since_epoch().count();
  return picture(pictureAddress(reading.coverage, {tile}),
                 reading.coverage + " " + std::to_string(day) + nameOf(tile), stop);
}

Result<std::string, ServiceFailure> TileService::picture(std::string const& address, std::string const& key,
                                                         std::stop_token const& stop) {
  if (auto kept = cache_.find(key)) return std::move(*kept);
  auto answer = requests_.get(address, kLargestPicture, stop);
  if (!answer) return std::unexpected(std::move(answer.error()));
  if (!isPicture(answer->body)) {
    return std::unexpected(
        ServiceFailure::of(ServiceFailure::Kind::unreadable, "the response is not a picture"));
  }
  cache_.keep(key, answer->body);
  return std::move(answer->body);
}

/// Some suppliers have one address for the newest picture whatever its time, and one for all forecasts of a
/// moment, which differ by what they were made from.
std::string tileKey(RadarReading const& reading, RadarFrame const& frame, PictureArea const& area) {
  std::string const from =
      frame.isForecast ? formatIso8601(reading.frames[newestMeasured(reading.frames)].time) + " " : "";
  return std::string(enumName(reading.source)) + " " + formatIso8601(frame.time) + " " + from +
         frame.address + nameOf(area.first) +
         (area.columns * area.rows == 1
              ? ""
              : " " + std::to_string(area.columns) + "x" + std::to_string(area.rows));
}

}  // namespace nimbara
