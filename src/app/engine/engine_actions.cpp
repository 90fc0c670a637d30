#include "app/engine/engine_actions.h"

#include "app/places/places.h"
#include "app/state/globe_state.h"
#include "app/state/notifications_state.h"
#include "notifications/place_choice.h"
#include "providers/common/api_error.h"
#include "providers/geocoder.h"

namespace nimbara {

// NOLINTBEGIN(performance-unnecessary-value-param): whoever does something with them keeps them
void EngineActions::selectPlace(Uuid /*id*/) {}
void EngineActions::addPlace(SavedPlace /*place*/) {}
void EngineActions::removePlace(Uuid /*id*/) {}
void EngineActions::renamePlace(Uuid /*id*/, std::string /*name*/) {}
void EngineActions::restorePlace(SavedPlace /*place*/, int /*position*/, bool /*select*/) {}
void EngineActions::movePlace(Uuid /*id*/, int /*position*/) {}
void EngineActions::chooseNotifications(Uuid /*id*/, PlaceChoice /*choice*/) {}
void EngineActions::chooseWarningSource(Uuid /*place*/, std::string /*name*/) {}
void EngineActions::search(std::string /*text*/, SearchListener /*found*/) {}
void EngineActions::searchOnline(std::string /*text*/, OnlineListener /*found*/) {}
void EngineActions::changeSetting(std::string /*key*/, std::string /*text*/) {}
void EngineActions::setStartAtLogin(bool /*wanted*/) {}
void EngineActions::setQuakeRadius(double /*km*/) {}
void EngineActions::setQuakeMagnitude(double /*least*/) {}

void GlobeActions::setShown(bool /*isShown*/) {}
std::shared_ptr<GlobeState const> GlobeActions::tick() {
  return nullptr;
}
void GlobeActions::choose(std::optional<std::uint32_t> /*entry*/) {}
void GlobeActions::setHidden(std::string_view /*legendRow*/, bool /*isHidden*/) {}

void NotificationActions::set(std::string /*key*/, SettingValue /*value*/) {}
void NotificationActions::mute(std::string const& /*kinds*/, std::optional<Instant> /*until*/) {}
void NotificationActions::unmute(std::string const& /*kinds*/) {}
void NotificationActions::pause(std::optional<Instant> /*until*/) {}
void NotificationActions::saveRule(CustomNotification /*rule*/) {}
void NotificationActions::removeRule(Uuid /*id*/) {}
void NotificationActions::enableRule(Uuid /*id*/, bool /*isEnabled*/) {}
void NotificationActions::tryRule(CustomNotification /*rule*/, TrialListener /*answered*/) {}
// NOLINTEND(performance-unnecessary-value-param)

}  // namespace nimbara
