#include "app/configuration.h"

#include "app/service_directory.h"
#include "app/version.h"
#include "base/json_codec.h"
#include "base/text.h"

#include <fstream>
#include <sstream>

namespace nimbara {

namespace {

std::string sentence(std::filesystem::path const& file, std::string_view problem) {
  return "the configuration " + file.string() + " cannot be used: " + std::string(problem) +
         "; correct or remove it";
}

std::optional<std::string> problemOf(Configuration const& configuration) {
  for (auto const& [name, service] : configuration.services) {
    if (!enumFromName<Service>(name)) return "/services/" + name + ": there is no such service";
    if (service.host && !normalizedBase(*service.host)) {
      return "/services/" + name + "/host: an address like https://host is expected";
    }
  }
  return std::nullopt;
}

}  // namespace

Result<Configuration, std::string> loadConfiguration(std::filesystem::path const& file) {
  std::error_code error;
  if (!std::filesystem::exists(file, error)) return Configuration{};
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  if (!stream) return std::unexpected(sentence(file, "it cannot be read"));
  auto configuration = decodeJson<Configuration>(content.view());
  if (!configuration) return std::unexpected(sentence(file, configuration.error().text()));
  if (auto const problem = problemOf(*configuration)) return std::unexpected(sentence(file, *problem));
  return std::move(*configuration);
}

std::string userAgent(Configuration const& configuration) {
  std::string agent = "nimbara/" + std::string(kVersion);
  std::string const contact = oneLine(configuration.contact.value_or(""));
  if (!contact.empty()) agent += " (" + contact + ")";
  return agent;
}

}  // namespace nimbara
