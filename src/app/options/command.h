// A program's command line, declared: commands, their options and flags, and what values these take. The
// library that parses it takes ten seconds to compile and is known to command.cpp alone.
#pragma once

#include "app/options/outline.h"
#include "base/result.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace nimbara {

/// What is wrong with a value, in a few words; empty when nothing is.
using ValueCheck = std::string (*)(std::string const& value);

/// Whether the help tells the values that an option takes, or its explanation does.
enum class ValuesInHelp { listed, explained };

/// An option, a flag or a positional argument that was declared; belongs to its parser.
class Option {
 public:
  explicit Option(CLI::Option* option) : option_(option) {}

  /// What the help calls its value, as in "KM".
  Option called(std::string const& valueName) const;
  Option required(bool isRequired = true) const;
  /// Each time it is given it takes one value, though it may be given several times.
  Option oneValueEach() const;
  /// Takes all the words that follow as one text.
  Option allWords() const;
  /// The help tells what its variable holds now.
  Option showsDefault() const;

  Option check(ValueCheck problem) const;
  Option range(int least, int most) const;
  Option range(double least, double most) const;
  Option among(std::span<std::string_view const> values, ValuesInHelp help = ValuesInHelp::listed) const;

  /// Makes sense only beside `other`, or never beside it.
  Option needs(Option other) const;
  Option excludes(Option other) const;

  /// After parsing.
  bool isGiven() const;

 private:
  CLI::Option* option_;
};

/// A command, or a group of options in one; belongs to its parser. Variables are written while parsing and
/// outlive it. Names: "--long", "-s,--long", or "PLACE" for a positional argument.
class Command {
 public:
  explicit Command(CLI::App* app) : app_(app) {}

  Command command(std::string const& name, std::string const& explanation) const;
  Command group(std::string const& name) const;

  Option option(std::string const& name, std::string& value, std::string const& explanation) const;
  Option option(std::string const& name, std::optional<std::string>& value,
                std::string const& explanation) const;
  Option option(std::string const& name, std::vector<std::string>& values,
                std::string const& explanation) const;
  Option option(std::string const& name, int& value, std::string const& explanation) const;
  Option option(std::string const& name, std::optional<int>& value, std::string const& explanation) const;
  Option option(std::string const& name, double& value, std::string const& explanation) const;
  Option option(std::string const& name, std::optional<double>& value, std::string const& explanation) const;
  Option flag(std::string const& name, bool& value, std::string const& explanation) const;

  /// An option that takes one of a few words.
  template <class E>
  Option choice(std::string const& name, E& value, std::string const& explanation,
                std::vector<std::pair<std::string, E>> const& words) const {
    std::vector<std::pair<std::string, int>> numbers;
    numbers.reserve(words.size());
    for (auto const& [word, meaning] : words) numbers.emplace_back(word, static_cast<int>(meaning));
    return choice(name, numbers, explanation, [&value](int number) { value = static_cast<E>(number); });
  }

  /// How many commands of its own, and how many of its options, must be given.
  void requireCommands(std::size_t least, std::size_t most) const;
  void requireOptions(std::size_t least, std::size_t most) const;
  /// Runs after parsing when the command was given.
  void whenGiven(std::function<void()> action) const;
  /// Not for people: neither the help nor the outline tells of it.
  void hide() const;

 private:
  Option choice(std::string const& name, std::vector<std::pair<std::string, int>> const& words,
                std::string const& explanation, std::function<void(int)> const& take) const;

  CLI::App* app_;
};

/// Why parsing ended without a command to run.
struct ParseEnd {
  enum class Reason { help, version, mistake };

  Reason reason = Reason::mistake;
  std::string text;  ///< the help, the version, or what is wrong, naming the offending word
};

class CommandParser {
 public:
  /// `version` is what --version prints, `versionExplanation` what the help says of it.
  CommandParser(std::string const& explanation, std::string const& program, std::string const& version,
                std::string const& versionExplanation);
  ~CommandParser();
  CommandParser(CommandParser&&) noexcept;

  /// What takes the options before any command.
  Command root() const { return Command(app_.get()); }
  /// The last lines of the help.
  void footer(std::string const& lines);
  /// `arguments` without the program's name.
  Result<void, ParseEnd> parse(std::vector<std::string> arguments);
  CommandOutline outline() const;
  /// Whether `parse` met a command.
  bool hasCommand() const;

 private:
  std::unique_ptr<CLI::App> app_;
  std::string version_;
};

}  // namespace nimbara
