#include "app/settings/service_directory.h"

#include "base/text/text.h"

#include <array>

namespace nimbara {

namespace {

/// docs/services.md says of each what it is asked for; those without a host are asked only where the user
/// names one.
constexpr std::array<std::string_view, enumNames<Service>.size()> kHosts{
    "https://api.open-meteo.com",
    "https://geocoding-api.open-meteo.com",
    "https://weatherkit.apple.com",
    "https://api.met.no",
    "https://wttr.in",
    "https://api.weather.gov",
    "https://services.swpc.noaa.gov",
    "https://earthquake.usgs.gov",
    "https://celestrak.org",
    "",
    "https://feeds.meteoalarm.org",
    "https://gitlab.com",
    "https://air-quality-api.open-meteo.com",
    "https://www.nhc.noaa.gov",
    "https://mapservices.weather.noaa.gov",
    "https://firms.modaps.eosdis.nasa.gov",
    "https://cadataapi.state.gov",
    "",
};

}  // namespace

std::optional<std::string> normalizedBase(std::string_view address) {
  address = trimmed(address);
  bool const plain = address.starts_with("http://");
  if (!plain && !address.starts_with("https://")) return std::nullopt;
  while (address.ends_with('/')) address.remove_suffix(1);
  bool const hasHost = address.size() > std::string_view(plain ? "http://" : "https://").size();
  if (!hasHost || address.find_first_of(" ?#") != std::string_view::npos) return std::nullopt;
  return std::string(address);
}

ServiceDirectory::ServiceDirectory(Configuration configuration, std::string servicesBase)
    : configuration_(std::move(configuration)), servicesBase_(std::move(servicesBase)) {}

ServiceAddress ServiceDirectory::address(Service service) const {
  ServiceAddress address{std::string(kHosts[static_cast<std::size_t>(service)]), {}};
  if (auto const found = configuration_.services.find(enumName(service));
      found != configuration_.services.end()) {
    if (found->second.host) address.baseUrl = normalizedBase(*found->second.host).value_or(address.baseUrl);
    address.apiKey = found->second.apiKey.value_or("");
  }
  // The model runs on the user's own machine: nothing stands in for it.
  bool const isOutside = service != Service::languageModel;
  if (isOutside && !servicesBase_.empty()) address.baseUrl = servicesBase_;
  return address;
}

bool ServiceDirectory::isChosen(Service service) const {
  auto const found = configuration_.services.find(enumName(service));
  return found != configuration_.services.end() && found->second.host && normalizedBase(*found->second.host);
}

std::string_view defaultHost(Service service) {
  return kHosts[static_cast<std::size_t>(service)];
}

}  // namespace nimbara
