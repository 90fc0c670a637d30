#include "platform/linux/dbus/portal/background_portal.h"

#include "base/text/clean_text.h"
#include "platform/linux/dbus/bus.h"
#include "platform/linux/dbus/portal/portal_names.h"

#include <memory>
#include <optional>
#include <vector>

namespace nimbara {

namespace {

constexpr char kInterface[] = "org.freedesktop.portal.Background";
constexpr char kRequest[] = "org.freedesktop.portal.Request";
constexpr char kToken[] = "nimbara_background";
constexpr std::size_t kLongestReason = 200;

struct Response {
  std::uint32_t code = 0;
  bool isStarted = false;
};

bool flagIn(PortalOptions const& options, char const* key) {
  auto const found = options.find(key);
  return found != options.end() && found->second.containsValueOfType<bool>() && found->second.get<bool>();
}

}  // namespace

Result<bool, std::string> requestAutostart(std::string const& sessionBus, bool wanted,
                                           std::string const& reason, std::chrono::milliseconds patience) {
  try {
    auto const connection = connectToSessionBus(sessionBus);
    auto const portal = sdbus::createProxy(*connection, kPortal, kPortalPath);
    auto const request = sdbus::createProxy(*connection, kPortal, portalRequestPath(*connection, kToken));
    std::optional<Response> response;
    request->uponSignal("Response")
        .onInterface(kRequest)
        .call([&response](std::uint32_t code, PortalOptions const& results) {
          response = Response{code, flagIn(results, "autostart")};
        });
    request->finishRegistration();
    BusTask task(*connection, patience, {});
    PortalOptions const options{{"handle_token", std::string(kToken)},
                                {"reason", cleanText(reason, kLongestReason, TextLines::one)},
                                {"autostart", wanted},
                                {"commandline", std::vector<std::string>{"nimbara", "watch"}},
                                {"dbus-activatable", false}};
    auto const asked =
        task.call<sdbus::ObjectPath>(*portal, kInterface, "RequestBackground", std::string(), options);
    if (asked && !*asked) return std::unexpected(asked->error().getMessage());
    if (task.waitUntil([&response] { return response.has_value(); }) != BusWait::done)
      return std::unexpected("the background portal does not respond");
    if (response->code != 0) return std::unexpected("the desktop did not allow it");
    return response->isStarted;
  } catch (sdbus::Error const& error) {
    return std::unexpected(error.getMessage());
  }
}

}  // namespace nimbara
