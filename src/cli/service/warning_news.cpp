#include "cli/service/warning_news.h"

#include "cli/service/service_records.h"

#include <algorithm>

namespace nimbara {

namespace {

std::string const& idOf(ServiceRecord const& warning) {
  return std::get<std::string>(warning.at("id"));
}

ServiceRecord const* find(ServiceRecords const& warnings, std::string const& id) {
  auto const found = std::ranges::find(warnings, id, &idOf);
  return found == warnings.end() ? nullptr : &*found;
}

/// All that were known, also those that have ended since.
ServiceRecords recordsOf(ServicePlace const& place) {
  ServiceRecords records;
  records.reserve(place.official.alerts.size());
  std::ranges::transform(place.official.alerts, std::back_inserter(records), warningRecord);
  return records;
}

void compare(std::string const& place, ServiceRecords const& before, ServiceRecords const& after,
             std::vector<WarningNews>& news) {
  using enum WarningNews::Kind;
  for (ServiceRecord const& warning : after) {
    ServiceRecord const* const former = find(before, idOf(warning));
    if (former == nullptr) {
      news.push_back({created, place, warning});
    } else if (*former != warning) {
      news.push_back({updated, place, warning});
    }
  }
  for (ServiceRecord const& warning : before) {
    if (find(after, idOf(warning)) == nullptr) news.push_back({ended, place, warning});
  }
}

}  // namespace

std::vector<WarningNews> warningNews(ServiceSnapshot const& before, ServiceSnapshot const& after,
                                     Instant now) {
  std::vector<WarningNews> news;
  for (ServicePlace const& place : after.places) {
    auto const former = std::ranges::find(before.places, place.id, &ServicePlace::id);
    ServiceRecords const known = former == before.places.end() ? ServiceRecords() : recordsOf(*former);
    compare(place.id, known, warningsOf(place, now).warnings, news);
  }
  return news;
}

}  // namespace nimbara
