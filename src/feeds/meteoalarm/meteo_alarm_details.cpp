#include "feeds/meteoalarm/meteo_alarm_details.h"

#include "base/text/text.h"
#include "feeds/awareness/meteo_alarm_classes.h"
#include "feeds/cap/cap_language.h"

#include <algorithm>
#include <set>

namespace nimbara {

namespace {

bool isBlank(std::string_view text) {
  return trimmed(text).empty();
}

std::set<CapValue> codesOf(CapInfo const& info) {
  std::set<CapValue> codes;
  for (CapArea const& area : info.areas) codes.insert(area.geocodes.begin(), area.geocodes.end());
  return codes;
}

bool hasCodeOf(CapArea const& area, RawEntry const& entry) {
  return std::ranges::any_of(area.geocodes, [&](CapValue const& code) {
    return code.name == kNuts3Registry
               ? std::ranges::find(entry.nuts3Codes, code.value) != entry.nuts3Codes.end()
               : std::ranges::find(entry.otherCodes, RegionCode{code.name, code.value}) !=
                     entry.otherCodes.end();
  });
}

/// How surely a block has the entry's area: by its code, by its name alone, not at all.
int areaFit(CapInfo const& info, RawEntry const& entry) {
  constexpr int kByCode = 4;
  int fit = 0;
  for (CapArea const& area : info.areas) {
    fit = std::max(fit, hasCodeOf(area, entry) ? kByCode : area.areaDesc == entry.areaDesc ? 1 : 0);
  }
  return fit;
}

bool hasPeriodOf(CapInfo const& info, RawEntry const& entry) {
  bool const begins = !info.onset || !entry.onset || info.onset == entry.onset;
  return begins && (!info.expires || !entry.expires || info.expires == entry.expires);
}

/// The block that the entry names, or the one that fits it best; null when none has to do with it.
CapInfo const* blockOf(CapAlert const& document, RawEntry const& entry) {
  if (entry.infoIndex && *entry.infoIndex < document.infos.size()) return &document.infos[*entry.infoIndex];
  CapInfo const* best = nullptr;
  int bestFit = 0;
  for (CapInfo const& info : document.infos) {
    int const area = areaFit(info, entry);
    if (area == 0) continue;
    int const fit = area + (hasPeriodOf(info, entry) ? 2 : 0) + (info.event == entry.event ? 1 : 0);
    if (fit > bestFit) best = &info;
    bestFit = std::max(bestFit, fit);
  }
  return best;
}

/// Whether two blocks tell of one event in the same area, so that they differ in their language only.
bool areOneEvent(CapInfo const& a, CapInfo const& b) {
  if (&a == &b) return true;
  if (a.onset != b.onset || a.expires != b.expires || a.severity != b.severity) return false;
  if (valueOf(a.parameters, "awareness_type") != valueOf(b.parameters, "awareness_type")) return false;
  return a.areas.size() == b.areas.size() && std::ranges::equal(codesOf(a), codesOf(b)) &&
         a.language != b.language;
}

WarningDetails detailsIn(CapInfo const& info, CapAlert const& document) {
  WarningDetails details;
  details.text = isBlank(info.description) ? info.headline : info.description;
  if (isBlank(details.text)) details.text.clear();
  if (!isBlank(info.instruction)) details.instruction = info.instruction;
  details.language = info.language;
  details.issuer = info.senderName;
  details.colour = colourOfLevel(valueOf(info.parameters, "awareness_level").value_or(""));
  details.type = awarenessTypeOf(valueOf(info.parameters, "awareness_type").value_or(""));
  details.sent = document.sent;
  details.sender = document.sender;
  details.references = document.references;
  return details;
}

}  // namespace

std::optional<WarningDetails> detailsOf(CapAlert const& document, RawEntry const& entry,
                                        std::string_view language) {
  CapInfo const* const own = blockOf(document, entry);
  if (own == nullptr) return std::nullopt;
  CapInfo const* best = nullptr;
  for (CapInfo const& info : document.infos) {
    if (!areOneEvent(*own, info)) continue;
    bool const isBetter =
        best == nullptr || languageRank(info.language, language) < languageRank(best->language, language);
    if (isBetter) best = &info;
  }
  return detailsIn(*best, document);
}

std::string languageOfEntry(CapAlert const& document, RawEntry const& entry) {
  CapInfo const* const own = blockOf(document, entry);
  return own == nullptr ? std::string() : own->language;
}

}  // namespace nimbara
