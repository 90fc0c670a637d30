#include "analysis/tips/tip_rules.h"

#include <array>

namespace nimbara {

namespace {

using enum Activity;
using Of = TipQuantity;

constexpr double kLeast = -1e6;
constexpr double kMost = 1e6;

/// The smaller the better.
constexpr TipRule upTo(Activity activity, Of quantity, double best, double worst, bool isNeeded = false) {
  return {activity, quantity, kLeast - 1, kLeast, best, worst, isNeeded};
}

/// The greater the better.
constexpr TipRule from(Activity activity, Of quantity, double worst, double best, bool isNeeded = false) {
  return {activity, quantity, worst, best, kMost, kMost + 1, isNeeded};
}

constexpr std::array kRules = std::to_array<TipRule>({
    {walking, Of::temperature, -25, 2, 25, 36},
    upTo(walking, Of::rain, 0.1, 1.5, true),
    upTo(walking, Of::wind, 25, 60),
    upTo(walking, Of::thunder, 15, 60),
    upTo(walking, Of::uv, 7, 13),
    upTo(walking, Of::ice, 0, 1.5),
    from(walking, Of::sun, -8, -2),
    upTo(walking, Of::air, 3, 6),
    upTo(walking, Of::pollen, 2, 5),

    {running, Of::temperature, -20, 2, 18, 31},
    upTo(running, Of::rain, 0.3, 2.5, true),
    upTo(running, Of::wind, 20, 55),
    upTo(running, Of::thunder, 15, 60),
    upTo(running, Of::humidity, 88, 120),
    upTo(running, Of::uv, 6, 11),
    upTo(running, Of::ice, 0, 1.2),
    from(running, Of::sun, -8, -3),
    upTo(running, Of::air, 2, 5),
    upTo(running, Of::pollen, 2, 4),

    {cycling, Of::temperature, -8, 8, 25, 35},
    upTo(cycling, Of::rain, 0.1, 1, true),
    upTo(cycling, Of::wind, 15, 45, true),
    upTo(cycling, Of::gusts, 35, 70),
    upTo(cycling, Of::thunder, 15, 50),
    upTo(cycling, Of::uv, 7, 13),
    upTo(cycling, Of::ice, 0, 1),
    from(cycling, Of::visibility, 0.2, 4),
    from(cycling, Of::sun, -6, -2),
    upTo(cycling, Of::air, 2, 5),
    upTo(cycling, Of::pollen, 2, 4),

    from(laundry, Of::temperature, 2, 12),
    upTo(laundry, Of::rain, 0, 0.2, true),
    upTo(laundry, Of::humidity, 65, 95, true),
    {laundry, Of::wind, -60, 5, 30, 60},
    upTo(laundry, Of::thunder, 15, 50),
    from(laundry, Of::sun, -3, 6),

    {gardening, Of::temperature, 2, 10, 25, 34},
    upTo(gardening, Of::rain, 0.1, 1.5, true),
    upTo(gardening, Of::wind, 25, 55),
    upTo(gardening, Of::thunder, 15, 50),
    upTo(gardening, Of::uv, 6, 11),
    from(gardening, Of::sun, -2, 3),
    upTo(gardening, Of::pollen, 2, 4),

    {photography, Of::sun, -6, -4, 8, 16},
    {photography, Of::clouds, -40, 10, 60, 100, true},
    upTo(photography, Of::rain, 0.1, 1, true),
    from(photography, Of::visibility, 1, 10),
    upTo(photography, Of::wind, 30, 70),

    upTo(stargazing, Of::sun, -15, -9),
    upTo(stargazing, Of::clouds, 10, 50, true),
    upTo(stargazing, Of::rain, 0, 0.1, true),
    upTo(stargazing, Of::moon, 20, 160),
    upTo(stargazing, Of::humidity, 92, 130),
    upTo(stargazing, Of::wind, 25, 60),

    {swimming, Of::temperature, 20, 26, 36, 44},
    upTo(swimming, Of::rain, 0.1, 1, true),
    upTo(swimming, Of::thunder, 10, 30),
    upTo(swimming, Of::wind, 20, 45),
    upTo(swimming, Of::uv, 8, 14),
    from(swimming, Of::sun, 0, 10),

    upTo(driving, Of::rain, 2, 10, true),
    upTo(driving, Of::ice, 0, 1),
    from(driving, Of::visibility, 0.1, 3),
    upTo(driving, Of::gusts, 60, 110),
    upTo(driving, Of::thunder, 50, 150),
});

}  // namespace

std::span<TipRule const> tipRules() {
  return kRules;
}

double suitability(TipRule const& rule, double value) {
  if (value <= rule.worstFrom || value >= rule.worstTo) return 0;
  if (value < rule.bestFrom) return (value - rule.worstFrom) / (rule.bestFrom - rule.worstFrom);
  if (value > rule.bestTo) return (rule.worstTo - value) / (rule.worstTo - rule.bestTo);
  return 1;
}

}  // namespace nimbara
