#include "notifications/log/notification_log.h"

#include "base/json/json_codec.h"
#include "base/text/text.h"
#include "notifications/rules/rule_settings.h"

#include <algorithm>
#include <iterator>

namespace nimbara {

template Result<std::vector<LoggedNotification>, DecodeError> decodeJson(std::string_view);

namespace {

constexpr std::string_view kLog = "notif_log";
/// In bytes; what a notification says in full has been shown.
constexpr std::size_t kLongestBody = 300;
constexpr std::chrono::hours kFreshMemory{1};

/// Of what people were sent of an event that is in force.
constexpr std::string_view kSentOutcomes[] = {enumName(RuleOutcome::announced),
                                              enumName(RuleOutcome::escalated), enumName(RuleOutcome::listed),
                                              enumName(RuleOutcome::endMoved)};

LoggedMeasurement logged(Measurement const& measurement) {
  return {std::string(measurement.what), measurement.value, std::string(enumName(measurement.needs)),
          measurement.limit, std::string(measurement.unit)};
}

/// Also in the scripts that have stops of their own.
bool endsSentence(std::string_view text) {
  constexpr std::string_view kStops[] = {".", "!", "?", ":", ";", ",", "…", "。", "！", "？", "：", "；"};
  return std::ranges::any_of(kStops, [text](std::string_view stop) { return text.ends_with(stop); });
}

/// The newest line of the same notification says the same, and nothing was sent. That something was sent
/// already is no news either while its telling is still remembered by everybody.
bool isRepetition(std::vector<LoggedNotification> const& log, LoggedNotification const& line) {
  auto const outcome = enumFromName<RuleOutcome>(line.outcome);
  if (outcome && isDelivery(*outcome)) return false;
  auto const isSame = [&](LoggedNotification const& old) {
    return old.identifier == line.identifier && old.place == line.place;
  };
  auto const last = std::find_if(log.rbegin(), log.rend(), isSame);
  if (last == log.rend()) return false;
  bool const isFresh = outcome && isKnown(*outcome) && line.time - last->time < kFreshMemory;
  return last->outcome == line.outcome || isFresh;
}

}  // namespace

bool isWorthALine(RuleOutcome outcome) {
  return isDelivery(outcome) || isHeldBack(outcome) || isKnown(outcome) || outcome == RuleOutcome::refused;
}

LoggedNotification logLineOf(Decision const& decision, Instant now) {
  LoggedNotification line;
  line.time = now;
  line.identifier = decision.request.identifier.empty() ? decision.key : decision.request.identifier;
  // What is taken away sends nothing that has a title.
  line.title = decision.request.title.empty() ? decision.title : decision.request.title;
  line.outcome = enumName(decision.outcome);
  line.place = decision.place;
  line.body = oneLine(joinedLines(decision.request.body), kLongestBody);
  line.setting = decision.rule->setting;
  line.kind = decision.kind;
  line.note = decision.note;
  line.failure = decision.failure;
  std::ranges::transform(decision.measured, std::back_inserter(line.measured), logged);
  line.updates = decision.updates.value_or(0);
  return line;
}

std::string joinedLines(std::string_view body) {
  std::string joined;
  for (std::string_view const line : split(body, '\n')) {
    std::string_view const text = trimmed(line);
    if (text.empty()) continue;
    if (!joined.empty()) joined += endsSentence(joined) ? " " : " · ";
    joined += text;
  }
  return joined;
}

std::vector<LoggedNotification> notificationLogOf(SettingValues const& stored) {
  auto const found = stored.find(kLog);
  std::string const* const text = found == stored.end() ? nullptr : std::get_if<std::string>(&found->second);
  if (text == nullptr) return {};
  auto log = decodeJson<std::vector<LoggedNotification>>(*text);
  if (!log) return {};
  for (LoggedNotification& line : *log) line.kind = currentKind(std::move(line.kind));
  return std::move(*log);
}

StoreChanges logChange(std::vector<LoggedNotification> log, std::vector<LoggedNotification> const& lines) {
  bool isLonger = false;
  for (LoggedNotification const& line : lines) {
    if (isRepetition(log, line)) continue;
    log.push_back(line);
    isLonger = true;
  }
  return isLonger ? logReplacement(std::move(log)) : StoreChanges{};
}

bool noteUpdates(std::vector<LoggedNotification>& log, EventUpdates const& updates) {
  bool isChanged = false;
  for (auto const& [event, count] : updates) {
    auto const isItsOwn = [&](LoggedNotification const& line) {
      bool const isOfIt = line.identifier == event || line.identifier.starts_with(event + "_");
      return isOfIt && std::ranges::count(kSentOutcomes, line.outcome) > 0;
    };
    auto const newest = std::find_if(log.rbegin(), log.rend(), isItsOwn);
    if (newest == log.rend() || newest->updates >= count) continue;
    newest->updates = count;
    isChanged = true;
  }
  return isChanged;
}

StoreChanges logReplacement(std::vector<LoggedNotification> log) {
  if (log.size() > kMostLogLines) log.erase(log.begin(), log.end() - kMostLogLines);
  StoreChanges changes;
  changes.emplace(kLog, SettingValue(encodeJson(log)));
  return changes;
}

}  // namespace nimbara
