#include "app/options/command.h"

#include "base/text/nearest_word.h"
#include "base/text/text.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <ranges>

namespace nimbara {

namespace {

/// The name of the check of an option that takes a few words tells them to the outline.
template <class Words>
std::string joined(Words const& words) {
  std::string list;
  for (std::string_view const word : words) list.append(list.empty() ? "" : ",").append(word);
  return list;
}

std::string problemOfPlace(std::string const& text) {
  return trimmed(text).empty() ? "'' is neither a coordinate like 52.52,13.41 nor a place's name" : "";
}

}  // namespace

Option Option::called(std::string const& valueName) const {
  option_->type_name(valueName);
  return *this;
}

Option Option::required(bool isRequired) const {
  option_->required(isRequired);
  return *this;
}

Option Option::oneValueEach() const {
  option_->allow_extra_args(false);
  return *this;
}

Option Option::allWords() const {
  option_->join(' ')->allow_extra_args(true);
  return *this;
}

Option Option::showsDefault() const {
  option_->capture_default_str();
  return *this;
}

Option Option::check(ValueCheck problem) const {
  option_->check(std::function<std::string(std::string const&)>(problem));
  return *this;
}

Option Option::range(int least, int most) const {
  option_->check(CLI::Range(least, most));
  return *this;
}

Option Option::range(double least, double most) const {
  option_->check(CLI::Range(least, most));
  return *this;
}

Option Option::among(std::span<std::string_view const> values, ValuesInHelp help) const {
  CLI::Validator isAmong = CLI::IsMember(std::vector<std::string>(values.begin(), values.end()));
  if (help == ValuesInHelp::explained) isAmong.description("");
  isAmong.name(joined(values));
  option_->check(std::move(isAmong));
  return *this;
}

Option Option::needs(Option other) const {
  option_->needs(other.option_);
  return *this;
}

Option Option::excludes(Option other) const {
  option_->excludes(other.option_);
  return *this;
}

bool Option::isGiven() const {
  return option_->count() > 0;
}

Command Command::command(std::string const& name, std::string const& explanation) const {
  return Command(app_->add_subcommand(name, explanation));
}

Command Command::group(std::string const& name) const {
  return Command(app_->add_option_group(name));
}

/// A place may be left out, but one that is given is named.
Option Command::option(std::string const& name, std::string& value, std::string const& explanation) const {
  Option const option(app_->add_option(name, value, explanation));
  return name == "PLACE" ? option.check(problemOfPlace) : option;
}

Option Command::option(std::string const& name, std::optional<std::string>& value,
                       std::string const& explanation) const {
  return Option(app_->add_option(name, value, explanation));
}

Option Command::option(std::string const& name, std::vector<std::string>& values,
                       std::string const& explanation) const {
  return Option(app_->add_option(name, values, explanation));
}

Option Command::option(std::string const& name, int& value, std::string const& explanation) const {
  return Option(app_->add_option(name, value, explanation));
}

Option Command::option(std::string const& name, std::optional<int>& value,
                       std::string const& explanation) const {
  return Option(app_->add_option(name, value, explanation));
}

Option Command::option(std::string const& name, double& value, std::string const& explanation) const {
  return Option(app_->add_option(name, value, explanation));
}

Option Command::option(std::string const& name, std::optional<double>& value,
                       std::string const& explanation) const {
  return Option(app_->add_option(name, value, explanation));
}

Option Command::flag(std::string const& name, bool& value, std::string const& explanation) const {
  return Option(app_->add_flag(name, value, explanation));
}

Option Command::choice(std::string const& name, std::vector<std::pair<std::string, int>> const& words,
                       std::string const& explanation, std::function<void(int)> const& take) const {
  auto const isWord = [](std::string const& text) {
    return [&text](std::pair<std::string, int> const& word) { return word.first == text; };
  };
  auto const takeWord = [words, take, isWord](std::string const& text) {
    take(std::ranges::find_if(words, isWord(text))->second);
  };
  CLI::Option* const option = app_->add_option_function<std::string>(name, takeWord, explanation);
  auto const problem = [words, isWord](std::string const& text) {
    if (std::ranges::any_of(words, isWord(text))) return std::string();
    std::string list;
    for (auto const& [word, value] : words) list += (list.empty() ? "" : ", ") + word;
    return "'" + oneLine(text) + "' is not one of " + list;
  };
  option->check(problem, "", joined(words | std::views::keys));
  return Option(option);
}

void Command::requireCommands(std::size_t least, std::size_t most) const {
  app_->require_subcommand(least, most);
}

void Command::requireOptions(std::size_t least, std::size_t most) const {
  app_->require_option(least, most);
}

void Command::hide() const {
  app_->group("");
}

void Command::whenGiven(std::function<void()> action) const {
  app_->callback(std::move(action));
}

namespace {

/// A word that nothing takes, and the command that it was given to; nothing when all were taken.
struct Stray {
  CLI::App const* app;
  std::string word;
};

std::optional<Stray> strayWord(CLI::App const& app) {
  for (std::string const& word : app.remaining()) {
    if (word != "--") return Stray{&app, word};
  }
  auto const commands = app.get_subcommands();
  return commands.empty() ? std::nullopt : strayWord(*commands.front());
}

std::vector<std::string> commandNames(CLI::App const& app) {
  std::vector<std::string> names;
  for (CLI::App const* const command : app.get_subcommands({})) {
    if (!command->get_name().empty()) names.push_back(command->get_name());
  }
  return names;
}

/// Without their dashes. Groups are commands without a name.
std::vector<std::string> optionNames(CLI::App const& app) {
  std::vector<std::string> names;
  for (CLI::Option const* const option : app.get_options({})) {
    names.insert(names.end(), option->get_lnames().begin(), option->get_lnames().end());
  }
  for (CLI::App const* const group : app.get_subcommands({})) {
    if (!group->get_name().empty()) continue;
    auto const further = optionNames(*group);
    names.insert(names.end(), further.begin(), further.end());
  }
  return names;
}

/// The sentence about a word that is nearly a command or an option, or stands where a command must; empty for
/// any other.
std::string suggestion(CLI::App const& app) {
  auto const stray = strayWord(app);
  if (!stray) return {};
  std::string const word = stray->word.substr(0, stray->word.find('='));
  if (!word.starts_with("--")) {
    std::string const meant = nearestWord(word, commandNames(*stray->app));
    bool const isCommandMissing = !commandNames(*stray->app).empty() && stray->app->get_subcommands().empty();
    if (meant.empty() && !isCommandMissing) return {};
    return "no such command: '" + oneLine(word) + "'" +
           (meant.empty() ? "" : "; did you mean " + meant + "?");
  }
  std::string const meant = nearestWord(word.substr(2), optionNames(*stray->app));
  return meant.empty() ? "" : "no such option: '" + oneLine(word) + "'; did you mean --" + meant + "?";
}

}  // namespace

CommandParser::CommandParser(std::string const& explanation, std::string const& program,
                             std::string const& version, std::string const& versionExplanation)
    : app_(std::make_unique<CLI::App>(explanation, program)), version_(version) {
  app_->set_version_flag("--version", version, versionExplanation);
}

CommandParser::~CommandParser() = default;
CommandParser::CommandParser(CommandParser&&) noexcept = default;

void CommandParser::footer(std::string const& lines) {
  app_->footer(lines);
}

Result<void, ParseEnd> CommandParser::parse(std::vector<std::string> arguments) {
  using Reason = ParseEnd::Reason;
  std::ranges::reverse(arguments);
  try {
    app_->parse(std::move(arguments));
    return {};
  } catch (CLI::CallForVersion const&) {
    return std::unexpected(ParseEnd{Reason::version, version_});
  } catch (CLI::Success const&) {
    return std::unexpected(ParseEnd{Reason::help, app_->help()});
  } catch (CLI::ParseError const& error) {
    bool const mayBeMistyped = dynamic_cast<CLI::ExtrasError const*>(&error) != nullptr ||
                               dynamic_cast<CLI::RequiredError const*>(&error) != nullptr;
    std::string const meant = mayBeMistyped ? suggestion(*app_) : "";
    return std::unexpected(ParseEnd{Reason::mistake, meant.empty() ? error.what() : meant});
  }
}

namespace {

OptionOutline outlineOf(CLI::Option& option) {
  OptionOutline outline;
  outline.isPositional = option.get_positional();
  outline.name = outline.isPositional ? option.get_name(true) : "--" + option.get_lnames().front();
  if (!option.get_snames().empty()) outline.shortName = "-" + option.get_snames().front();
  if (option.get_items_expected_max() > 0) {
    outline.value = outline.isPositional ? outline.name : option.get_type_name();
    outline.value.resize(std::min(outline.value.size(), outline.value.find_first_of(": ")));
  }
  outline.explanation = option.get_description();
  for (int i = 0; outline.words.empty(); ++i) {
    try {
      std::string const& list = option.get_validator(i)->get_name();
      for (std::string_view const word : list.empty() ? std::vector<std::string_view>() : split(list, ',')) {
        outline.words.emplace_back(word);
      }
    } catch (CLI::OptionNotFound const&) {
      break;
    }
  }
  return outline;
}

void addOptions(CommandOutline& outline, CLI::App& app) {
  for (CLI::Option* const option : app.get_options()) {
    if (option->get_positional() || !option->get_lnames().empty())
      outline.options.push_back(outlineOf(*option));
  }
  for (CLI::App* const group : app.get_subcommands(nullptr)) {
    if (group->get_name().empty()) addOptions(outline, *group);
  }
}

CommandOutline outlineOf(CLI::App& app) {
  CommandOutline outline{
      .name = app.get_name(), .explanation = app.get_description(), .options = {}, .commands = {}};
  addOptions(outline, app);
  for (CLI::App* const command : app.get_subcommands(nullptr)) {
    if (!command->get_name().empty() && !command->get_group().empty()) {
      outline.commands.push_back(outlineOf(*command));
    }
  }
  return outline;
}

}  // namespace

CommandOutline CommandParser::outline() const {
  return outlineOf(*app_);
}

bool CommandParser::hasCommand() const {
  return !app_->get_subcommands().empty();
}

}  // namespace nimbara
