#include "analysis/weather_analysis_engine.h"

#include "analysis/alerts/truer_alerts.h"
#include "model/process.h"

namespace nimbara {

ForecastInsight WeatherAnalysisEngine::analyze(WeatherData const& weather, Instant now, Units const& units,
                                               Texts const& texts, Calendar const& fallback) const {
  ForecastInsight insight;
  insight.alerts = alertGenerator.generate(weather, now, units, texts, fallback);
  insight.superseded = truerAlerts(insight.alerts, eventDetector.detect(weather, now, fallback), weather, now,
                                   units, texts, calendarOf(weather, fallback));
  return insight;
}

}  // namespace nimbara
