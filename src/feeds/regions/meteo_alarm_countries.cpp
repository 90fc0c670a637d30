#include "feeds/regions/meteo_alarm_countries.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

constexpr std::array kCountries = std::to_array<MeteoAlarmCountry>({
    {"AD", "andorra"},
    {"AT", "austria"},
    {"BA", "bosnia-herzegovina"},
    {"BE", "belgium"},
    {"BG", "bulgaria"},
    {"CH", "switzerland"},
    {"CY", "cyprus"},
    {"CZ", "czechia"},
    {"DE", "germany"},
    {"DK", "denmark"},
    {"EE", "estonia"},
    {"ES", "spain"},
    {"FI", "finland"},
    {"FR", "france"},
    {"GB", "united-kingdom"},
    {"GR", "greece"},
    {"HR", "croatia"},
    {"HU", "hungary"},
    {"IE", "ireland"},
    {"IL", "israel"},
    {"IS", "iceland"},
    {"IT", "italy"},
    {"LT", "lithuania"},
    {"LU", "luxembourg"},
    {"LV", "latvia"},
    {"MD", "moldova"},
    {"ME", "montenegro"},
    {"MK", "republic-of-north-macedonia"},
    {"MT", "malta"},
    {"NL", "netherlands"},
    {"NO", "norway"},
    {"PL", "poland"},
    {"PT", "portugal"},
    {"RO", "romania"},
    {"RS", "serbia"},
    {"SE", "sweden"},
    {"SI", "slovenia"},
    {"SK", "slovakia"},
    {"UA", "ukraine"},
});
static_assert(kCountries.size() == 39);
static_assert(std::ranges::is_sorted(kCountries, {}, &MeteoAlarmCountry::code));

}  // namespace

std::span<MeteoAlarmCountry const> meteoAlarmCountries() {
  return kCountries;
}

std::string warningCountry(std::string_view countryCode) {
  std::string iso = isoCountryCode(countryCode);
  if (iso == "AX") return "FI";
  if (iso == "SJ") return "NO";
  return iso;
}

std::optional<std::string_view> meteoAlarmFeedName(std::string_view countryCode) {
  std::string const country = warningCountry(countryCode);
  auto const* const found = std::ranges::lower_bound(kCountries, country, {}, &MeteoAlarmCountry::code);
  if (found == kCountries.end() || found->code != country) return std::nullopt;
  return found->feedName;
}

}  // namespace nimbara
