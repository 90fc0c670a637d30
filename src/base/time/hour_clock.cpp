#include "base/time/hour_clock.h"

#include <unicode/locid.h>
#include <unicode/ures.h>

#include <memory>
#include <optional>

namespace nimbara {

namespace {

constexpr std::string_view kTwelve = "@hours=h12";
constexpr std::string_view kTwentyFour = "@hours=h23";

struct CloseBundle {
  void operator()(UResourceBundle* bundle) const { ures_close(bundle); }
};
using Bundle = std::unique_ptr<UResourceBundle, CloseBundle>;

/// What CLDR says of a region ("US") or of a language in it ("fr_CA"); nothing where it says nothing.
std::optional<HourClock> customOf(std::string const& key) {
  UErrorCode status = U_ZERO_ERROR;
  Bundle const supplement(ures_openDirect(nullptr, "supplementalData", &status));
  Bundle const customs(ures_getByKey(supplement.get(), "timeData", nullptr, &status));
  Bundle const custom(ures_getByKey(customs.get(), key.c_str(), nullptr, &status));
  std::int32_t length = 0;
  UChar const* const letter = ures_getStringByKey(custom.get(), "preferred", &length, &status);
  if (U_FAILURE(status) || length == 0) return std::nullopt;
  return letter[0] == u'h' ? HourClock::twelve : HourClock::twentyFour;
}

}  // namespace

HourClock hourClockOf(std::string_view locale) {
  std::string const plain(locale.substr(0, locale.find_first_of(".@")));
  if (plain.empty() || plain == "C" || plain == "POSIX") return HourClock::twelve;
  icu::Locale known(plain.c_str());
  UErrorCode status = U_ZERO_ERROR;
  known.addLikelySubtags(status);
  std::string const region = known.getCountry();
  std::string const withLanguage = std::string(known.getLanguage()) + "_" + region;
  for (std::string const& key : {withLanguage, region}) {
    if (auto const clock = customOf(key)) return *clock;
  }
  return HourClock::twentyFour;
}

std::string withHourClock(std::string_view locale, HourClock clock) {
  std::string_view const plain = locale.substr(0, locale.find('@'));
  return std::string(plain).append(clock == HourClock::twelve ? kTwelve : kTwentyFour);
}

HourClock hourClockIn(std::string_view locale) {
  return locale.ends_with(kTwentyFour) ? HourClock::twentyFour : HourClock::twelve;
}

}  // namespace nimbara
