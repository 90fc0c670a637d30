// What settings there are and what they may hold: definitions, the registry of all definitions, and the
// settings of one moment as a value. Pure: nothing here reads a file. `SettingsStore` keeps what the user
// has chosen.
#pragma once

#include "base/enum_names.h"
#include "base/result.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <limits>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace nimbara {

/// Lists and records are texts in JSON.
using SettingValue = std::variant<bool, std::int64_t, double, std::string>;
using SettingValues = std::map<std::string, SettingValue, std::less<>>;

/// Where the window shows a setting: in a group of its page of settings, on another page, or nowhere.
enum class SettingsGroup { none, look, units, advice, window, keys, addresses, elsewhere };

/// One setting: all that is known of it. Tables of them are constants of whoever knows what the settings
/// mean. The settings page makes its row of it, titled "desktop.settings.KEY", with
/// "desktop.settings.KEY.why" below.
struct SettingDefinition {
  std::string_view key;
  std::variant<bool, std::int64_t, double, std::string_view> byDefault;  ///< its type is the setting's
  std::string_view explanation;                                          ///< one line
  // NOLINTBEGIN(readability-redundant-member-init): tables leave these out
  std::span<std::string_view const> choices =
      {};  ///< of a text, none means any; of a number, what the page offers
  double minimum = -std::numeric_limits<double>::infinity();
  double maximum = std::numeric_limits<double>::infinity();
  bool (*accepts)(std::string_view text) = nullptr;  ///< a further condition of a text
  std::string_view expected = {};                    ///< that condition in words: "an address like https://…"
  std::string_view formerKey = {};            ///< under which earlier versions kept it; still understood
  SettingsGroup group = SettingsGroup::none;  ///< none: `nimbara settings` alone shows it
  bool isSecret = false;                      ///< a key: lists show only whether it is set
  std::vector<std::string_view> (*offers)() =
      nullptr;  ///< choices of a text that only the running program knows
  // NOLINTEND(readability-redundant-member-init)

  SettingValue defaultValue() const;
};

/// Finds definitions by key. The tables outlive it.
class SettingsRegistry {
 public:
  SettingsRegistry(std::initializer_list<std::span<SettingDefinition const>> tables);

  /// By its key or the one that it had before.
  SettingDefinition const* find(std::string_view key) const;
  /// Ordered by key.
  std::vector<SettingDefinition const*> const& all() const { return definitions_; }
  /// In the order of the tables.
  std::vector<SettingDefinition const*> const& asWritten() const { return asWritten_; }

 private:
  std::vector<SettingDefinition const*> asWritten_;
  std::vector<SettingDefinition const*> definitions_;
};

/// `value` in the definition's own type, or a sentence that names the key and what is expected.
Result<SettingValue, std::string> checkedSetting(SettingDefinition const& definition,
                                                 SettingValue const& value);
/// The like for a text that a person typed: "true", "42", "0.5", "celsius".
Result<SettingValue, std::string> parsedSetting(SettingDefinition const& definition, std::string_view text);

/// The settings at one moment. What is not stored, or stored in a form that the definition refuses, has its
/// default. Asking for a key that nobody registered, or as another type, is a fault of the program.
class Settings {
 public:
  explicit Settings(SettingsRegistry const& registry, SettingValues stored = {});

  SettingValue value(std::string_view key) const;
  bool boolean(std::string_view key) const { return std::get<bool>(value(key)); }
  std::int64_t integer(std::string_view key) const { return std::get<std::int64_t>(value(key)); }
  double real(std::string_view key) const { return std::get<double>(value(key)); }
  std::string text(std::string_view key) const { return std::get<std::string>(value(key)); }
  /// Nothing for a text that is no case of the enumeration, such as "automatic".
  template <NamedEnum E>
  std::optional<E> choice(std::string_view key) const {
    return enumFromName<E>(text(key));
  }
  /// A sentence for each stored value that its definition refuses, so that the default holds. Without a full
  /// stop.
  std::vector<std::string> faults() const;
  /// True when the user has chosen the value, be it the default.
  bool isChosen(std::string_view key) const;

  SettingsRegistry const& registry() const { return *registry_; }

 private:
  SettingsRegistry const* registry_;
  SettingValues stored_;
};

}  // namespace nimbara
