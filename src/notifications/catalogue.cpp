#include "notifications/catalogue.h"

#include <algorithm>

namespace nimbara {

namespace {

using enum RuleInput;

constexpr Rule kCatalogue[] = {
    {"placeholder", "notify_rain", RulePolicy::condition, {hourly}, "rain_alert.caf", nullptr},
};

}  // namespace

std::span<Rule const> ruleCatalogue() {
  return kCatalogue;
}

Rule const* ruleOf(std::string_view identifier) {
  Rule const* best = nullptr;
  for (Rule const& rule : kCatalogue) {
    bool const isLonger = best == nullptr || rule.stem.size() > best->stem.size();
    if (isLonger && identifier.starts_with(rule.stem)) best = &rule;
  }
  return best;
}

}  // namespace nimbara
