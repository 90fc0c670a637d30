#include "cli/options/command_definitions.h"
#include "notifications/custom_notification.h"

namespace nimbara {

namespace {

using Action = RulesOptions::Action;

void defineWhen(Command sub, RulesOptions& options) {
  Command const when = sub.group("when");
  when.option("--hour", options.hour, "Check at this hour, in the place's local time")
      .called("H")
      .range(0, 23);
  when.flag("--immediately", options.immediately, "Check with every new forecast");
  when.requireOptions(0, 1);
  sub.option("--days", options.days, "Days to check: mon,tue,wed,thu,fri,sat,sun").called("LIST");
}

/// What a rule is made of.
void defineParts(Command sub, RulesOptions& options, bool isNew) {
  sub.option("--title", options.title, "Title of the notification").required(isNew);
  sub.option("--type", options.type, namesOf<ConditionType>())
      .called("TYPE")
      .required(isNew)
      .among(enumNames<ConditionType>, ValuesInHelp::explained);
  sub.option("--operator", options.comparison, "above, below, or any (occurs at all)")
      .called("OP")
      .among(enumNames<ConditionOperator>, ValuesInHelp::explained);
  sub.option("--threshold", options.threshold,
             "In metric units: °C, km/h, mm, km, hPa, %, µg/m³; minutes of rainWithin")
      .called("NUMBER");
  sub.option("--lookahead", options.lookahead, "Hours of forecast to look at; 0 for current conditions")
      .called("N")
      .range(0, CustomNotification::kFarthestHours);
  defineWhen(sub, options);
  Command const where = sub.group("where");
  where.option("--place", options.place, "A saved place; the selected place by default").called("PLACE");
  if (!isNew) where.flag("--selected-place", options.selectedPlace, "Use the selected place again");
  where.requireOptions(0, 1);
}

}  // namespace

void defineRules(Command app, CommandLine& line, RawOptions& raw) {
  Command const command = app.command("rules", "Your own notification rules");
  command.requireCommands(1, 1);
  RulesOptions& options = line.rules;
  auto const define = [&](char const* name, char const* explanation, Action action) {
    Command const sub = command.command(name, explanation);
    if (action != Action::list && action != Action::add) {
      sub.option("ID", options.id, "The beginning of its identifier").required();
    }
    sub.flag("--json", options.json, "One JSON document instead of text");
    defineCommon(sub, line, raw);
    sub.whenGiven([&line, action] {
      line.run = runRules;
      line.needsStore = true;
      line.rules.action = action;
    });
    return sub;
  };
  define("list", "Your rules", Action::list);
  defineParts(define("add", "Add a rule", Action::add), options, true);
  defineParts(define("edit", "Change a rule", Action::edit), options, false);
  define("remove", "Remove a rule", Action::remove);
  define("enable", "Turn a rule on", Action::enable);
  define("disable", "Turn a rule off", Action::disable);
  define("show", "One rule", Action::show);
  define("test", "Try a rule on the current forecast; sends nothing", Action::test);
}

}  // namespace nimbara
