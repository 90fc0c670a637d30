#include "app/settings/configuration.h"

#include "app/settings/settings_registry.h"
#include "app/version.h"
#include "base/text/text.h"

namespace nimbara {

namespace {

/// Where whoever runs a service can find out what the program is and whom to write to.
constexpr char kProjectAddress[] = "https://nimbara.github.io";

std::optional<std::string> textUnlessEmpty(Settings const& settings, std::string_view key) {
  std::string text = settings.text(key);
  return text.empty() ? std::nullopt : std::optional(std::move(text));
}

}  // namespace

Configuration configurationOf(Settings const& settings) {
  Configuration configuration;
  configuration.contact = textUnlessEmpty(settings, "contact");
  for (ServiceRow const& row : kServices) {
    configuration.services[std::string(row.name)] = {textUnlessEmpty(settings, hostSetting(row.service)),
                                                     textUnlessEmpty(settings, apiKeySetting(row.service))};
  }
  return configuration;
}

std::string contactOf(Configuration const& configuration) {
  return oneLine(configuration.contact.value_or(kProjectAddress));
}

std::string userAgent(Configuration const& configuration) {
  std::string agent = "nimbara/" + std::string(kVersion) + " (" + kProjectAddress;
  std::string const contact = oneLine(configuration.contact.value_or(""));
  if (!contact.empty()) agent += "; " + contact;
  return agent + ")";
}

}  // namespace nimbara
