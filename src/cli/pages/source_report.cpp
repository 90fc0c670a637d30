#include "cli/pages/source_report.h"

#include "app/words/coverage_text.h"
#include "base/text/display_text.h"
#include "base/text/text.h"
#include "base/words/time_words.h"
#include "feeds/alerts/official_sources.h"
#include "feeds/alerts/warning_route.h"

namespace nimbara {

namespace {

std::vector<std::string> lacksOf(std::string_view name, Texts const& texts) {
  std::vector<std::string> lacks;
  OfficialSource const* const source = officialSource(name);
  if (source == nullptr) return lacks;
  for (std::string_view const key : source->lacks) {
    if (!key.empty()) lacks.emplace_back(texts.text(key));
  }
  return lacks;
}

/// Those that are asked when the first has failed.
std::span<std::string_view const> followers(PlaceSources const& place) {
  return std::span(place.route).subspan(place.route.empty() ? 0 : 1);
}

std::string joined(std::vector<std::string> const& parts) {
  std::string line;
  for (std::string const& part : parts) line += (line.empty() ? "" : "; ") + part;
  return line;
}

std::string serviceNames(std::span<std::string_view const> names) {
  std::vector<std::string> services;
  services.reserve(names.size());
  for (std::string_view const name : names) services.push_back(warningServiceName(name));
  return joined(services);
}

bool isUsual(PlaceSources const& place) {
  return place.route.front() == place.possible.front();
}

std::string row(std::string_view label, std::string const& text) {
  return "  " + fitted(label, 15) + " " + text + "\n";
}

std::string section(PlaceSources const& place, Texts const& texts, Calendar const& calendar, Instant now) {
  auto const lacks = lacksOf(place.serving(), texts);
  std::string out = oneLine(place.place) + "\n";
  out += row("asked", warningServiceName(place.route.front()) + (isUsual(place) ? "" : " (your choice)"));
  out += row("state", coverageText(place.coverage, texts, calendar, now));
  auto const checkedAt = place.coverage.checkedAt;
  out += row("last good check", checkedAt ? TimeWords(texts, calendar).moment(*checkedAt, now) : "never");
  if (!lacks.empty()) out += row("cannot give", joined(lacks));
  auto const next = followers(place);
  return out + row("if it fails", next.empty() ? "what was known is shown with the time of the last check"
                                               : serviceNames(next));
}

}  // namespace

std::string_view PlaceSources::serving() const {
  return coverage.source ? std::string_view(*coverage.source) : route.front();
}

GovAlertPlace askedPlace(SavedPlace const& saved) {
  GovAlertPlace asked = govAlertPlace(saved.coordinate);
  asked.chosenSource = saved.warningSource.value_or("");
  return asked;
}

PlaceSources placeSources(SavedPlace const& saved, GovAlertService& service, Instant now) {
  GovAlertPlace const asked = askedPlace(saved);
  auto const coverage = agedCoverage(coverageOf(service.keptAlerts(asked), asked.countryCode), now);
  return {saved.name, saved.coordinate, warningRoute(asked), possibleSources(asked), coverage.front()};
}

std::string sourceReportJson(std::vector<PlaceSources> const& places, Texts const& texts) {
  JsonWriter json;
  json.beginList();
  for (PlaceSources const& place : places) {
    SourceCoverage const& coverage = place.coverage;
    OfficialSource const* const source = officialSource(place.serving());
    json.separate();
    json.beginObject();
    json.member("place", place.place);
    json.member("latitude", place.coordinate.latitude);
    json.member("longitude", place.coordinate.longitude);
    json.member("country", coverage.country);
    json.member("source", place.serving());
    json.member("service", warningServiceName(place.serving()));
    json.member("through", source == nullptr ? Through::direct : source->through);
    json.member("chosen", !isUsual(place));
    json.member("state", coverage.state);
    json.memberOrNull("checkedAt", coverage.checkedAt);
    json.memberOrNull("since", coverage.since);
    json.memberOrNull("reason", coverage.reason.transform(sentenceOf));
    json.memberOrNull("insteadOf", coverage.insteadOf);
    json.memberOrNull("insteadReason", coverage.insteadReason.transform(sentenceOf));
    json.member("cannotGive", lacksOf(place.serving(), texts));
    auto const next = followers(place);
    json.member("thenAsked", std::vector<std::string_view>(next.begin(), next.end()));
    json.member("possible", place.possible);
    json.endObject();
  }
  json.endList();
  return json.take() + "\n";
}

std::string sourceReport(std::vector<PlaceSources> const& places, Texts const& texts,
                         Calendar const& calendar, Instant now) {
  std::string out;
  for (PlaceSources const& place : places) {
    out += (out.empty() ? "" : "\n") + section(place, texts, calendar, now);
  }
  return out;
}

}  // namespace nimbara
