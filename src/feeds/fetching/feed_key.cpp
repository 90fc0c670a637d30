#include "feeds/fetching/feed_key.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::string_view kGroups[] = {
    "stations",           "starlink",          "oneweb",           "weather", "galileo", "glo-ops",
    "cosmos-2251-debris", "iridium-33-debris", "fengyun-1c-debris"};

std::optional<std::string> onlyValueOf(QueryParameters const& parameters, std::string_view name) {
  if (std::ranges::count(parameters, name, &QueryParameters::value_type::first) != 1) return std::nullopt;
  return std::ranges::find(parameters, name, &QueryParameters::value_type::first)->second;
}

}  // namespace

std::string FeedKey::name() const {
  return std::string(enumName(kind)) + (group.empty() ? "" : "-" + group);
}

std::optional<FeedKey> feedKeyOf(QueryParameters const& parameters) {
  auto const kind = enumFromName<FeedKey::Kind>(onlyValueOf(parameters, "f").value_or(""));
  if (!kind) return std::nullopt;
  if (*kind == FeedKey::Kind::quakes) return parameters.size() == 1 ? std::optional(FeedKey{}) : std::nullopt;
  auto const group = onlyValueOf(parameters, "p");
  bool const isServed = group && parameters.size() == 2 && std::ranges::count(kGroups, *group) > 0;
  return isServed ? std::optional(FeedKey{*kind, *group}) : std::nullopt;
}

}  // namespace nimbara
