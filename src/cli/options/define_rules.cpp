#include "cli/options/command_definitions.h"
#include "notifications/custom_notification.h"

namespace nimbara {

namespace {

using Action = RulesOptions::Action;

template <class E>
CLI::Validator nameOf() {
  return CLI::IsMember(std::vector<std::string>(enumNames<E>.begin(), enumNames<E>.end()));
}

void defineWhen(CLI::App& sub, RulesOptions& options) {
  CLI::Option_group* const when = sub.add_option_group("when");
  when->add_option("--hour", options.hour, "Check at this hour, in the place's local time")
      ->type_name("H")
      ->check(CLI::Range(0, 23));
  when->add_flag("--immediately", options.immediately, "Check with every new forecast");
  when->require_option(0, 1);
  sub.add_option("--days", options.days, "Days to check: mon,tue,wed,thu,fri,sat,sun")->type_name("LIST");
}

/// What a rule is made of.
void defineParts(CLI::App& sub, RulesOptions& options, bool isNew) {
  sub.add_option("--title", options.title, "Title of the notification")->required(isNew);
  sub.add_option("--type", options.type, namesOf<ConditionType>())
      ->type_name("TYPE")
      ->required(isNew)
      ->check(nameOf<ConditionType>().description(""));
  sub.add_option("--operator", options.comparison, "above, below, or any (occurs at all)")
      ->type_name("OP")
      ->check(nameOf<ConditionOperator>().description(""));
  sub.add_option("--threshold", options.threshold, "In metric units: °C, km/h, mm, km, hPa, %, µg/m³")
      ->type_name("NUMBER");
  sub.add_option("--lookahead", options.lookahead, "Hours of forecast to look at; 0 for current conditions")
      ->type_name("N")
      ->check(CLI::Range(0, CustomNotification::kFarthestHours));
  defineWhen(sub, options);
  CLI::Option_group* const where = sub.add_option_group("where");
  where->add_option("--place", options.place, "A saved place; the selected place by default")
      ->type_name("PLACE");
  if (!isNew) where->add_flag("--selected-place", options.selectedPlace, "Use the selected place again");
  where->require_option(0, 1);
}

}  // namespace

void defineRules(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command = app.add_subcommand("rules", "Your own notification rules");
  command->require_subcommand(1);
  RulesOptions& options = line.rules;
  auto const define = [&](char const* name, char const* explanation, Action action) {
    CLI::App* const sub = command->add_subcommand(name, explanation);
    if (action != Action::list && action != Action::add) {
      sub->add_option("ID", options.id, "The beginning of its identifier")->required();
    }
    sub->add_flag("--json", options.json, "One JSON document instead of text");
    defineCommon(*sub, line, raw);
    sub->callback([&line, action] {
      line.run = runRules;
      line.needsStore = true;
      line.rules.action = action;
    });
    return sub;
  };
  define("list", "Your rules", Action::list);
  defineParts(*define("add", "Add a rule", Action::add), options, true);
  defineParts(*define("edit", "Change a rule", Action::edit), options, false);
  define("remove", "Remove a rule", Action::remove);
  define("enable", "Turn a rule on", Action::enable);
  define("disable", "Turn a rule off", Action::disable);
  define("show", "One rule", Action::show);
  define("test", "Try a rule on the current forecast; sends nothing", Action::test);
}

}  // namespace nimbara
