#include "platform/linux/dbus/notifications/notification_service.h"

#include "platform/application_id.h"

#include <algorithm>
#include <utility>

namespace nimbara {

namespace {

using Kind = DeliveryError::Kind;

constexpr char kBus[] = "org.freedesktop.DBus";
constexpr char kBusPath[] = "/org/freedesktop/DBus";
constexpr char kServer[] = "org.freedesktop.Notifications";
constexpr char kServerPath[] = "/org/freedesktop/Notifications";
constexpr char kOwnerMatch[] =
    "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
    "member='NameOwnerChanged',arg0='org.freedesktop.Notifications'";

bool isAbsence(sdbus::Error const& error) {
  constexpr std::string_view kNames[] = {".ServiceUnknown", ".NameHasNoOwner", ".NoReply",
                                         ".Timeout",        ".TimedOut",       ".Disconnected"};
  std::string const& name = error.getName();
  return name.find(".Spawn.") != std::string::npos ||
         std::ranges::any_of(kNames, [&](std::string_view ending) { return name.ends_with(ending); });
}

DeliveryError errorOf(sdbus::Error const& error) {
  if (isAbsence(error)) return {Kind::unavailable, "there is no notification service on this desktop"};
  return {Kind::refused, "the notification service refused it (" + error.getMessage() + ")"};
}

DeliveryError noAnswer() {
  return {Kind::unavailable, "the notification service took too long to respond"};
}

}  // namespace

NotificationService::NotificationService(std::string const& sessionBus, std::filesystem::path soundsDirectory)
    : soundsDirectory_(std::move(soundsDirectory)),
      connection_(connectToSessionBus(sessionBus)),
      bus_(sdbus::createProxy(*connection_, kBus, kBusPath)),
      server_(sdbus::createProxy(*connection_, kServer, kServerPath)) {
  bus_->finishRegistration();
  hearOwner();
  hearResponses();
}

void NotificationService::hearOwner() {
  // A match of its own: every other name that comes and goes would wake the process.
  ownerChanges_ = connection_->addMatch(kOwnerMatch, [this](sdbus::Message const&) { forgetServer(); });
}

void NotificationService::hearResponses() {
  server_->uponSignal("ActionInvoked")
      .onInterface(kServer)
      .call([this](ServerId id, std::string const& action) { responded(id, action); });
  server_->uponSignal("ActivationToken")
      .onInterface(kServer)
      .call([this](ServerId id, std::string const& token) {
        if (identifierOf(id)) activationTokens_[id] = token;
      });
  server_->uponSignal("NotificationClosed").onInterface(kServer).call([this](ServerId id, std::uint32_t) {
    closed(id);
  });
  server_->finishRegistration();
}

/// Another server knows none of the notifications and may be able to do other things.
void NotificationService::forgetServer() {
  capabilities_.reset();
  shown_.clear();
  activationTokens_.clear();
}

std::optional<std::string> NotificationService::identifierOf(ServerId id) const {
  auto const found = std::ranges::find(shown_, id, [](auto const& entry) { return entry.second; });
  return found == shown_.end() ? std::nullopt : std::optional(found->first);
}

void NotificationService::responded(ServerId id, std::string const& action) {
  auto identifier = identifierOf(id);
  if (!identifier) return;  // of another program
  auto token = activationTokens_.extract(id);
  responses_.push_back({std::move(*identifier), action, token ? std::move(token.mapped()) : ""});
}

void NotificationService::closed(ServerId id) {
  if (auto const identifier = identifierOf(id)) shown_.erase(*identifier);
  activationTokens_.erase(id);
}

std::vector<NotificationResponse> NotificationService::takeResponses() {
  return std::exchange(responses_, {});
}

AuthorizationStatus NotificationService::status(BusTask& task) {
  auto const owned = task.call<bool>(*bus_, kBus, "NameHasOwner", std::string(kServer));
  if (owned && *owned && std::get<0>(**owned)) return AuthorizationStatus::authorized;
  auto const names = task.call<std::vector<std::string>>(*bus_, kBus, "ListActivatableNames");
  bool const canStart = names && *names && std::ranges::count(std::get<0>(**names), kServer) > 0;
  return canStart ? AuthorizationStatus::authorized : AuthorizationStatus::denied;
}

Result<NotificationCapabilities, DeliveryError> NotificationService::capabilities(BusTask& task) {
  if (capabilities_) return *capabilities_;
  auto const names = task.call<std::vector<std::string>>(*server_, kServer, "GetCapabilities");
  if (!names) return std::unexpected(noAnswer());
  if (*names) {
    capabilities_ = capabilitiesOf(std::get<0>(**names));
  } else if (isAbsence(names->error())) {
    return std::unexpected(errorOf(names->error()));
  } else {
    capabilities_ = NotificationCapabilities{.body = true};  // what every service can do
  }
  return *capabilities_;
}

Result<void, DeliveryError> NotificationService::deliver(NotificationRequest const& request, BusTask& task) {
  auto const able = capabilities(task);
  if (!able) return std::unexpected(able.error());
  return notify(request.identifier, notifyCall(request, *able, soundsDirectory_), task);
}

Result<void, DeliveryError> NotificationService::notify(std::string const& identifier, NotifyCall const& call,
                                                        BusTask& task) {
  auto const former = shown_.find(identifier);
  ServerId const replaces = former == shown_.end() ? 0 : former->second;
  // A reply that comes too late still tells the number: the next attempt replaces instead of showing twice.
  auto const outcome = std::make_shared<std::optional<Result<void, DeliveryError>>>();
  server_->callMethodAsync("Notify")
      .onInterface(kServer)
      .withArguments(std::string(kApplicationName), replaces, std::string(kApplicationId), call.summary,
                     call.body, call.actions, call.hints, call.expireTimeout)
      .uponReplyInvoke([this, identifier, outcome](sdbus::Error const* error, ServerId id) {
        if (error == nullptr) shown_[identifier] = id;
        *outcome = error == nullptr ? Result<void, DeliveryError>() : std::unexpected(errorOf(*error));
      });
  if (task.waitUntil([&] { return outcome->has_value(); }) != BusWait::done)
    return std::unexpected(noAnswer());
  return **outcome;
}

void NotificationService::withdraw(std::string_view identifier, BusTask& task) {
  auto const found = shown_.find(identifier);
  if (found == shown_.end()) return;
  ServerId const id = found->second;
  shown_.erase(found);
  std::ignore = task.call<>(*server_, kServer, "CloseNotification", id);
}

}  // namespace nimbara
