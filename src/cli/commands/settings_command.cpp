#include "app/settings/keyed_settings_store.h"
#include "app/settings/setting_text.h"
#include "base/json/json.h"
#include "base/text/display_text.h"
#include "base/text/number.h"
#include "cli/cli.h"
#include "platform/settings/settings_store.h"

namespace nimbara {

namespace {

constexpr std::string_view kHidden = "•••";
/// Lists of rules are longer than any terminal is wide; `get` shows them whole.
constexpr int kWidestValue = 60;

/// Lists tell of a secret only that there is one.
SettingValue listedValue(Settings const& settings, SettingDefinition const& definition) {
  SettingValue value = settings.value(definition.key);
  bool const hidden = definition.isSecret && value != SettingValue(std::string());
  return hidden ? SettingValue(std::string(kHidden)) : value;
}

using Pairs = std::vector<std::pair<SettingDefinition, SettingValue>>;

std::string json(Pairs const& pairs) {
  JsonWriter writer;
  writer.beginObject();
  for (auto const& [definition, value] : pairs) {
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): the analyzer loses track of the variant
    std::visit([&](auto const& content) { writer.member(definition.key, content); }, value);
  }
  writer.endObject();
  return writer.take() + "\n";
}

/// Columns: key, value, and what it is; an asterisk marks what the user has chosen.
std::string table(Pairs const& pairs, Settings const& settings) {
  int keys = 0;
  int values = 0;
  for (auto const& [definition, value] : pairs) {
    keys = std::max(keys, displayWidth(definition.key));
    values = std::max(values, std::min(kWidestValue, displayWidth(settingText(value))));
  }
  std::string out;
  for (auto const& [definition, value] : pairs) {
    out += fitted(definition.key, keys) + (settings.isChosen(definition.key) ? " * " : "   ") +
           fitted(settingText(value), values) + "  " + std::string(definition.explanation) + "\n";
  }
  return out;
}

int list(CommandLine const& line, Session const& session, SettingsReading const& reading) {
  Pairs pairs;
  for (SettingDefinition const* const definition : session.store->registry().all()) {
    pairs.emplace_back(*definition, listedValue(reading.settings, *definition));
  }
  session.console.out(line.settings.json ? json(pairs) : table(pairs, reading.settings));
  return exitCode::kComplete;
}

int finish(Result<void, StoreError> const& done, Session const& session) {
  return done ? exitCode::kComplete : session.fail(exitCode::kUnavailable, done.error().message);
}

int write(SettingsOptions const& options, Session const& session, SettingDefinition const& definition) {
  if (options.action == SettingsOptions::Action::reset)
    return finish(session.store->reset(options.key), session);
  auto value = parsedSetting(definition, options.value);
  if (!value) return session.fail(exitCode::kUsage, value.error() + ", not '" + options.value + "'");
  return finish(session.store->set(options.key, *value), session);
}

}  // namespace

int runSettings(CommandLine const& line, Session const& session) {
  SettingsOptions const& options = line.settings;
  bool const reads =
      options.action == SettingsOptions::Action::list || options.action == SettingsOptions::Action::get;
  SettingDefinition const* definition = nullptr;
  if (options.action != SettingsOptions::Action::list) {
    definition = session.store->registry().find(options.key);
    if (definition == nullptr) {
      return session.fail(exitCode::kUsage,
                          "no such setting: '" + options.key + "'; see nimbara settings list");
    }
  }
  if (!reads) return write(options, session, *definition);
  auto const reading = session.store->settings();
  if (reading.problem) return session.fail(exitCode::kUnavailable, reading.problem->message);
  if (definition == nullptr) return list(line, session, reading);
  SettingValue value = reading.settings.value(options.key);
  if (definition->isSecret) {
    auto key = session.keyed->text(reading.settings, *definition);
    if (!key) return session.fail(exitCode::kUnavailable, key.error().message);
    value = std::move(*key);
  }
  session.console.out(options.json ? json({{*definition, value}}) : settingText(value) + "\n");
  return exitCode::kComplete;
}

}  // namespace nimbara
