#include "feeds/meteoalarm/meteo_alarm_json_feed.h"

#include "base/text/text.h"
#include "feeds/awareness/meteo_alarm_classes.h"
#include "feeds/cap/cap_json.h"
#include "feeds/cap/cap_language.h"
#include "feeds/meteoalarm/meteo_alarm_details.h"

#include <algorithm>
#include <map>
#include <set>

namespace nimbara {

namespace {

constexpr std::size_t kLongestName = 64;

/// What ends an address of somebody else's making: letters, digits and hyphens.
bool isDocumentName(std::string_view name) {
  auto const isPlain = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-';
  };
  return !name.empty() && name.size() <= kLongestName && std::ranges::all_of(name, isPlain);
}

std::string momentKey(std::optional<Instant> moment) {
  return moment ? std::to_string(moment->time_since_epoch().count()) : "-";
}

/// The same for blocks that tell of one event in several languages.
std::string eventKey(CapInfo const& info) {
  std::set<CapValue> codes;
  for (CapArea const& area : info.areas) codes.insert(area.geocodes.begin(), area.geocodes.end());
  std::string key = momentKey(info.onset) + "\n" + momentKey(info.expires) + "\n" + info.severity + "\n" +
                    std::string(valueOf(info.parameters, "awareness_type").value_or("")) + "\n" +
                    std::to_string(info.areas.size());
  for (CapValue const& code : codes) key += "\n" + code.name + ":" + code.value;
  return key;
}

/// Which of a message's blocks become entries, by their indexes.
std::vector<std::size_t> chosenBlocks(CapAlert const& alert) {
  constexpr std::string_view kReader = "en";
  std::vector<std::string> keys;
  std::map<std::string, std::string, std::less<>> languages;  // by event
  for (CapInfo const& info : alert.infos) {
    keys.push_back(eventKey(info));
    auto const [language, isFirst] = languages.try_emplace(keys.back(), info.language);
    bool const isBetter =
        languageRank(info.language, kReader) == 0 && languageRank(language->second, kReader) != 0;
    if (isBetter) language->second = info.language;
  }
  std::vector<std::size_t> chosen;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (languages.at(keys[i]) == alert.infos[i].language) chosen.push_back(i);
  }
  return chosen;
}

/// "Wind" of "1; Wind".
std::string_view awarenessWord(CapInfo const& info) {
  std::string_view const type = valueOf(info.parameters, "awareness_type").value_or("");
  auto const blank = type.find(';');
  return blank == std::string_view::npos ? std::string_view() : trimmed(type.substr(blank + 1));
}

/// In the words of the Atom feed: "Orange Wind Warning issued for Coast".
std::string titleOf(CapInfo const& info, CapArea const& area) {
  std::string colour = colourOfLevel(valueOf(info.parameters, "awareness_level").value_or(""));
  if (colour.empty()) return info.headline;
  colour.front() = static_cast<char>(colour.front() - 'a' + 'A');
  std::string_view const kind = awarenessWord(info);
  return colour + " " + std::string(kind) + (kind.empty() ? "" : " ") + "Warning issued for " + area.areaDesc;
}

void addCodes(RawEntry& entry, std::vector<CapValue> const& codes) {
  for (CapValue const& code : codes) {
    if (code.name.empty() || code.value.empty()) continue;
    if (code.name == kNuts3Registry) {
      entry.nuts3Codes.push_back(code.value);
    } else {
      entry.otherCodes.push_back({code.name, code.value});
    }
  }
  // What an event is about is told by the first; the Atom feed has these.
  std::ranges::stable_partition(entry.otherCodes,
                                [](RegionCode const& code) { return code.registry == kEmmaRegistry; });
}

RawEntry entryOf(CapAlert const& alert, std::size_t block, std::size_t index) {
  CapInfo const& info = alert.infos[block];
  CapArea const& area = info.areas[index];
  RawEntry entry;
  entry.event = info.event;
  entry.severity = info.severity;
  entry.title = titleOf(info, area);
  entry.areaDesc = area.areaDesc;
  entry.polygons = area.polygons;
  entry.circles = area.circles;
  addCodes(entry, area.geocodes);
  entry.sent = alert.sent;
  entry.onset = info.onset;
  entry.expires = info.expires;
  entry.identifier = alert.identifier;
  entry.status = alert.status;
  entry.messageType = alert.msgType;
  entry.infoIndex = block;
  entry.areaIndex = index;
  return entry;
}

/// By the identifiers of messages when the last one that refers to each was sent.
using Referrers = std::map<std::string_view, std::optional<Instant>>;

Referrers referrersIn(std::vector<ListedCapAlert> const& list) {
  Referrers referrers;
  for (ListedCapAlert const& one : list) {
    for (CapReference const& older : one.alert.references) {
      auto& sent = referrers[older.identifier];
      sent = std::max(sent, one.alert.sent);
    }
  }
  return referrers;
}

/// Only by a later message: one that names itself, or two that name each other, would leave nothing.
bool isReplaced(CapAlert const& alert, Referrers const& referrers) {
  auto const found = referrers.find(alert.identifier);
  return found != referrers.end() && alert.sent < found->second;
}

}  // namespace

Result<MeteoAlarmJsonFeed, std::string> parseMeteoAlarmJson(std::string_view body,
                                                            std::string_view documents) {
  auto list = parseCapJsonList(body);
  if (!list) return std::unexpected(list.error());
  Referrers const referrers = referrersIn(*list);
  MeteoAlarmJsonFeed feed;
  for (ListedCapAlert const& one : *list) {
    if (isReplaced(one.alert, referrers)) continue;
    auto const message = std::make_shared<CapAlert const>(one.alert);
    std::string const link = isDocumentName(one.name) ? std::string(documents) + one.name : std::string();
    for (std::size_t const block : chosenBlocks(*message)) {
      for (std::size_t area = 0; area < message->infos[block].areas.size(); ++area) {
        feed.entries.push_back(entryOf(*message, block, area));
        feed.entries.back().link = link;
      }
    }
    feed.messages.emplace(message->identifier, message);
    if (!link.empty()) feed.messages.emplace(link, message);
  }
  return feed;
}

}  // namespace nimbara
