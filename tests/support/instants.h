// Moments of tests, written as texts.
#pragma once

#include "base/time/calendar.h"
#include "base/time/instant.h"

#include <stdexcept>
#include <string>

namespace nimbara::test {

inline Instant at(std::string const& text) {
  auto const instant = parseIso8601(text);
  if (!instant) throw std::invalid_argument("no moment: " + text);
  return *instant;
}

inline Date date(std::string const& text) {
  auto const parsed = parseDate(text);
  if (!parsed) throw std::invalid_argument("no date: " + text);
  return *parsed;
}

inline Calendar zone(std::string const& id) {
  auto const calendar = Calendar::forZone(id);
  if (!calendar) throw std::invalid_argument("no zone: " + id);
  return *calendar;
}

}  // namespace nimbara::test
