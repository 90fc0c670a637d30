// Scenes of official warnings that the demo plays in place of its generated ones: what borders, coasts,
// updates and broken feeds do to a list of warnings. A table; times count from the beginning of the day
// (UTC).
#pragma once

#include "demo/demo_exchange.h"

#include <chrono>
#include <optional>
#include <span>
#include <string_view>

namespace nimbara {

/// An entry of a country's feed of warnings.
struct SceneEntry {
  std::string_view code;  ///< of its region, EMMA_ID; empty: its area has a name alone
  std::string_view area;
  std::string_view colour;  ///< "Yellow"
  std::string_view kind;    ///< as titles have it: "Wind"
  std::chrono::hours begin;
  std::chrono::hours end;
  std::string_view type = "Alert";  ///< "Update" and "Cancel" likewise
  /// From when until when the feed lists it.
  std::chrono::hours listedFrom{-48};
  std::chrono::hours listedUntil{72};
  /// "latitude,longitude …" of its area's corners
  std::string_view polygon = {};  // NOLINT(readability-redundant-member-init): most have a code
};

struct SceneFeed {
  enum class Manner { answers, html, missing, hangs };
  std::string_view country;  ///< as its path ends: "germany"
  std::span<SceneEntry const> entries;
  Manner manner = Manner::answers;
  Manner list = manner;  ///< of the country's second feed, which has the same messages whole
};

/// A message of the National Weather Service, listed for every place.
struct SceneMessage {
  std::string_view id;
  std::string_view event;
  std::string_view severity;
  std::string_view headline;
  std::chrono::hours sent;
  std::chrono::hours begin;
  std::chrono::hours end;
};

struct DemoScene {
  std::string_view name;
  std::string_view place;        ///< where to look
  std::string_view explanation;  ///< what is played, and what should come of it
  std::span<SceneFeed const> feeds;
  std::span<SceneMessage const> messages;
  bool savesWorld = false;  ///< a place in each country that has an issuer in the demo is saved
  bool hasModel = false;    ///< a language model words the briefs
};

/// Before a scene's name among the arguments of the demo's process.
inline constexpr std::string_view kSceneArgument = "scene=";

std::span<DemoScene const> demoScenes();
/// Null for a name that no scene has.
DemoScene const* findDemoScene(std::string_view name);

struct SceneAnswer {
  DemoAnswer answer;
  bool hangs = false;  ///< no answer ever comes
};

/// What the scene answers; nothing where the generated weather does.
std::optional<SceneAnswer> sceneAnswer(DemoScene const& scene, DemoRequest const& request, Instant now);

}  // namespace nimbara
