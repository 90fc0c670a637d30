#include "cli/shell/manual.h"

#include <array>
#include <span>
#include <utility>

namespace nimbara {

namespace {

/// Written so that the formatter changes nothing of it.
std::string escaped(std::string_view text) {
  std::string out;
  for (char const c : text) {
    if (c == '\\') {
      out += "\\e";
    } else if (c == '-') {
      out += "\\-";
    } else if (c == '\n') {
      out += ' ';
    } else {
      out += c;
    }
  }
  bool const isRequest = out.starts_with('.') || out.starts_with('\'');
  return isRequest ? "\\&" + out : out;
}

std::string bold(std::string_view text) {
  return "\\fB" + escaped(text) + "\\fR";
}

std::string italic(std::string_view text) {
  return "\\fI" + escaped(text) + "\\fR";
}

/// "[PLACE] [OPTION...]" behind the command's words.
std::string synopsis(std::string const& words, CommandOutline const& command) {
  std::string line = bold(words);
  if (!command.commands.empty()) line += " " + italic("COMMAND");
  for (OptionOutline const& option : command.options) {
    if (option.isPositional) line += " [" + italic(option.name) + "]";
  }
  return line + " [" + italic("OPTION") + "...]\n";
}

std::string optionEntry(OptionOutline const& option) {
  std::string head = option.shortName.empty() ? "" : bold(option.shortName) + ", ";
  head += option.isPositional ? italic(option.name) : bold(option.name);
  if (!option.isPositional && !option.value.empty()) head += " " + italic(option.value);
  std::string body = escaped(option.explanation);
  if (!option.words.empty()) {
    body += body.empty() ? "" : "\n.br\n";
    body += "One of ";
    for (std::size_t i = 0; i < option.words.size(); ++i)
      body += (i == 0 ? "" : ", ") + escaped(option.words[i]);
    body += ".";
  }
  return ".TP\n" + head + "\n" + body + "\n";
}

std::string optionEntries(CommandOutline const& command) {
  std::string out;
  for (OptionOutline const& option : command.options) {
    if (option.isPositional) out += optionEntry(option);
  }
  for (OptionOutline const& option : command.options) {
    if (!option.isPositional) out += optionEntry(option);
  }
  return out;
}

struct Entry {
  std::string_view head;
  std::string_view body;
};

std::string entries(std::string_view section, std::span<Entry const> rows) {
  std::string out = ".SH " + std::string(section) + "\n";
  for (Entry const& row : rows) out += ".TP\n" + bold(row.head) + "\n" + escaped(row.body) + "\n";
  return out;
}

constexpr auto kExitStatus = std::to_array<Entry>({
    {"0", "The result is complete."},
    {"1", "Something that was asked for is not available."},
    {"2", "The command line is wrong."},
    {"130", "The command was interrupted."},
});

constexpr auto kEnvironment = std::to_array<Entry>({
    {"NIMBARA_SERVICES", "A base address that is used for every service, as --services sets it."},
    {"NIMBARA_NOW", "The time to pretend, as --now sets it."},
    {"LC_ALL, LC_MESSAGES, LC_MEASUREMENT, LC_TIME, LANG",
     "Language, units and clock where the settings leave them open."},
    {"TZ", "The reader's time zone."},
    {"NO_COLOR", "If set, no colors are printed."},
});

constexpr auto kFiles = std::to_array<Entry>({
    {"$XDG_DATA_HOME/nimbara", "Settings, places, rules and what was sent; by default below ~/.local/share."},
    {"$XDG_CACHE_HOME/nimbara", "Kept responses of the services; by default below ~/.cache. May be deleted."},
});

std::string head(std::string const& name, std::string_view version, std::string_view explanation) {
  std::string title = name;
  for (char& c : title) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  return ".TH " + escaped(title) + " 1 \"\" \"Nimbara " + std::string(version) +
         "\" \"User Commands\"\n.SH NAME\n" + escaped(name) + " \\- " + escaped(explanation) + "\n";
}

std::string endOf(std::string_view seeAlso) {
  return entries("EXIT STATUS", kExitStatus) + entries("ENVIRONMENT", kEnvironment) +
         entries("FILES", kFiles) + ".SH SEE ALSO\n" + std::string(seeAlso) + "\n";
}

ManualPage pageOf(CommandOutline const& command, std::string const& program, std::string_view version) {
  std::string const words = program + " " + command.name;
  std::string text = head(program + "-" + command.name, version, command.explanation);
  text += ".SH SYNOPSIS\n" + synopsis(words, command);
  text += ".SH DESCRIPTION\n" + escaped(command.explanation) + ".\n";
  text += ".SH OPTIONS\n" + optionEntries(command);
  if (!command.commands.empty()) text += ".SH COMMANDS\n";
  for (CommandOutline const& inner : command.commands) {
    text += ".SS " + escaped(words + " " + inner.name) + "\n" + escaped(inner.explanation) + ".\n" +
            optionEntries(inner);
  }
  return {program + "-" + command.name + ".1", text + endOf(bold(program) + "(1)")};
}

}  // namespace

std::vector<ManualPage> manualPages(CommandOutline const& program, std::string_view version) {
  std::string text = head(program.name, version, "the weather for your places, from public services");
  text += ".SH SYNOPSIS\n" + synopsis(program.name, program);
  text += ".SH DESCRIPTION\n" + escaped(program.explanation) +
          ".\nResults go to standard output, everything else to standard error.\n.SH COMMANDS\n";
  std::string seeAlso = bold("nimbara-desktop") + "(1)";
  std::vector<ManualPage> pages;
  for (CommandOutline const& command : program.commands) {
    text += ".TP\n" + bold(command.name) + "\n" + escaped(command.explanation) + "\n";
    seeAlso += ", " + bold(program.name + "-" + command.name) + "(1)";
    pages.push_back(pageOf(command, program.name, version));
  }
  text += ".SH OPTIONS\n" + optionEntries(program) + endOf(seeAlso);
  pages.insert(pages.begin(), {program.name + ".1", std::move(text)});
  return pages;
}

}  // namespace nimbara
