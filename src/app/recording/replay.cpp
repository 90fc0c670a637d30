#include "app/recording/replay.h"

#include "app/notices/silent_center.h"
#include "base/files/file.h"
#include "base/json/simdjson_dom.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::size_t kLongestSettings = std::size_t{1} << 20;

std::optional<SettingValue> valueOf(simdjson::dom::element element) {
  bool truth = false;
  std::int64_t whole = 0;
  double real = 0;
  std::string_view text;
  if (element.get(truth) == simdjson::SUCCESS) return truth;
  if (element.get(whole) == simdjson::SUCCESS) return whole;
  if (element.get(real) == simdjson::SUCCESS) return real;
  if (element.get(text) == simdjson::SUCCESS) return std::string(text);
  return std::nullopt;
}

}  // namespace

Result<SettingValues, std::string> readReplaySettings(std::filesystem::path const& file,
                                                      SettingsRegistry const& registry) {
  auto const text = readFile(file, kLongestSettings);
  if (!text) return std::unexpected(text.error());
  simdjson::dom::parser parser;
  simdjson::dom::object members;
  if (parser.parse(*text).get(members) != simdjson::SUCCESS) {
    return std::unexpected(file.string() + " is not a JSON object of settings");
  }
  SettingValues values;
  for (auto const [key, element] : members) {
    SettingDefinition const* const definition = registry.find(key);
    auto const value = valueOf(element);
    if (definition == nullptr || !value) continue;  // of another version, or a secret that is only "set"
    auto checked = checkedSetting(*definition, *value);
    if (!checked) return std::unexpected(file.string() + ": " + checked.error());
    values.emplace(key, std::move(*checked));
  }
  return values;
}

Replay::Replay(Surroundings surroundings)
    : around_(std::move(surroundings)), center_(std::make_unique<SilentCenter>()) {
  restart();
}

Replay::~Replay() = default;

void Replay::restart() {
  manager_ = std::make_unique<NotificationManager>(
      NotificationManager::Surroundings{around_.store, *center_, around_.clock, around_.texts, {}});
}

void Replay::runUntil(Instant end, std::chrono::milliseconds step, std::stop_token const& stop) {
  while (around_.clock.now() <= end && !stop.stop_requested()) {
    pass(stop);
    Instant const next = around_.clock.now() + step;
    tellScheduledUntil(std::min(next, end));
    around_.clock.set(next);
  }
}

void Replay::pass(std::stop_token const& stop) {
  auto const gather = [this](NeededInputs const& needed, std::stop_token const& token) {
    return around_.inputs.gather(places_, needed, around_.store.settings().settings, rules_, token);
  };
  note(manager_->evaluate(gather, stop));
}

void Replay::tellScheduledUntil(Instant next) {
  for (auto due = manager_->nextScheduled(); due && *due < next; due = manager_->nextScheduled()) {
    around_.clock.set(std::max(*due, around_.clock.now()));
    note(manager_->tellScheduled());
  }
}

void Replay::note(PassReport const& report) {
  for (std::string const& problem : report.problems) noteProblem(problem);
  for (std::string const& problem : failedFeeds(report.plan)) noteProblem(problem);
  for (Decision const& decision : report.plan.decisions) note(decision);
}

void Replay::note(Decision const& decision) {
  hasMissed_ = hasMissed_ || wasMissed(decision);
  hasChecked_ = hasChecked_ || wasChecked(decision);
  if (isHeldBack(decision.outcome)) {
    if (!held_.insert(decision.key).second) return;
  } else {
    held_.erase(decision.key);
    bool const isSeen = isDelivery(decision.outcome) || decision.outcome == RuleOutcome::refused;
    if (!isSeen) return;
  }
  LoggedNotification line = logLineOf(decision, around_.clock.now());
  line.identifier = decision.request.identifier;
  line.title = titleOf(decision);
  log_.push_back(std::move(line));
}

/// What is taken back has the title under which it was sent.
std::string Replay::titleOf(Decision const& decision) {
  NotificationRequest const& request = decision.request;
  if (request.title.empty()) return titles_[request.identifier];
  return titles_[request.identifier] = request.title;
}

void Replay::noteProblem(std::string const& problem) {
  if (std::ranges::count(problems_, problem) == 0) problems_.push_back(problem);
}

}  // namespace nimbara
