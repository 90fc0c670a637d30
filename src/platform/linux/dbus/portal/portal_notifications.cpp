#include "platform/linux/dbus/portal/portal_notifications.h"

#include "base/text/clean_text.h"
#include "platform/linux/sound_files.h"

#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace nimbara {

namespace {

using Kind = DeliveryError::Kind;

constexpr char kInterface[] = "org.freedesktop.portal.Notification";
constexpr std::size_t kLongestTitle = 160;
constexpr std::size_t kLongestBody = 2000;
constexpr std::size_t kLongestLabel = 60;
constexpr std::size_t kLongestIdentifier = 200;
constexpr std::size_t kMostButtons = 6;
constexpr char kDefaultAction[] = "default";
/// The window's own action on the bus: the portal starts the window for it, whether or not this program still
/// runs, and tells nobody else.
constexpr char kExportedStart[] = "app.start";
/// From this version on there are sounds, categories and hints.
constexpr std::uint32_t kSecond = 2;

char const* priorityOf(NotificationUrgency urgency) {
  switch (urgency) {
    case NotificationUrgency::low:
      return "low";
    case NotificationUrgency::critical:
      return "urgent";
    default:
      return "normal";
  }
}

/// A copy in memory that nobody can change any more, as the portal wants it; nothing where that fails.
std::optional<sdbus::UnixFd> sealedCopy(std::filesystem::path const& file) {
  std::ifstream in(file, std::ios::binary);
  std::string const bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (!in || bytes.empty()) return std::nullopt;
  sdbus::UnixFd const copy(memfd_create("sound", MFD_CLOEXEC | MFD_ALLOW_SEALING), sdbus::adopt_fd);
  if (!copy.isValid()) return std::nullopt;
  bool const isWritten =
      write(copy.get(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
      lseek(copy.get(), 0, SEEK_SET) == 0 &&
      fcntl(copy.get(), F_ADD_SEALS, F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE) == 0;
  return isWritten ? std::optional(copy) : std::nullopt;
}

sdbus::Variant soundOf(NotificationRequest const& request, std::filesystem::path const& soundsDirectory) {
  using File = sdbus::Struct<std::string, sdbus::Variant>;
  if (request.isSilent) return std::string("silent");
  auto const file = request.sound ? soundFile(*request.sound, soundsDirectory) : std::nullopt;
  auto const copy = file ? sealedCopy(*file) : std::nullopt;
  if (!copy) return std::string("default");
  return File("file-descriptor", *copy);
}

std::vector<PortalOptions> buttonsOf(NotificationRequest const& request) {
  std::vector<PortalOptions> buttons;
  for (NotificationAction const& action : request.actions) {
    if (action.key == kDefaultAction || buttons.size() == kMostButtons) continue;
    buttons.push_back({{"label", cleanText(action.label, kLongestLabel, TextLines::one)},
                       {"action", cleanText(action.key, kLongestLabel, TextLines::one)}});
  }
  return buttons;
}

std::string tokenIn(std::vector<sdbus::Variant> const& parameters) {
  for (sdbus::Variant const& parameter : parameters) {
    if (!parameter.containsValueOfType<PortalOptions>()) continue;
    auto const data = parameter.get<PortalOptions>();
    auto const token = data.find("activation-token");
    if (token != data.end() && token->second.containsValueOfType<std::string>())
      return token->second.get<std::string>();
  }
  return {};
}

std::string identifierOf(std::string_view text) {
  return cleanText(text, kLongestIdentifier, TextLines::one);
}

}  // namespace

PortalOptions portalNotification(NotificationRequest const& request, PortalAbilities const& abilities,
                                 std::filesystem::path const& soundsDirectory) {
  PortalOptions options{{"title", cleanText(request.title, kLongestTitle, TextLines::one)},
                        {"body", cleanText(request.body, kLongestBody, TextLines::many)},
                        {"priority", std::string(priorityOf(request.urgency))},
                        {"default-action", std::string(kDefaultAction)}};
  if (!request.opens.empty()) {
    options.insert_or_assign("default-action", std::string(kExportedStart));
    options.emplace("default-action-target", request.opens);
  }
  if (auto const buttons = buttonsOf(request); !buttons.empty()) options.emplace("buttons", buttons);
  if (abilities.version < kSecond) return options;
  options.emplace("sound", soundOf(request, soundsDirectory));
  if (abilities.categories.contains(request.category)) options.emplace("category", request.category);
  if (request.urgency == NotificationUrgency::critical)
    options.emplace("display-hint", std::vector<std::string>{"persistent"});
  if (request.isSilent) options.insert_or_assign("display-hint", std::vector<std::string>{"tray"});
  return options;
}

PortalNotifications::PortalNotifications(std::string const& sessionBus, std::filesystem::path soundsDirectory)
    : soundsDirectory_(std::move(soundsDirectory)),
      connection_(connectToSessionBus(sessionBus)),
      portal_(sdbus::createProxy(*connection_, kPortal, kPortalPath)) {
  portal_->uponSignal("ActionInvoked")
      .onInterface(kInterface)
      .call([this](std::string const& identifier, std::string const& action,
                   std::vector<sdbus::Variant> const& parameters) {
        responded(identifier, action, parameters);
      });
  portal_->finishRegistration();
}

/// Only of what this program has sent: the portal tells nobody of others.
void PortalNotifications::responded(std::string const& identifier, std::string const& action,
                                    std::vector<sdbus::Variant> const& parameters) {
  if (!shown_.contains(identifier)) return;
  shown_.erase(identifier);
  responses_.push_back({identifier, action, tokenIn(parameters)});
}

std::vector<NotificationResponse> PortalNotifications::takeResponses() {
  return std::exchange(responses_, {});
}

std::optional<sdbus::Variant> PortalNotifications::property(char const* name, BusTask& task) {
  auto const reply =
      task.call<sdbus::Variant>(*portal_, kBusProperties, "Get", std::string(kInterface), std::string(name));
  return reply && *reply ? std::optional(std::get<0>(**reply)) : std::nullopt;
}

PortalAbilities const& PortalNotifications::abilities(BusTask& task) {
  if (abilities_) return *abilities_;
  PortalAbilities found;
  auto const version = property("version", task);
  if (!version || !version->containsValueOfType<std::uint32_t>()) return abilities_.emplace();
  found.version = version->get<std::uint32_t>();
  auto const supported = found.version < kSecond ? std::nullopt : property("SupportedOptions", task);
  if (supported && supported->containsValueOfType<PortalOptions>()) {
    auto const options = supported->get<PortalOptions>();
    auto const categories = options.find("category");
    using Names = std::vector<std::string>;
    if (categories != options.end() && categories->second.containsValueOfType<Names>()) {
      auto const names = categories->second.get<Names>();
      found.categories.insert(names.begin(), names.end());
    }
  }
  return abilities_.emplace(std::move(found));
}

AuthorizationStatus PortalNotifications::status(BusTask& task) {
  return abilities(task).version > 0 ? AuthorizationStatus::authorized : AuthorizationStatus::denied;
}

Result<void, DeliveryError> PortalNotifications::deliver(NotificationRequest const& request, BusTask& task) {
  std::string const identifier = identifierOf(request.identifier);
  auto const reply = task.call<>(*portal_, kInterface, "AddNotification", identifier,
                                 portalNotification(request, abilities(task), soundsDirectory_));
  if (!reply)
    return std::unexpected(
        DeliveryError{Kind::unavailable, "the notification portal took too long to respond"});
  if (!*reply) {
    return std::unexpected(DeliveryError{
        Kind::refused, "the notification portal refused it (" + reply->error().getMessage() + ")"});
  }
  shown_.insert(identifier);
  return {};
}

void PortalNotifications::withdraw(std::string_view identifier, BusTask& task) {
  auto const found = shown_.find(identifierOf(identifier));
  if (found == shown_.end()) return;
  std::ignore = task.call<>(*portal_, kInterface, "RemoveNotification", *found);
  shown_.erase(found);
}

}  // namespace nimbara
