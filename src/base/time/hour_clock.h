// Whether hours are written by a clock of 12 or of 24 hours. The choice travels in the name of a locale, as
// the keyword "hours" that CLDR has for it ("pt_BR@hours=h23"); `Texts::load` reads it there.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

enum class HourClock { twelve, twentyFour };

/// The custom of a locale: 12 hours in the United States ("en_US.UTF-8") and where the locale says nothing
/// ("C"), 24 in all others.
HourClock hourClockOf(std::string_view locale);

/// The locale's name with the clock as its keyword; one that it had is replaced.
std::string withHourClock(std::string_view locale, HourClock clock);

/// What the keyword of a locale's name says; 12 hours without one.
HourClock hourClockIn(std::string_view locale);

}  // namespace nimbara
