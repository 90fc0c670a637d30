#include "feeds/imagery/cloud_service.h"

#include "feeds/imagery/radar/radar_lists.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

using Kind = ServiceFailure::Kind;

struct CloudSupplier {
  CloudSource source;
  std::string_view list;  ///< path of the capabilities
  std::string_view map;   ///< path of pictures, up to the layer
  std::string_view workspace, layer;
};

constexpr std::array kSuppliers = std::to_array<CloudSupplier>({
    {CloudSource::nowCoast, "/geoserver/satellite/ows?service=WMS&version=1.3.0&request=GetCapabilities",
     "/geoserver/satellite/ows", "", "global_longwave_imagery_mosaic"},
    {CloudSource::eumetView, "/geoserver/mumi/ows?service=WMS&version=1.3.0&request=GetCapabilities",
     "/geoserver/wms", "mumi:", "worldcloudmap_ir108"},
});
static_assert(kSuppliers.size() == enumNames<CloudSource>.size());

/// Clocks differ a little.
constexpr std::chrono::minutes kCloudsAhead{5};
constexpr std::uintmax_t kTwoPictures = std::uintmax_t{2} * CloudService::kLargestPicture;

std::string addressOf(CloudSupplier const& supplier, Instant time) {
  return std::string(supplier.map) +
         "?service=WMS&version=1.3.0&request=GetMap&layers=" + std::string(supplier.workspace) +
         std::string(supplier.layer) +
         "&styles=&crs=CRS:84&bbox=-180,-72.7,180,72.7&width=" + std::to_string(CloudPicture::kWidth) +
         "&height=" + std::to_string(CloudPicture::kHeight) +
         "&format=image/png&transparent=true&time=" + formatIso8601(time);
}

/// The newest listed time that is neither to come nor too long ago.
Result<Instant, ServiceFailure> newestOf(std::string_view list, CloudSupplier const& supplier, Instant now) {
  auto const listed = layerTimesIn(list, supplier.layer);
  if (!listed) {
    return std::unexpected(ServiceFailure::of(
        Kind::unreadable,
        "the response is not a valid list of cloud pictures (" + listed.error().text() + ")"));
  }
  auto const after = std::ranges::upper_bound(listed->times, now + kCloudsAhead);
  if (after == listed->times.begin() || now - *(after - 1) >= CloudPicture::kLife)
    return std::unexpected(ServiceFailure::of(Kind::unreadable, "its newest picture of clouds is too old"));
  return *(after - 1);
}

/// No connection says nothing about the suppliers.
bool isOfNetwork(ServiceFailure const& failure) {
  return failure.kind == Kind::network && (failure.transport == HttpError::Kind::unresolvedHost ||
                                           failure.transport == HttpError::Kind::connectionFailed);
}

}  // namespace

CloudService::CloudService(ImageryRequests& requests, Clock const& clock, Options options)
    : requests_(requests),
      clock_(clock),
      options_(std::move(options)),
      cache_(options_.folder, kTwoPictures) {}

CloudReading CloudService::fetch(Check const& isUsable, std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  if (restsUntil_ && clock_.steadyNow() < *restsUntil_) return kept_;
  std::vector<CloudMiss> misses;
  for (CloudSupplier const& supplier : kSuppliers) {
    auto picture = ask(supplier.source, isUsable, stop);
    if (stop.stop_requested()) return kept_;
    if (picture) {
      kept_ = {std::move(*picture), std::move(misses), clock_.now()};
      restsUntil_ = clock_.steadyNow() + kRest;
      return kept_;
    }
    misses.push_back({supplier.source, std::move(picture.error())});
  }
  bool const isOffline =
      std::ranges::all_of(misses, [](CloudMiss const& miss) { return isOfNetwork(miss.failure); });
  restsUntil_ = clock_.steadyNow() + (isOffline ? std::chrono::minutes(kRestWithoutNetwork) : kRest);
  kept_.misses = std::move(misses);
  return kept_;
}

Result<CloudPicture, ServiceFailure> CloudService::ask(CloudSource source, Check const& isUsable,
                                                       std::stop_token const& stop) {
  CloudSupplier const& supplier = kSuppliers[static_cast<std::size_t>(source)];
  std::string const& base = source == CloudSource::nowCoast ? options_.nowCoastBase : options_.eumetViewBase;
  auto const list = requests_.get(base + std::string(supplier.list), kLargestList, stop);
  if (!list) return std::unexpected(list.error());
  auto const time = newestOf(list->body, supplier, clock_.now());
  if (!time) return std::unexpected(time.error());
  std::string const address = base + addressOf(supplier, *time);
  auto bytes = bytesOf(address, stop);
  if (!bytes) return std::unexpected(std::move(bytes.error()));
  if (!isUsable(*bytes))
    return std::unexpected(ServiceFailure::of(Kind::unreadable, "its picture does not show clouds"));
  cache_.keep(address, *bytes);
  return CloudPicture{source, *time, std::make_shared<std::string const>(std::move(*bytes))};
}

Result<std::string, ServiceFailure> CloudService::bytesOf(std::string const& address,
                                                          std::stop_token const& stop) {
  if (auto kept = cache_.find(address)) return std::move(*kept);
  auto answer = requests_.get(address, kLargestPicture, stop);
  if (!answer) return std::unexpected(std::move(answer.error()));
  return std::move(answer->body);
}

}  // namespace nimbara
