// The only place that knows the hosts of the outside services.
#pragma once

#include "app/settings/configuration.h"
#include "base/enum_names.h"
#include "providers/common/service_address.h"

#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

enum class Service {
  openMeteo,
  openMeteoGeocoding,
  appleWeather,
  yrNo,
  wttrIn,
  nws,
  swpc,
  usgs,
  celestrak,
  feedServer,  ///< asked in place of the two before it, where the user names one
  meteoAlarm,
  meteoAlarmRegions,
  airQuality,
  nhc,
  nhcMaps,
  firms,
  travelAdvisories,
  lightning,  ///< this and the next have no address unless the user names one
  languageModel
};

template <>
inline constexpr auto enumNames<Service> = std::to_array<std::string_view>(
    {"openMeteo", "openMeteoGeocoding", "appleWeather", "yrNo", "wttrIn", "nws", "swpc", "usgs", "celestrak",
     "feedServer", "meteoAlarm", "meteoAlarmRegions", "airQuality", "nhc", "nhcMaps", "firms",
     "travelAdvisories", "lightning", "languageModel"});
static_assert(enumNamesComplete(Service::languageModel));

/// An http or https address without the slash at its end; nothing for other texts.
std::optional<std::string> normalizedBase(std::string_view address);

/// "https://api.open-meteo.com"; empty for a service that has none of its own.
std::string_view defaultHost(Service service);

class ServiceDirectory {
 public:
  /// `servicesBase`, when not empty, stands in place of every service's scheme and host.
  ServiceDirectory(Configuration configuration, std::string servicesBase);

  ServiceAddress address(Service service) const;
  /// The user has named an address for it.
  bool isChosen(Service service) const;
  /// The base that stands in for the services; empty for the services themselves.
  std::string const& standIn() const { return servicesBase_; }

 private:
  Configuration configuration_;
  std::string servicesBase_;
};

}  // namespace nimbara
