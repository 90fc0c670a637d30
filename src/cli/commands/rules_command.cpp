#include "base/text/display_text.h"
#include "base/text/text.h"
#include "cli/cli.h"
#include "cli/commands/rule_test.h"
#include "cli/options/rule_from_options.h"
#include "notifications/custom/custom_rule_text.h"
#include "notifications/engine/notification_state.h"

namespace nimbara {

namespace {

using Action = RulesOptions::Action;
constexpr std::size_t kShortId = 8;

/// One run of `nimbara rules`.
class RulesRun {
 public:
  RulesRun(CommandLine const& line, Session const& session)
      : options_(line.rules),
        session_(session),
        clock_(makeClock(line.common)),
        context_(line.common, session, *clock_, ownServices(line.common, WeatherProviderOption::automatic)),
        state_(*session.store) {}

  int run() {
    auto list = state_.customNotifications();
    auto places = Places(*session_.store).list();
    if (!list || !places) return unavailable((list ? places.error() : list.error()).message);
    places_ = std::move(*places);
    for (std::string const& warning : list->warnings) context_.tell(warning);
    if (options_.action == Action::list) return showAll(list->rules);
    if (options_.action == Action::add) return save(newRule());
    auto const rule = findRule(list->rules, options_.id);
    if (!rule) return unavailable(rule.error());
    return act(*rule);
  }

 private:
  int act(CustomNotification const& rule) {
    switch (options_.action) {
      case Action::edit:
        return save(rule);
      case Action::remove:
        return finish(state_.remove(rule.id), rule);
      case Action::enable:
        if (!hasPlace(rule)) return unavailable(placeless(rule));
        return finish(state_.setEnabled(rule.id, true), switched(rule, true));
      case Action::disable:
        return finish(state_.setEnabled(rule.id, false), switched(rule, false));
      case Action::test:
        return test(rule);
      default:
        return show(rule);
    }
  }

  static CustomNotification switched(CustomNotification rule, bool isEnabled) {
    rule.isEnabled = isEnabled;
    return rule;
  }

  int save(CustomNotification const& from) {
    auto const rule = ruleWith(from, options_, places_);
    if (!rule) return session_.fail(rule.error().exitCode, rule.error().sentence);
    return finish(options_.action == Action::add ? state_.add(*rule) : state_.edit(*rule), *rule);
  }

  int finish(NotificationState::Saved const& saved, CustomNotification const& rule) {
    return saved ? show(rule) : unavailable(saved.error().message);
  }

  int unavailable(std::string_view sentence) const { return session_.fail(exitCode::kUnavailable, sentence); }

  bool hasPlace(CustomNotification const& rule) const {
    return !rule.locationID || places_.find(*rule.locationID) != nullptr;
  }

  static std::string placeless(CustomNotification const& rule) {
    return "this rule's place was removed; choose another with: nimbara rules edit " +
           rule.id.text().substr(0, kShortId) + " --place PLACE";
  }

  std::string description(CustomNotification const& rule) const {
    return ruleDescription(rule, context_.wording().units, context_.texts());
  }

  /// The rule's own keys and its texts; whoever calls closes the object.
  void writeRule(JsonWriter& writer, CustomNotification const& rule) const {
    writer.beginObject();
    jsonFields<CustomNotification>.apply(
        [&](auto const&... fields) { (writer.member(fields.key, rule.*(fields.member)), ...); });
    writer.member("description", description(rule));
    writer.member("schedule", ruleSchedule(rule, context_.texts()));
    if (!hasPlace(rule)) writer.member("placeDeleted", true);
  }

  void print(std::string const& text) const {
    session_.console.out(session_.environment.utf8 || options_.json ? text : asciiFolded(text));
  }

  int showAll(std::vector<CustomNotification> const& rules) const {
    JsonWriter writer;
    std::string text;
    writer.beginList();
    for (CustomNotification const& rule : rules) {
      writer.separate();
      writeRule(writer, rule);
      writer.endObject();
      text += paragraph(rule);
    }
    writer.endList();
    print(options_.json ? writer.take() + "\n" : text);
    if (rules.empty() && !options_.json) {
      context_.tell("no rules yet; add one with: nimbara rules add --title T --type TYPE …");
    }
    return exitCode::kComplete;
  }

  int show(CustomNotification const& rule) const {
    JsonWriter writer;
    writeRule(writer, rule);
    writer.endObject();
    print(options_.json ? writer.take() + "\n" : paragraph(rule));
    return exitCode::kComplete;
  }

  std::string whereabouts(CustomNotification const& rule) const {
    if (!rule.locationID) return std::string(context_.texts().text("customnotif.place.selected"));
    SavedPlace const* const place = places_.find(*rule.locationID);
    if (place != nullptr) return oneLine(place->name);
    return std::string(context_.texts().text("customnotif.place.deleted"));
  }

  /// Identifier, on or off and title; below them what it watches, when and where.
  std::string paragraph(CustomNotification const& rule) const {
    std::string const indent(kShortId + 2, ' ');
    return rule.id.text().substr(0, kShortId) + "  " + oneLine(rule.title) +
           (rule.isEnabled ? "" : "  (" + std::string(context_.texts().text("customnotif.disabled")) + ")") +
           "\n" + indent + description(rule) + "\n" + indent + ruleSchedule(rule, context_.texts()) + "; " +
           whereabouts(rule) + "\n";
  }

  int test(CustomNotification const& rule) {
    if (!hasPlace(rule)) return unavailable(placeless(rule));
    SavedPlace const* const saved = rule.locationID ? places_.find(*rule.locationID) : nullptr;
    auto const found = testedRule(rule, saved, context_, session_);
    if (session_.stop.stop_requested()) return session_.fail(exitCode::kInterrupted, "interrupted");
    if (!found) return session_.fail(found.error().exitCode, found.error().sentence);
    JsonWriter writer;
    writeRule(writer, rule);
    writeTested(writer, *found);
    writer.endObject();
    print(options_.json ? writer.take() + "\n" : paragraph(rule) + testedText(rule, *found, context_));
    return exitCode::kComplete;
  }

  RulesOptions const& options_;
  Session const& session_;
  std::unique_ptr<Clock> clock_;
  RunContext context_;
  NotificationState state_;
  PlaceList places_;
};

}  // namespace

int runRules(CommandLine const& line, Session const& session) {
  return RulesRun(line, session).run();
}

}  // namespace nimbara
