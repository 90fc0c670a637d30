#include "app/words/hazards/hazard_text.h"

#include "base/bearing.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/compass_point.h"
#include "base/words/country_names.h"
#include "base/words/grouped_text.h"
#include "base/words/time_words.h"
#include "feeds/fetching/failure_words.h"
#include "providers/common/compass.h"

namespace nimbara {

namespace {

constexpr double kKmhInMs = 3.6;

std::string checkedAt(HazardCheck const& check, HazardWords const& words) {
  return words.moment(check.checkedAt.value_or(words.now));
}

/// The day alone: what was written weeks ago has no hour that matters.
std::string dayOf(Instant moment, HazardWords const& words) {
  TimeWords const time(words.texts, words.calendar);
  return time.format(moment, words.texts.text("report.dateFormat"));
}

std::string key(std::string_view kind, std::string_view ending) {
  return std::string(kind) + "." + std::string(ending);
}

}  // namespace

std::string HazardWords::distance(double km) const {
  return groupedText(display(km, units.distance), texts) + " " + std::string(symbol(units.distance));
}

std::string HazardWords::away(Coordinate from, Coordinate to) const {
  std::string const point = compassPoint(compassPoint(bearingDegrees(from, to)), texts);
  return texts.format("hazard.away", distance(haversineKm(from, to)), point);
}

std::string HazardWords::speed(double metresASecond) const {
  return display(metresASecond * kKmhInMs, units.wind) + " " + std::string(symbol(units.wind));
}

std::string HazardWords::moment(Instant instant) const {
  return TimeWords(texts, calendar).moment(instant, now);
}

std::string uncheckedText(std::string_view kind, HazardCheck const& check, HazardWords const& words) {
  if (check.state == HazardState::notConfigured) return std::string(words.texts.text(key(kind, "notSet")));
  if (check.state != HazardState::unchecked) return {};
  std::string const reason =
      failureText(check.failure.value_or(ServiceFailure::of(ServiceFailure::Kind::noAnswer)), words.texts);
  return words.texts.format(key(kind, "unchecked"), words.moment(check.failedSince.value_or(words.now)),
                            reason);
}

std::string fireStateText(HazardCheck const& check, std::size_t count, double radiusKm,
                          HazardWords const& words) {
  if (check.state == HazardState::none) {
    return words.texts.format("fires.none", words.distance(radiusKm), checkedAt(check, words));
  }
  if (check.state != HazardState::listed) return uncheckedText("fires", check, words);
  return words.texts.format("fires.count", count, words.distance(radiusKm), checkedAt(check, words));
}

HazardLine fireLine(FireDetection const& fire, Coordinate place, HazardWords const& words) {
  return {
      words.away(place, fire.coordinate),
      words.texts.format("fires.seen", fire.hotSpots, roundedText(fire.frp), words.moment(fire.detectedAt))};
}

std::string lightningStateText(HazardCheck const& check, std::size_t count, double radiusKm,
                               HazardWords const& words) {
  if (check.state == HazardState::none) {
    return words.texts.format("lightning.none", words.distance(radiusKm), checkedAt(check, words));
  }
  if (check.state != HazardState::listed) return uncheckedText("lightning", check, words);
  return words.texts.format("lightning.count", count, words.distance(radiusKm), checkedAt(check, words));
}

HazardLine strikeLine(LightningStrike const& strike, Coordinate place, HazardWords const& words) {
  return {words.away(place, strike.coordinate), words.moment(strike.time)};
}

std::string advisoryStateText(HazardCheck const& check, std::size_t count, std::string const& country,
                              HazardWords const& words) {
  std::string const name = countryName(country, words.texts.language());
  switch (check.state) {
    case HazardState::uncovered:
      return name.empty() ? std::string(words.texts.text("advisories.noCountry"))
                          : words.texts.format("advisories.none", name, checkedAt(check, words));
    case HazardState::listed:
    case HazardState::none:
      return words.texts.format("advisories.count", count, checkedAt(check, words));
    case HazardState::unchecked:
    case HazardState::notConfigured:
      break;
  }
  return uncheckedText("advisories", check, words);
}

std::string advisoryCountryText(std::string_view source, Texts const& texts) {
  return countryName(source == "uk" ? "GB" : asciiUppered(source), texts.language());
}

std::string advisorySourceText(AdvisorySource source, Texts const& texts) {
  if (source == AdvisorySource::us) return std::string(texts.text("advisories.source"));
  return std::string(texts.text("advisories.source." + std::string(enumName(source))));
}

HazardLine advisoryLine(TravelAdvisory const& advisory, HazardWords const& words) {
  Texts const& texts = words.texts;
  std::string const country = countryName(advisory.country, texts.language());
  auto const issued = advisory.updated ? advisory.updated : advisory.published;
  std::string title =
      advisory.advice.empty()
          ? texts.format("advisories.title", country, advisory.level,
                         texts.text("advisories.level." + std::to_string(advisory.level)))
          : texts.format("advisories.stated", country, texts.text("advisories.advice." + advisory.advice));
  if (advisory.hasRegions) title = texts.format("advisories.regions", title);
  return {title, issued ? texts.format("advisories.issued", dayOf(*issued, words)) : std::string()};
}

}  // namespace nimbara
