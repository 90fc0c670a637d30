#include "platform/settings/settings.h"

#include "base/text/number.h"
#include "base/text/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>

namespace nimbara {

namespace {

std::unexpected<std::string> refused(SettingDefinition const& definition, std::string_view expected) {
  return std::unexpected("the setting " + std::string(definition.key) + " takes " + std::string(expected));
}

std::string listed(std::span<std::string_view const> choices) {
  std::string list = "one of ";
  for (std::string_view const choice : choices) {
    if (!list.ends_with(" ")) list += ", ";
    list += choice;
  }
  return list;
}

std::string rangeOf(SettingDefinition const& definition, std::string_view kind) {
  std::string text(kind);
  if (std::isfinite(definition.minimum)) text += " from " + plainDecimal(definition.minimum);
  if (std::isfinite(definition.maximum)) text += " to " + plainDecimal(definition.maximum);
  return text;
}

Result<SettingValue, std::string> checkedBoolean(SettingDefinition const& definition,
                                                 SettingValue const& value) {
  // The database knows no truth values, only 0 and 1.
  if (auto const* const number = std::get_if<std::int64_t>(&value)) {
    if (*number == 0 || *number == 1) return *number == 1;
  }
  if (std::holds_alternative<bool>(value)) return value;
  return refused(definition, "true or false");
}

bool isWithin(SettingDefinition const& definition, double number) {
  return number >= definition.minimum && number <= definition.maximum;
}

Result<SettingValue, std::string> checkedInteger(SettingDefinition const& definition,
                                                 SettingValue const& value) {
  auto const* const number = std::get_if<std::int64_t>(&value);
  if (number != nullptr && isWithin(definition, static_cast<double>(*number))) return value;
  return refused(definition, rangeOf(definition, "a whole number"));
}

Result<SettingValue, std::string> checkedReal(SettingDefinition const& definition,
                                              SettingValue const& value) {
  auto const* const whole = std::get_if<std::int64_t>(&value);
  auto const* const real = std::get_if<double>(&value);
  double const number = whole != nullptr  ? static_cast<double>(*whole)
                        : real != nullptr ? *real
                                          : std::numeric_limits<double>::quiet_NaN();
  if (std::isfinite(number) && isWithin(definition, number)) return number;
  return refused(definition, rangeOf(definition, "a number"));
}

Result<SettingValue, std::string> checkedText(SettingDefinition const& definition,
                                              SettingValue const& value) {
  auto const* const text = std::get_if<std::string>(&value);
  if (text == nullptr) return refused(definition, "a text");
  auto const choices = definition.offers == nullptr
                           ? std::vector(definition.choices.begin(), definition.choices.end())
                           : definition.offers();
  bool const known = choices.empty() || std::ranges::count(choices, *text) > 0;
  if (!known) return refused(definition, listed(choices));
  if (definition.accepts != nullptr && !definition.accepts(*text)) {
    return refused(definition, definition.expected);
  }
  return value;
}

using Check = Result<SettingValue, std::string> (*)(SettingDefinition const&, SettingValue const&);
/// In the order of the alternatives of a value.
constexpr Check kChecks[] = {&checkedBoolean, &checkedInteger, &checkedReal, &checkedText};

std::optional<bool> parsedBoolean(std::string_view text) {
  std::string const word = asciiLowered(text);
  if (word == "true" || word == "on" || word == "yes") return true;
  if (word == "false" || word == "off" || word == "no") return false;
  return std::nullopt;
}

std::optional<std::int64_t> parsedWhole(std::string_view text) {
  std::int64_t number = 0;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

SettingValue SettingDefinition::defaultValue() const {
  if (auto const* const text = std::get_if<std::string_view>(&byDefault)) return std::string(*text);
  if (auto const* const flag = std::get_if<bool>(&byDefault)) return *flag;
  if (auto const* const whole = std::get_if<std::int64_t>(&byDefault)) return *whole;
  return std::get<double>(byDefault);
}

SettingsRegistry::SettingsRegistry(std::initializer_list<std::span<SettingDefinition const>> tables) {
  for (auto const table : tables) {
    for (SettingDefinition const& definition : table) asWritten_.push_back(&definition);
  }
  definitions_ = asWritten_;
  std::ranges::sort(definitions_, {}, [](auto const* definition) { return definition->key; });
}

SettingDefinition const* SettingsRegistry::find(std::string_view key) const {
  auto const keyOf = [](auto const* definition) { return definition->key; };
  auto const found = std::ranges::lower_bound(definitions_, key, {}, keyOf);
  if (found != definitions_.end() && (*found)->key == key) return *found;
  auto const isFormer = [key](auto const* definition) {
    return !key.empty() && definition->formerKey == key;
  };
  auto const former = std::ranges::find_if(definitions_, isFormer);
  return former == definitions_.end() ? nullptr : *former;
}

Result<SettingValue, std::string> checkedSetting(SettingDefinition const& definition,
                                                 SettingValue const& value) {
  return kChecks[definition.byDefault.index()](definition, value);
}

Result<SettingValue, std::string> parsedSetting(SettingDefinition const& definition, std::string_view text) {
  SettingValue value = std::string(text);
  if (std::holds_alternative<bool>(definition.byDefault)) {
    if (auto const flag = parsedBoolean(text)) value = *flag;
  } else if (!std::holds_alternative<std::string_view>(definition.byDefault)) {
    if (auto const whole = parsedWhole(text)) {
      value = *whole;
    } else if (auto const real = parseDouble(text)) {
      value = *real;
    }
  }
  return checkedSetting(definition, value);
}

Settings::Settings(SettingsRegistry const& registry, SettingValues stored)
    : registry_(&registry), stored_(std::move(stored)) {
  for (SettingDefinition const* const definition : registry.all()) {
    auto former = definition->formerKey.empty() ? stored_.end() : stored_.find(definition->formerKey);
    if (former == stored_.end()) continue;
    stored_.try_emplace(std::string(definition->key), std::move(former->second));
    stored_.erase(former);
  }
}

SettingValue Settings::value(std::string_view key) const {
  SettingDefinition const* const definition = registry_->find(key);
  if (definition == nullptr) throw std::logic_error("no such setting: " + std::string(key));
  auto const stored = stored_.find(definition->key);
  if (stored == stored_.end()) return definition->defaultValue();
  return checkedSetting(*definition, stored->second).value_or(definition->defaultValue());
}

std::vector<std::string> Settings::faults() const {
  std::vector<std::string> sentences;
  for (auto const& [key, value] : stored_) {
    SettingDefinition const* const definition = registry_->find(key);
    if (definition == nullptr) continue;  // of another version
    auto const checked = checkedSetting(*definition, value);
    if (!checked) sentences.push_back(checked.error() + "; using the default");
  }
  return sentences;
}

bool Settings::isChosen(std::string_view key) const {
  SettingDefinition const* const definition = registry_->find(key);
  if (definition == nullptr) return false;
  auto const stored = stored_.find(definition->key);
  return stored != stored_.end() && checkedSetting(*definition, stored->second);
}

}  // namespace nimbara
