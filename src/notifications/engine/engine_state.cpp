#include "notifications/engine/engine_state.h"

#include "base/json/json_codec.h"
#include "notifications/rules/rule_settings.h"

#include <algorithm>
#include <iterator>

namespace nimbara {

template Result<std::vector<std::string>, DecodeError> decodeJson(std::string_view);
template Result<EngineState::Instants, DecodeError> decodeJson(std::string_view);
template Result<std::map<std::string, ShownEvent, std::less<>>, DecodeError> decodeJson(std::string_view);
template Result<std::map<std::string, std::string, std::less<>>, DecodeError> decodeJson(std::string_view);
template Result<std::map<std::string, KnownStorm, std::less<>>, DecodeError> decodeJson(std::string_view);
template Result<KnownFires, DecodeError> decodeJson(std::string_view);
template Result<RainMemories, DecodeError> decodeJson(std::string_view);
template Result<std::vector<ScheduledNotification>, DecodeError> decodeJson(std::string_view);

namespace {

constexpr std::string_view kDelivered = "notif_deliveredIDs";
constexpr std::string_view kActive = "notif_activeConditionIDs";
constexpr std::string_view kLastActive = "notif_lastActiveAt";
constexpr std::string_view kLastTold = "notif_lastToldAt";
constexpr std::string_view kShown = "notif_shown";
constexpr std::string_view kScheduled = "notif_scheduled";
constexpr std::string_view kFirstChecked = "notif_firstCheckedAt";
constexpr std::string_view kSummaries = "notif_aiSummaryCache";
constexpr std::string_view kStorms = "notif_knownStorms";
constexpr std::string_view kFires = "notif_knownFires";
constexpr std::string_view kRain = "notif_rainRules";
constexpr std::string_view kDeliveredAt = "notif_deliveredAt";

std::string const* textAt(SettingValues const& stored, std::string_view key) {
  auto const found = stored.find(key);
  return found == stored.end() ? nullptr : std::get_if<std::string>(&found->second);
}

/// Reads the entries one by one; the first that cannot be read is what went wrong.
class Reader {
 public:
  explicit Reader(SettingValues const& stored) : stored_(stored) {}

  template <class T>
  T read(std::string_view key) {
    if (!stored_.contains(key)) return {};
    std::string const* const text = textAt(stored_, key);
    if (text == nullptr) return failed<T>(key, "it is not a string");
    auto value = decodeJson<T>(*text);
    return value ? std::move(*value) : failed<T>(key, value.error().text());
  }

  std::optional<StoreError> const& error() const { return error_; }

 private:
  template <class T>
  T failed(std::string_view key, std::string const& reason) {
    if (!error_) {
      error_ = StoreError{StoreError::Kind::unreadable, std::string(key) + " cannot be read: " + reason};
    }
    return {};
  }

  SettingValues const& stored_;
  std::optional<StoreError> error_;
};

EngineState::Strings setOf(std::vector<std::string> list) {
  return {std::make_move_iterator(list.begin()), std::make_move_iterator(list.end())};
}

std::vector<std::string> listOf(EngineState::Strings const& set) {
  return {set.begin(), set.end()};
}

}  // namespace

std::string summaryKey(ScheduledNotification const& entry) {
  return entry.identifier + " " + formatIso8601(entry.due);
}

Result<EngineState, StoreError> engineStateOf(SettingValues const& stored) {
  Reader reader(stored);
  EngineState state;
  state.deliveredIDs = setOf(reader.read<std::vector<std::string>>(kDelivered));
  state.activeConditionIDs = setOf(reader.read<std::vector<std::string>>(kActive));
  state.lastActiveAt = reader.read<EngineState::Instants>(kLastActive);
  state.lastToldAt = reader.read<EngineState::Instants>(kLastTold);
  state.shown = reader.read<std::map<std::string, ShownEvent, std::less<>>>(kShown);
  for (auto& [identifier, shown] : state.shown) shown.kind = currentKind(std::move(shown.kind));
  state.scheduled = reader.read<std::vector<ScheduledNotification>>(kScheduled);
  state.aiSummaryCache = reader.read<std::map<std::string, std::string, std::less<>>>(kSummaries);
  state.firstCheckedAt = reader.read<EngineState::Instants>(kFirstChecked);
  state.knownStorms = reader.read<std::map<std::string, KnownStorm, std::less<>>>(kStorms);
  state.knownFires = reader.read<KnownFires>(kFires);
  state.deliveredAt = reader.read<EngineState::Instants>(kDeliveredAt);
  state.rain = reader.read<RainMemories>(kRain);
  if (reader.error()) return std::unexpected(*reader.error());
  return state;
}

StoreChanges changesOf(EngineState const& state) {
  StoreChanges changes;
  auto const put = [&](std::string_view key, std::string text) {
    changes.emplace(key, SettingValue(std::move(text)));
  };
  put(kDelivered, encodeJson(listOf(state.deliveredIDs)));
  put(kActive, encodeJson(listOf(state.activeConditionIDs)));
  put(kLastActive, encodeJson(state.lastActiveAt));
  put(kLastTold, encodeJson(state.lastToldAt));
  put(kShown, encodeJson(state.shown));
  put(kScheduled, encodeJson(state.scheduled));
  put(kSummaries, encodeJson(state.aiSummaryCache));
  put(kFirstChecked, encodeJson(state.firstCheckedAt));
  put(kStorms, encodeJson(state.knownStorms));
  put(kFires, encodeJson(state.knownFires));
  put(kDeliveredAt, encodeJson(state.deliveredAt));
  put(kRain, encodeJson(state.rain));
  return changes;
}

namespace {

void adoptLater(EngineState::Instants& into, EngineState::Instants const& known) {
  for (auto const& [key, instant] : known) {
    Instant& kept = into.try_emplace(key, instant).first->second;
    kept = std::max(kept, instant);
  }
}

}  // namespace

EngineState merged(EngineState stored, EngineState const& known) {
  stored.deliveredIDs.insert(known.deliveredIDs.begin(), known.deliveredIDs.end());
  stored.activeConditionIDs.insert(known.activeConditionIDs.begin(), known.activeConditionIDs.end());
  adoptLater(stored.lastActiveAt, known.lastActiveAt);
  adoptLater(stored.lastToldAt, known.lastToldAt);
  adoptLater(stored.deliveredAt, known.deliveredAt);
  for (auto const& [key, shown] : known.shown) stored.shown.insert_or_assign(key, shown);
  for (auto const& [key, storm] : known.knownStorms) stored.knownStorms.insert_or_assign(key, storm);
  for (auto const& [key, fire] : known.knownFires) stored.knownFires.insert_or_assign(key, fire);
  for (auto const& [key, rain] : known.rain) stored.rain.insert_or_assign(key, rain);
  stored.firstCheckedAt.insert(known.firstCheckedAt.begin(), known.firstCheckedAt.end());
  return stored;
}

}  // namespace nimbara
