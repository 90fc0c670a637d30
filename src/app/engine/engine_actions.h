// What a face asks of the running program. Each action returns at once; an answer that takes time comes to a
// listener, on a thread of the engine's own. Here they do nothing: whoever stands in for the engine, or for a
// part of it, says only what it looks at.
#pragma once

#include "base/result.h"
#include "base/time/instant.h"
#include "base/uuid.h"
#include "platform/settings/settings.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

enum class PlaceChoice;
struct APIError;
struct CustomNotification;
struct GeocodedPlace;
struct GlobeState;
struct SavedPlace;
struct TrialAnswer;

class EngineActions {
 public:
  using SearchListener = std::function<void(std::vector<GeocodedPlace>)>;
  using OnlineListener = std::function<void(Result<std::vector<GeocodedPlace>, APIError>)>;

  virtual ~EngineActions() = default;

  virtual void refresh() {}
  virtual void selectPlace(Uuid id);
  virtual void addPlace(SavedPlace place);
  virtual void removePlace(Uuid id);
  virtual void renamePlace(Uuid id, std::string name);
  /// Takes a removal back: the place at its old position with the rules that watched it.
  virtual void restorePlace(SavedPlace place, int position, bool select);
  /// `position` counts from one.
  virtual void movePlace(Uuid id, int position);
  virtual void chooseNotifications(Uuid id, PlaceChoice choice);
  /// Of official warnings, by its name; empty for the usual one. What is not possible there changes nothing.
  virtual void chooseWarningSource(Uuid place, std::string name);
  /// Cities of the gazetteer.
  virtual void search(std::string text, SearchListener found);
  /// Sends the text to the geocoding service.
  virtual void searchOnline(std::string text, OnlineListener found);
  /// Asks the desktop where the user is, and selects that.
  virtual void locate() {}
  virtual void removeCurrentLocation() {}
  virtual void changeSetting(std::string key, std::string text);
  virtual void setStartAtLogin(bool wanted);

  virtual void lookAtHazards() {}
  /// Of official warnings.
  virtual void lookAtSources() {}
  /// At the days beyond the forecast of the place that is shown.
  virtual void lookAhead() {}
  virtual void setQuakeRadius(double km);
  virtual void setQuakeMagnitude(double least);
};

class GlobeActions {
 public:
  virtual ~GlobeActions() = default;

  /// Begins or pauses.
  virtual void setShown(bool isShown);
  /// Takes in what has been propagated, begins the next propagation and says what there is. Nothing when a
  /// load is just being taken in: the last state holds.
  virtual std::shared_ptr<GlobeState const> tick();
  /// The entry whose card and orbit are shown from now on.
  virtual void choose(std::optional<std::uint32_t> entry);
  virtual void setHidden(std::string_view legendRow, bool isHidden);
};

class NotificationActions {
 public:
  using TrialListener = std::function<void(TrialAnswer)>;

  virtual ~NotificationActions() = default;

  virtual void set(std::string key, SettingValue value);
  /// Kinds by "+"; without an end, they are muted forever.
  virtual void mute(std::string const& kinds, std::optional<Instant> until);
  virtual void unmute(std::string const& kinds);
  /// Nothing gets through until then; nothing ends the pause.
  virtual void pause(std::optional<Instant> until);
  virtual void saveRule(CustomNotification rule);
  virtual void removeRule(Uuid id);
  virtual void enableRule(Uuid id, bool isEnabled);
  virtual void tryRule(CustomNotification rule, TrialListener answered);
  /// Posts one notification that says it is a test.
  virtual void postTest() {}
  /// Whether the desktop shows notifications.
  virtual void lookAtDesktop() {}
};

}  // namespace nimbara
