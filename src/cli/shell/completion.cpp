#include "cli/shell/completion.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace nimbara {

namespace {

/// Where in the outline the words before the last one lead.
struct Position {
  CommandOutline const* command;
  OptionOutline const* expecting = nullptr;  ///< the option whose value comes next
  std::size_t arguments = 0;                 ///< positional ones that stand already
  std::string_view before;                   ///< the last of them
  bool isPastOptions = false;                ///< after "--"
};

OptionOutline const* optionCalled(CommandOutline const& command, std::string_view name) {
  auto const is = [&](OptionOutline const& option) {
    return !option.isPositional && (option.name == name || option.shortName == name);
  };
  auto const found = std::ranges::find_if(command.options, is);
  return found == command.options.end() ? nullptr : &*found;
}

CommandOutline const* commandCalled(CommandOutline const& parent, std::string_view name) {
  auto const found = std::ranges::find(parent.commands, name, &CommandOutline::name);
  return found == parent.commands.end() ? nullptr : &*found;
}

OptionOutline const* positional(CommandOutline const& command, std::size_t index) {
  for (OptionOutline const& option : command.options) {
    if (option.isPositional && index-- == 0) return &option;
  }
  return nullptr;
}

void pass(Position& at, std::string_view word, CommandOutline const& root) {
  if (at.isPastOptions && word == root.name) {
    at = Position{&root};
  } else if (at.expecting != nullptr) {
    if (word != "=") at.expecting = nullptr;
  } else if (word == "--") {
    at.isPastOptions = true;
  } else if (word.starts_with('-') && word.size() > 1 && !at.isPastOptions) {
    OptionOutline const* const option = optionCalled(*at.command, word);
    if (option != nullptr && !option->value.empty()) at.expecting = option;
  } else if (CommandOutline const* const inner = commandCalled(*at.command, word)) {
    at = Position{inner};
  } else {
    ++at.arguments;
    at.before = word;
  }
}

std::vector<Completion> valuesOf(OptionOutline const& option, Position const& at, std::string_view typed,
                                 KnownValues const& known) {
  std::vector<Completion> found;
  found.reserve(option.words.size());
  for (std::string const& word : option.words) found.push_back({word, ""});
  if (found.empty() && !option.isPositional) found = known(option.name, at.before, typed);
  if (found.empty()) found = known(option.value, at.before, typed);
  return found;
}

std::vector<Completion> offered(Position const& at, std::string_view typed, KnownValues const& known) {
  if (at.expecting != nullptr) return valuesOf(*at.expecting, at, typed == "=" ? "" : typed, known);
  std::vector<Completion> found;
  if (typed.starts_with('-') && !at.isPastOptions) {
    for (OptionOutline const& option : at.command->options) {
      if (!option.isPositional) found.push_back({option.name, option.explanation});
    }
    return found;
  }
  for (CommandOutline const& command : at.command->commands) {
    if (at.arguments == 0) found.push_back({command.name, command.explanation});
  }
  if (OptionOutline const* const argument = positional(*at.command, at.arguments)) {
    std::ranges::move(valuesOf(*argument, at, typed, known), std::back_inserter(found));
  }
  return found;
}

/// A shell may hand words on as they were typed: "St.\ Moritz", or a quotation that has begun.
std::string unquoted(std::string_view word) {
  std::string out;
  if (word.starts_with('"') || word.starts_with('\'')) word.remove_prefix(1);
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (word[i] == '\\' && i + 1 < word.size()) ++i;
    out += word[i];
  }
  return out;
}

/// "--lang=d" is the value of an option, which keeps its name.
struct Assigned {
  std::string_view name;
  std::string_view value;
};

std::optional<Assigned> assignedOf(std::string_view word) {
  auto const at = word.find('=');
  if (!word.starts_with("--") || at == std::string_view::npos) return std::nullopt;
  return Assigned{word.substr(0, at), word.substr(at + 1)};
}

}  // namespace

std::vector<Completion> completions(CommandOutline const& root, std::span<std::string const> words,
                                    KnownValues const& known) {
  Position at{&root};
  if (words.empty()) return offered(at, "", known);
  for (std::string const& word : words.first(words.size() - 1)) pass(at, word, root);
  std::string const last = unquoted(words.back());
  std::string_view typed = last;
  std::string prefix;
  if (auto const assigned = assignedOf(typed); assigned && at.expecting == nullptr) {
    at.expecting = optionCalled(*at.command, assigned->name);
    prefix = std::string(assigned->name) + "=";
    typed = assigned->value;
    if (at.expecting == nullptr) return {};
  }
  auto found = offered(at, typed, known);
  if (typed == "=" && at.expecting != nullptr) typed = {};
  std::erase_if(found, [&](Completion const& completion) { return !completion.word.starts_with(typed); });
  for (Completion& completion : found) completion.word.insert(0, prefix);
  return found;
}

}  // namespace nimbara
