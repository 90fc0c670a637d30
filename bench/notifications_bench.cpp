// One pass of the notification engine without any input or output: every rule, every setting on, over a place
// and over a hundred. The hours are mild ones with enough in them that rules speak.

#include "notifications/engine/pass_plan.h"
#include "notifications/rules/hazard_rules.h"
#include "notifications/rules/rule_settings.h"
#include "support/rules.h"

#include <benchmark/benchmark.h>

namespace nimbara {
namespace {

Instant now() {
  return test::at("2026-11-21T09:05:00Z");
}

Settings const& everythingOn() {
  static SettingsRegistry const kRegistry{notificationSettings()};
  static Settings const kSettings = [] {
    SettingValues values;
    for (SettingDefinition const& definition : notificationSettings()) {
      bool const isHold = definition.key.starts_with("notify_quiet");
      if (std::get_if<bool>(&definition.byDefault) && !isHold) values.emplace(definition.key, true);
    }
    return Settings(kRegistry, std::move(values));
  }();
  return kSettings;
}

std::vector<WeatherAlert> warnings(int count) {
  std::vector<WeatherAlert> list(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    WeatherAlert& alert = list[static_cast<std::size_t>(i)];
    alert.id = Uuid::named(Uuid{}, std::to_string(i));
    alert.severity = AlertSeverity::warning;
    alert.title = "High Wind Warning";
    alert.message = std::string(800, 'x');
    alert.kind = WarningKind::wind;
    alert.onset = now();
    alert.expires = now() + std::chrono::hours(6);
  }
  return list;
}

std::vector<RuleInputs> places(int count) {
  std::vector<RuleInputs> all;
  for (int i = 0; i < count; ++i) {
    RuleInputs inputs = test::ruleInputs(now(), [](WeatherData& data) {
      data.allHourly[2].condition = WeatherConditionCode::heavyRain;
      data.allHourly[2].precipMM = 6;
      data.allHourly[2].chanceOfRain = 90;
    });
    inputs.place = {"place" + std::to_string(i), "Place", "PT", {38.7 + 0.01 * i, -9.1}, i == 0};
    inputs.govAlerts = InputReading<std::vector<WeatherAlert>>::of(warnings(5));
    inputs.generatedAlerts = InputReading<std::vector<WeatherAlert>>::of(std::vector<WeatherAlert>{});
    inputs.nwsAlerts = InputReading<std::vector<NWSAlert>>::of(std::vector<NWSAlert>(5));
    inputs.earthquakes = InputReading<std::vector<EarthquakeEvent>>::of(std::vector<EarthquakeEvent>(300));
    inputs.kp = InputReading<double>::of(3);
    inputs.storms = InputReading<std::vector<TropicalStorm>>::of(std::vector<TropicalStorm>(5));
    inputs.fires = InputReading<std::vector<FireDetection>>::of(std::vector<FireDetection>(100));
    inputs.advisories = InputReading<std::vector<TravelAdvisory>>::of(std::vector<TravelAdvisory>(200));
    inputs.lightning = InputReading<std::vector<LightningStrike>>::of(std::vector<LightningStrike>(100));
    all.push_back(std::move(inputs));
  }
  return all;
}

/// `isTold`: everything was told by the pass before, as in nearly all passes.
void plan(benchmark::State& state, bool isTold) {
  auto const all = places(static_cast<int>(state.range(0)));
  EngineState::Strings const suppressed;
  PassContext const context{now(), all, {}, everythingOn(), test::englishTexts(), suppressed};
  EngineState known;
  PassPlan const first = planPass(context, known);
  if (isTold) {
    for (Decision const& decision : first.decisions) apply(decision, now(), known);
    applyChecks(first, now(), known);
  }
  for (auto _ : state) benchmark::DoNotOptimize(planPass(context, known));
}

BENCHMARK_CAPTURE(plan, first, false)->Arg(1)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(plan, later, true)->Arg(1)->Arg(100)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace nimbara
