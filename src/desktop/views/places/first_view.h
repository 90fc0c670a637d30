// The first minute as display values: the welcome while there is no place, a place whose forecast has not
// come yet, and the one question about notifications in the background. Pure functions.
#pragma once

#include "app/state/engine_snapshot.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <string>
#include <vector>

namespace nimbara {

struct WelcomeView {
  std::string notice;       ///< without a network: what works and what comes later
  std::string locating;     ///< what became of asking where the user is
  bool isTroubled = false;  ///< that failed
  bool isLocating = false;
  std::vector<std::string> examples;  ///< of what can be searched for

  bool operator==(WelcomeView const&) const = default;
};

template <>
inline constexpr auto viewFields<WelcomeView> = FieldList{
    viewField("notice", &WelcomeView::notice),         viewField("locating", &WelcomeView::locating),
    viewField("isTroubled", &WelcomeView::isTroubled), viewField("isLocating", &WelcomeView::isLocating),
    viewField("examples", &WelcomeView::examples),
};

/// Who is asked for something, in one line.
struct WelcomeSource {
  std::string purpose;
  std::string names;
  std::string sentence;

  bool operator==(WelcomeSource const&) const = default;
};

template <>
inline constexpr auto viewFields<WelcomeSource> =
    FieldList{viewField("purpose", &WelcomeSource::purpose), viewField("names", &WelcomeSource::names),
              viewField("sentence", &WelcomeSource::sentence)};

/// A place whose forecast is not there.
struct ArrivalView {
  std::string phase;  ///< "loading", "offline", "failed"; empty once there is a forecast, or no place
  std::string title;
  std::string text;  ///< what happened, what works meanwhile and what happens next

  bool operator==(ArrivalView const&) const = default;
};

template <>
inline constexpr auto viewFields<ArrivalView> =
    FieldList{viewField("phase", &ArrivalView::phase), viewField("title", &ArrivalView::title),
              viewField("text", &ArrivalView::text)};

/// Asked once, when the first forecast has come.
struct BackgroundView {
  std::string phase;  ///< "question", "working", "done", "failed"; empty where nothing is asked
  std::string title;
  std::string text;

  bool operator==(BackgroundView const&) const = default;
};

template <>
inline constexpr auto viewFields<BackgroundView> =
    FieldList{viewField("phase", &BackgroundView::phase), viewField("title", &BackgroundView::title),
              viewField("text", &BackgroundView::text)};

WelcomeView welcomeView(EngineSnapshot const& snapshot, ViewContext const& context);
/// The services that are asked without a key and without anybody's doing once there is a place.
std::vector<WelcomeSource> welcomeSources(bool isAppleWeatherConfigured, ViewContext const& context);
ArrivalView arrivalView(EngineSnapshot const& snapshot, ViewContext const& context);
/// `isAnswered`: with yes, since the window was opened. Never asked where test servers answer.
BackgroundView backgroundView(EngineSnapshot const& snapshot, bool isAnswered, ViewContext const& context);

}  // namespace nimbara
