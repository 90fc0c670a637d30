// What the program prints and how it ends, as transcripts: fixtures/cli/*.session. Their language:
//
//   == Words                a scenario, with a demo server, settings and a cache of its own, at 09:20 UTC
//   $ quakes --json         runs a command of the program against the server, at the moment; {folder}, {id},
//                           {place} and {services} are the scenario's folder, what it keeps, where its scene
//                           plays, and the server's address
//   = text   + text   - text   ^ text   # 3 text   ~ expression
//                           what it prints: line by line; somewhere; nowhere; at the beginning; so many
//                           times; like this
//   & …                     the same as the command before
//   % name                  the same as the file (NIMBARA_UPDATE_SNAPSHOTS=1 writes it)
//   ! text   !- text        what it says of failures, somewhere or nowhere; without it nothing is said
//   !*                      whatever it says of failures
//   ? 2   ?*                its exit code, which is 0 without this; whichever it is
//   ? 2 text $ quakes now   a command that ends so, prints nothing, and says why in one line with this text
//   @ 2026-11-21T09:35:00Z  the moment of the commands below
//   server  server off  server openMeteo=500 …  server scene border
//                           a server anew, no server, one with faults, one that plays a scene
//   set language pt_PT      something of the surroundings: language, time, measurement, latin, no-colour,
//   width write name text         a file in the folder; \n and \t are understood keep id text keeps the 36
//   characters behind the text of the last output
//   // …                    why
#include "app/places/place.h"
#include "base/text/text.h"
#include "support/samples.h"
#include "support/session/demo_session.h"
#include "support/session/fake_location_source.h"

#include <gmock/gmock.h>

#include <regex>

namespace nimbara {
namespace {

using test::CliRun;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct Step {
  std::string mark;
  std::string rest;
  int line = 0;
};

struct Scenario {
  std::string file;
  std::string title;
  std::vector<Step> steps;
};

void PrintTo(Scenario const& scenario, std::ostream* out) {
  *out << scenario.file << ": " << scenario.title;
}

std::filesystem::path folderOfSessions() {
  return std::filesystem::path(test::kFixtures) / "cli";
}

std::vector<Scenario> scenarios() {
  std::vector<Scenario> all;
  for (auto const& entry : std::filesystem::directory_iterator(folderOfSessions())) {
    if (entry.path().extension() != ".session") continue;
    std::string const text = test::readFile(entry.path());
    int number = 0;
    for (std::string_view const line : split(text, '\n')) {
      ++number;
      if (trimmed(line).empty() || line.starts_with("//")) continue;
      std::size_t const end = std::min(line.find(' '), line.size());
      std::string const mark(line.substr(0, end)), rest(line.substr(std::min(end + 1, line.size())));
      if (mark == "==") all.push_back({entry.path().stem(), rest, {}});
      if (mark != "==") all.back().steps.push_back({mark, rest, number});
    }
  }
  std::ranges::sort(all, {}, [](Scenario const& scenario) { return scenario.file + scenario.title; });
  return all;
}

/// As a shell takes words apart, quotes and all.
std::vector<std::string> wordsOf(std::string_view line) {
  std::vector<std::string> words;
  std::optional<std::string> word;
  char quote = 0;
  for (char const c : line) {
    bool const isQuote = c == '"' || c == '\'';
    if (quote != 0 ? c == quote : isQuote) {
      quote = quote == 0 ? c : '\0';
      word = word.value_or("");
    } else if (quote == 0 && c == ' ') {
      if (word) words.push_back(*std::exchange(word, std::nullopt));
    } else {
      word = word.value_or("") + c;
    }
  }
  if (word) words.push_back(*word);
  return words;
}

std::string replaced(std::string text, std::string_view what, std::string_view by) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
  return text;
}

std::size_t countOf(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

struct Transcripts : test::DemoSession, testing::WithParamInterface<Scenario> {
  CliRun command(std::string const& line) {
    std::vector<std::string> words = wordsOf(line);
    for (auto const& [name, value] : {std::pair("{folder}", folder.path().string()),
                                      {"{id}", kept},
                                      {"{place}", place},
                                      {"{services}", base}})
      for (std::string& word : words) word = replaced(word, name, value);
    for (auto const& [option, value] : {std::pair("--services", base), {"--now", moment}})
      if (std::ranges::count(words, option) == 0) words.insert(words.end(), {option, value});
    test::TestConsole console;
    console.width = width;
    Session session{surroundings, console, {}};
    session.location = location.get();
    int const exitCode = runCli(std::move(words), session);
    return {exitCode, console.output, console.errors};
  }

  /// What was not said of the last command is expected all the same.
  void close() {
    if (!isOpen) return;
    isOpen = false;
    EXPECT_EQ(last.exitCode, code) << last.err;
    if (!lines.empty()) EXPECT_EQ(last.out, lines);
    if (!isErrorKnown) EXPECT_EQ(last.err, "");
  }
  void begin(std::string const& line) {
    before = last.out;
    last = command(line);
    isOpen = true;
    isErrorKnown = false;
    lines.clear();
    code = 0;
  }

  void expectFailure(std::string const& text) {
    auto const at = text.find('$');
    last = command(text.substr(at + 1));
    EXPECT_EQ(last.exitCode, text[0] - '0') << last.err;
    EXPECT_EQ(last.out, "");
    EXPECT_TRUE(last.err.starts_with("nimbara: ") && last.err.find('\n') == last.err.size() - 1) << last.err;
    EXPECT_THAT(last.err, HasSubstr(trimmed(text.substr(1, at - 1))));
  }

  void serve(std::string const& text) {
    server.reset();
    clock = FixedClock(test::at(moment));
    base = "http://127.0.0.1:1";
    if (text == "off") return;
    std::vector<DemoFault> faults;
    DemoScene const* scene = nullptr;
    if (text.starts_with("scene ")) {
      scene = findDemoScene(text.substr(6));
      ASSERT_NE(scene, nullptr) << text;
      place = scene->place;
    } else {
      for (std::string const& fault : wordsOf(text)) faults.push_back(parseDemoFault(fault).value());
    }
    server = *DemoServer::start(clock, faults, 0, scene);
    base = server->baseUrl();
  }

  static std::unique_ptr<LocationSource> locationOf(Result<LocationFix, LocationError> answer) {
    return std::make_unique<test::FakeLocationSource>(std::move(answer));
  }
  void surround(std::string const& text) {
    auto const words = wordsOf(text);
    std::string const value = words.size() > 1 ? words[1] : "";
    if (words[0] == "language") surroundings.language = value;
    if (words[0] == "time") surroundings.time = value;
    if (words[0] == "measurement") surroundings.measurement = value;
    if (words[0] == "latin") surroundings.utf8 = false;
    if (words[0] == "no-colour") surroundings.noColor = true;
    if (words[0] == "width") width = std::stoi(value);
    if (words[0] == "denied")
      location = locationOf(std::unexpected(LocationError{LocationError::Kind::denied, "it is denied"}));
    if (words[0] == "here")
      location = locationOf(LocationFix{std::get<Coordinate>(*parsePlace(value)), 1500, test::at(moment)});
  }

  void expectFile(std::string const& name) const {
    auto const file = folderOfSessions() / name;
    if (std::getenv("NIMBARA_UPDATE_SNAPSHOTS") != nullptr) std::ofstream(file, std::ios::binary) << last.out;
    EXPECT_EQ(last.out, test::readFile(file));
  }

  void expectError(std::string const& text, bool isSaid) {
    isErrorKnown = true;
    EXPECT_THAT(last.err, isSaid ? testing::Matcher<std::string>(HasSubstr(text)) : Not(HasSubstr(text)));
  }

  void write(std::string const& text) const {
    auto const at = text.find(' ');
    auto const file = folder.path() / text.substr(0, at);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << replaced(replaced(text.substr(at + 1), "\\n", "\n"), "\\t", "\t");
  }

  void keep(std::string const& text) {
    auto const at = last.out.find(text.substr(3));
    ASSERT_NE(at, std::string::npos) << last.out;
    kept = last.out.substr(at + text.size() - 3, 36);
  }

  void perform(Step const& step) {
    auto const& [mark, text, line] = step;
    bool const isOfTheLast = std::string_view("=+-~^#&%!!*!-??*").find(mark) != std::string_view::npos;
    bool const isFailure = mark == "?" && text.size() > 1;
    if (!isOfTheLast || isFailure) close();
    if (mark == "$") return begin(text);
    if (isFailure) return expectFailure(text);
    if (mark == "?") code = std::stoi(text);
    if (mark == "?*") code = last.exitCode;
    if (mark == "=") lines += text + "\n";
    if (mark == "+") EXPECT_THAT(last.out, HasSubstr(text));
    if (mark == "-") EXPECT_THAT(last.out, Not(HasSubstr(text)));
    if (mark == "~") EXPECT_TRUE(std::regex_search(last.out, std::regex(text))) << last.out;
    if (mark == "^") EXPECT_THAT(last.out, StartsWith(text));
    if (mark == "#") EXPECT_EQ(countOf(last.out, text.substr(text.find(' ') + 1)), std::stoul(text));
    if (mark == "&") EXPECT_EQ(last.out, before);
    if (mark == "%") expectFile(text);
    if (mark == "!" || mark == "!-") expectError(text, mark == "!");
    if (mark == "!*") isErrorKnown = true;
    if (mark == "@") moment = text;
    if (mark == "server") serve(text);
    if (mark == "set") surround(text);
    if (mark == "write") write(text);
    if (mark == "keep") keep(text);
  }

  Environment surroundings = environment();
  std::unique_ptr<LocationSource> location;
  int width = 0;
  std::string moment = kMoment, kept, place, before, lines;
  CliRun last;
  int code = 0;
  bool isOpen = false, isErrorKnown = false;
};

TEST_P(Transcripts, AreWhatTheProgramSays) {
  for (Step const& step : GetParam().steps) {
    SCOPED_TRACE(GetParam().file + ".session:" + std::to_string(step.line) + " " + step.mark + " " +
                 step.rest);
    perform(step);
    if (HasFatalFailure()) return;
  }
  close();
}

INSTANTIATE_TEST_SUITE_P(Sessions, Transcripts, testing::ValuesIn(scenarios()), [](auto const& row) {
  std::string name = row.param.file + "_" + row.param.title;
  std::ranges::replace_if(name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
});

}  // namespace
}  // namespace nimbara
