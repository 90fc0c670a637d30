#include "platform/linux/dbus/application_object.h"

#include "platform/application_id.h"
#include "platform/linux/dbus/bus.h"

#include <algorithm>
#include <map>

namespace nimbara {

namespace {

constexpr char kInterface[] = "org.freedesktop.Application";
constexpr char const* kTokenKeys[] = {"activation-token", "desktop-startup-id"};
constexpr std::size_t kMostArguments = 64;
constexpr std::size_t kLongestText = 4096;

using PlatformData = std::map<std::string, sdbus::Variant>;
using Texts = std::vector<std::string>;

std::string tokenIn(PlatformData const& data) {
  for (char const* const key : kTokenKeys) {
    auto const found = data.find(key);
    if (found == data.end() || !found->second.containsValueOfType<std::string>()) continue;
    auto token = found->second.get<std::string>();
    if (token.size() <= kLongestText) return token;
  }
  return {};
}

sdbus::Error refusal(char const* why) {
  return sdbus::Error("org.freedesktop.DBus.Error.InvalidArgs", why);
}

Texts argumentsIn(std::vector<sdbus::Variant> const& parameters) {
  if (parameters.empty()) return {};
  if (!parameters.front().containsValueOfType<Texts>())
    throw refusal("the parameter is not a list of strings");
  auto arguments = parameters.front().get<Texts>();
  bool const isTooLong =
      std::ranges::any_of(arguments, [](std::string const& text) { return text.size() > kLongestText; });
  if (arguments.size() > kMostArguments || isTooLong) throw refusal("the parameters are too long");
  return arguments;
}

}  // namespace

std::string applicationPath() {
  std::string path = std::string("/") + kApplicationId;
  std::ranges::replace(path, '.', '/');
  return path;
}

std::unique_ptr<sdbus::IObject> makeApplicationObject(sdbus::IConnection& connection,
                                                      std::function<void(ApplicationCall)> const& tell) {
  auto object = sdbus::createObject(connection, applicationPath());
  object->registerMethod("Activate").onInterface(kInterface).implementedAs([tell](PlatformData const& data) {
    tell({{}, {}, tokenIn(data)});
  });
  // The program has no files to open; who tries wants to see it.
  object->registerMethod("Open")
      .onInterface(kInterface)
      .implementedAs([tell](Texts const&, PlatformData const& data) { tell({{}, {}, tokenIn(data)}); });
  object->registerMethod("ActivateAction")
      .onInterface(kInterface)
      .implementedAs([tell](std::string const& action, std::vector<sdbus::Variant> const& parameters,
                            PlatformData const& data) {
        if (action.size() > kLongestText) throw refusal("the action's name is too long");
        tell({action, argumentsIn(parameters), tokenIn(data)});
      });
  object->finishRegistration();
  return object;
}

Result<void, std::string> callApplicationOnBus(std::string const& sessionBus, ApplicationCall const& call,
                                               std::chrono::milliseconds patience) {
  try {
    auto const connection = connectToSessionBus(sessionBus);
    auto const proxy = sdbus::createProxy(*connection, kApplicationId, applicationPath());
    proxy->finishRegistration();
    PlatformData data;
    if (!call.activationToken.empty()) {
      for (char const* const key : kTokenKeys) data.emplace(key, call.activationToken);
    }
    std::vector<sdbus::Variant> parameters;
    if (!call.arguments.empty()) parameters.emplace_back(call.arguments);
    BusTask task(*connection, patience, {});
    auto const reply = call.action.empty()
                           ? task.call<>(*proxy, kInterface, "Activate", data)
                           : task.call<>(*proxy, kInterface, "ActivateAction", call.action, parameters, data);
    if (!reply) return std::unexpected("the running program does not respond");
    if (!*reply) return std::unexpected(reply->error().getMessage());
    return {};
  } catch (sdbus::Error const& error) {
    return std::unexpected(error.getMessage());
  }
}

}  // namespace nimbara
