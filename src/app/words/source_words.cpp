#include "app/words/source_words.h"

#include "base/words/list_text.h"
#include "feeds/alerts/routing/official_sources.h"

#include <algorithm>

namespace nimbara {

namespace {

std::vector<std::string> lacksOf(std::string_view source, Texts const& texts) {
  std::vector<std::string> lacks;
  OfficialSource const* const row = officialSource(source);
  if (row == nullptr) return lacks;
  for (std::string_view const key : row->lacks) {
    if (!key.empty()) lacks.emplace_back(texts.text(key));
  }
  return lacks;
}

/// Nothing is left to ask: nobody serves, or everybody was asked in vain.
bool isExhausted(SourceCoverage const& coverage) {
  if (coverage.state == CoverageState::uncovered) return true;
  if (coverage.state != CoverageState::unchecked || !coverage.since) return false;
  return !coverage.reason || coverage.reason->kind != ServiceFailure::Kind::notAskedLately;
}

std::string namesBehind(std::vector<std::string_view> const& route, std::string_view serving,
                        Texts const& texts) {
  auto const found = std::ranges::find(route, serving);
  std::string names;
  for (auto one = found == route.end() ? route.begin() : std::next(found); one != route.end(); ++one)
    appendItem(names, warningServiceName(*one), texts);
  return names;
}

}  // namespace

SourceWords sourceWords(std::vector<std::string_view> const& route, SourceCoverage const* coverage,
                        Texts const& texts) {
  SourceWords words;
  if (!route.empty()) words.source = route.front();
  if (coverage != nullptr && coverage->source) {
    OfficialSource const* const row = officialSource(*coverage->source);
    if (row != nullptr) words.source = row->name;
  }
  if (!words.source.empty()) words.service = warningServiceName(words.source);
  words.lacks = lacksOf(words.source, texts);
  if (coverage != nullptr && isExhausted(*coverage)) return words;
  words.next = namesBehind(route, words.source, texts);
  if (words.next.empty()) words.next = texts.text("desktop.sources.next.nobody");
  return words;
}

}  // namespace nimbara
