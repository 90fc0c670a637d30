#include "cli/pages/warnings/source_report.h"

#include "app/words/coverage_text.h"
#include "app/words/source_words.h"
#include "base/text/display_text.h"
#include "base/text/text.h"
#include "base/words/time_words.h"
#include "feeds/alerts/routing/official_sources.h"
#include "feeds/alerts/routing/warning_route.h"

#include <algorithm>
#include <span>
#include <utility>

namespace nimbara {

namespace {

std::optional<std::string> sentence(std::optional<ServiceFailure> const& failure) {
  return failure ? std::optional(sentenceOf(*failure)) : std::nullopt;
}

/// Those that are asked when the first has failed.
std::span<std::string_view const> followers(PlaceSources const& place) {
  return std::span(place.route).subspan(place.route.empty() ? 0 : 1);
}

SourceWords wordsOf(PlaceSources const& place, Texts const& texts) {
  return sourceWords(place.route, &place.coverage, texts);
}

std::string joined(std::vector<std::string> const& parts) {
  std::string line;
  for (std::string const& part : parts) line += (line.empty() ? "" : "; ") + part;
  return line;
}

bool isUsual(PlaceSources const& place) {
  return place.route.front() == place.possible.front();
}

/// Facts below a heading, their names in a column of their own.
class Section {
 public:
  void add(std::string_view name, std::string text) {
    if (text.empty()) return;
    nameWidth_ = std::max(nameWidth_, displayWidth(name));
    rows_.emplace_back(name, std::move(text));
  }

  std::string str(int width) const {
    constexpr int kIndent = 2;
    std::string out;
    int const rest = std::max(width - kIndent - nameWidth_ - 1, 20);
    for (auto const& [name, text] : rows_) {
      std::string_view shown = name;
      for (std::string const& line : wrapped(text, rest)) {
        out += std::string(kIndent, ' ') + fitted(shown, nameWidth_) + " " + line + "\n";
        shown = "";
      }
    }
    return out;
  }

 private:
  int nameWidth_ = 0;
  std::vector<std::pair<std::string_view, std::string>> rows_;
};

std::string section(PlaceSources const& place, SourceReportContext const& context) {
  Texts const& texts = context.texts;
  SourceWords const words = wordsOf(place, texts);
  auto const checkedAt = place.coverage.checkedAt;
  Section section;
  section.add(texts.text("desktop.sources.source"), words.service);
  if (!isUsual(place)) {
    section.add(texts.text("desktop.sources.choice"),
                texts.format("sources.chosen", warningServiceName(place.route.front())));
  }
  section.add(texts.text("sources.state"),
              coverageText(place.coverage, texts, context.calendar, context.now));
  section.add(texts.text("desktop.sources.checked"),
              checkedAt ? TimeWords(texts, context.calendar).moment(*checkedAt, context.now)
                        : std::string(texts.text("desktop.sources.never")));
  section.add(texts.text("desktop.sources.lacks"), joined(words.lacks));
  section.add(texts.text("desktop.sources.next"), words.next);
  return oneLine(place.place) + "\n" + section.str(context.width);
}

}  // namespace

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
    SourceWords const words = wordsOf(place, texts);
    OfficialSource const* const source = officialSource(words.source);
    json.separate();
    json.beginObject();
    json.member("place", place.place);
    json.member("latitude", place.coordinate.latitude);
    json.member("longitude", place.coordinate.longitude);
    json.member("country", coverage.country);
    json.member("source", words.source);
    json.member("service", words.service);
    json.member("through", source == nullptr ? Through::direct : source->through);
    json.member("chosen", !isUsual(place));
    json.member("state", coverage.state);
    json.memberOrNull("checkedAt", coverage.checkedAt);
    json.memberOrNull("since", coverage.since);
    json.memberOrNull("reason", sentence(coverage.reason));
    json.memberOrNull("insteadOf", coverage.insteadOf);
    json.memberOrNull("insteadReason", sentence(coverage.insteadReason));
    json.memberOrNull("alsoAsked", coverage.alsoAsked);
    json.memberOrNull("alsoReason", sentence(coverage.alsoReason));
    json.member("cannotGive", words.lacks);
    auto const next = followers(place);
    json.member("thenAsked", std::vector<std::string_view>(next.begin(), next.end()));
    json.member("possible", place.possible);
    json.endObject();
  }
  json.endList();
  return json.take() + "\n";
}

std::string sourceReport(std::vector<PlaceSources> const& places, SourceReportContext const& context) {
  std::string out;
  for (PlaceSources const& place : places) out += (out.empty() ? "" : "\n") + section(place, context);
  return out;
}

}  // namespace nimbara
