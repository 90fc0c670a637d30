#include "desktop/views/notices/kind_titles.h"

#include "base/text/text.h"
#include "base/words/country_names.h"
#include "notifications/catalogue.h"
#include "notifications/engine/hold_back.h"

#include <algorithm>
#include <vector>

namespace nimbara {

namespace {

constexpr std::string_view kKindKey = "desktop.notifications.kind.";

std::string worded(std::string_view ending, ViewContext const& view) {
  return view.text(std::string(kKindKey) + std::string(ending));
}

template <class... Arguments>
std::string worded(ViewContext const& view, std::string_view ending, Arguments const&... arguments) {
  return view.texts.format(std::string(kKindKey) + std::string(ending), arguments...);
}

/// A warning's subject: "wind" of "gov:wind".
std::string subjectText(std::string_view subject, ViewContext const& view) {
  std::string const key = std::string(kKindKey) + "gov." + std::string(subject);
  std::string_view const text = view.texts.text(key);
  return text == key ? worded("gov.other", view) : std::string(text);
}

/// What a rule tells apart.
std::string detailText(std::string_view stem, std::string_view detail, ViewContext const& view) {
  if (stem == "gov") return subjectText(detail, view);
  if (stem == "travel_advisory") return countryName(detail, view.texts.language());
  return std::string(detail);
}

/// "agrees with the levels of the settings": info is low.
std::string levelText(AlertSeverity severity, ViewContext const& view) {
  return view.text("explain.level." + std::string(enumName(levelOf(severity))));
}

std::string ruleTitle(std::string_view stem, ViewContext const& view) {
  auto const rules = ruleCatalogue();
  auto const found =
      std::ranges::find_if(rules, [&](Rule const& rule) { return withoutJoint(rule.stem) == stem; });
  return found == rules.end() ? std::string() : settingTitle(found->setting, view);
}

std::string unknownTitle(std::string_view kind, ViewContext const& view) {
  if (kind.starts_with("custom_")) return worded("lostRule", view);
  if (kind.starts_with("hurricane")) {
    std::string const storm(kind.substr(std::min(kind.size(), kind.find(':') + 1)));
    return worded(view, "storm", asciiUppered(storm));
  }
  return worded(view, "unknown", oneLine(kind));
}

}  // namespace

std::string settingTitle(std::string_view key, ViewContext const& view) {
  return view.text("desktop.notifications." + std::string(key));
}

std::string_view stemOfKind(std::string_view kind) {
  return kind.substr(0, kind.find(':'));
}

std::string kindTitle(std::string_view kind, CustomNotificationList const& own, ViewContext const& view) {
  auto const ofOwn = std::ranges::find(own.rules, stemOfKind(kind), &CustomNotification::identifier);
  if (ofOwn != own.rules.end()) return ofOwn->title;
  std::vector<std::string_view> parts = split(kind, ':');
  auto const severity = parts.size() > 1 ? enumFromName<AlertSeverity>(parts.back()) : std::nullopt;
  if (severity) parts.pop_back();
  std::string title = ruleTitle(parts.front(), view);
  if (title.empty()) return unknownTitle(kind, view);
  if (parts.size() > 1) title = worded(view, "detailed", title, detailText(parts[0], parts[1], view));
  return severity ? worded(view, "graded", title, levelText(*severity, view)) : title;
}

}  // namespace nimbara
