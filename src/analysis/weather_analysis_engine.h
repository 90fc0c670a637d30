// All that is computed from one forecast, with the parts that compute it. A value without state.
#pragma once

#include "analysis/alerts/alert_generator.h"
#include "analysis/event_detector.h"
#include "analysis/precip_predictor.h"
#include "analysis/tips/tip_generator.h"
#include "analysis/trend_analyzer.h"
#include "model/forecast_insight.h"

namespace nimbara {

struct WeatherAnalysisEngine {
  AlertGenerator alertGenerator;
  TrendAnalyzer trendAnalyzer;
  PrecipPredictor precipPredictor{Nowcast{}};  ///< of no nowcast until a place's is known
  TipGenerator tipGenerator;
  EventDetector eventDetector;

  /// The alerts of a forecast, and what says some of them more truly.
  ForecastInsight analyze(WeatherData const& weather, Instant now, Units const& units, Texts const& texts,
                          Calendar const& fallback = Calendar::utc()) const;
};

}  // namespace nimbara
