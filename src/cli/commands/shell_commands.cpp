#include "app/places/place_search.h"
#include "app/places/places.h"
#include "app/settings/settings_registry.h"
#include "app/version.h"
#include "base/files/file.h"
#include "base/text/text.h"
#include "base/words/texts.h"
#include "cli/cli.h"
#include "cli/shell/completion.h"
#include "cli/shell/manual.h"
#include "demo/world/demo_scene.h"

#include <filesystem>

namespace nimbara {

namespace {

/// From so many letters on cities are offered beside the saved places.
constexpr std::size_t kLettersOfCity = 3;

template <class E>
std::vector<Completion> names() {
  std::vector<Completion> found;
  found.reserve(enumNames<E>.size());
  for (std::string_view const name : enumNames<E>) found.push_back({std::string(name), ""});
  return found;
}

std::vector<Completion> placesLike(std::string_view typed, Session const& session) {
  std::vector<Completion> found;
  auto const list = Places(*session.store).list();
  for (SavedPlace const& place : list ? list->places : std::vector<SavedPlace>()) {
    found.push_back({place.name, place.countryName});
  }
  auto const begins = [&](Completion const& place) { return place.word.starts_with(typed); };
  if (typed.size() < kLettersOfCity || std::ranges::any_of(found, begins)) return found;
  for (FoundPlace const& city : searchOffline(typed, session.environment.language)) {
    std::string const& name = city.otherName.empty() ? city.name : city.otherName;
    found.push_back({name, city.region.empty() ? city.country : city.region + ", " + city.country});
  }
  return found;
}

std::vector<Completion> settingKeys() {
  std::vector<Completion> found;
  for (SettingDefinition const* const setting : settingsRegistry().all()) {
    found.push_back({std::string(setting->key), std::string(setting->explanation)});
  }
  return found;
}

std::vector<Completion> settingValues(std::string_view key) {
  SettingDefinition const* const setting = settingsRegistry().find(key);
  if (setting == nullptr) return {};
  if (std::holds_alternative<bool>(setting->byDefault)) return {{"true", ""}, {"false", ""}};
  std::vector<Completion> found;
  for (std::string_view const choice : setting->choices) found.push_back({std::string(choice), ""});
  for (std::string_view const offer : setting->offers ? setting->offers() : std::vector<std::string_view>()) {
    found.push_back({std::string(offer), ""});
  }
  return found;
}

std::vector<Completion> languages() {
  std::vector<Completion> found;
  for (Texts::Language const& language : Texts::languages())
    found.push_back({std::string(language.code), language.name});
  return found;
}

std::vector<Completion> scenes() {
  std::vector<Completion> found;
  for (DemoScene const& scene : demoScenes())
    found.push_back({std::string(scene.name), std::string(scene.explanation)});
  return found;
}

std::vector<Completion> knownValues(std::string_view name, std::string_view before, std::string_view typed,
                                    Session const& session) {
  if (name == "PLACE") return placesLike(typed, session);
  if (name == "KEY") return settingKeys();
  if (name == "VALUE") return settingValues(before);
  if (name == "--lang") return languages();
  if (name == "--units") return {{"metric", ""}, {"imperial", ""}};
  if (name == "--provider") return names<WeatherProviderOption>();
  if (name == "--sources" || name == "--source") return names<AlertSource>();
  if (name == "--scene") return scenes();
  return {};
}

}  // namespace

int runComplete(CommandLine const& line, Session const& session) {
  auto const known = [&](std::string_view name, std::string_view before, std::string_view typed) {
    return knownValues(name, before, typed, session);
  };
  for (Completion const& completion : completions(commandOutline(), line.shell.words, known)) {
    session.console.out(oneLine(completion.word) + "\t" + oneLine(completion.explanation) + "\n");
  }
  return exitCode::kComplete;
}

int runManual(CommandLine const& line, Session const& session) {
  std::error_code refused;
  std::filesystem::create_directories(line.shell.directory, refused);
  for (ManualPage const& page : manualPages(commandOutline(), kVersion)) {
    auto const written =
        writeFileAtomically(std::filesystem::path(line.shell.directory) / page.file, page.text);
    if (!written) return session.fail(exitCode::kUnavailable, written.error());
  }
  return exitCode::kComplete;
}

}  // namespace nimbara
