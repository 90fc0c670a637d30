#include "platform/linux/dbus/notifications/notify_call.h"

#include "base/text/clean_text.h"
#include "platform/application_id.h"
#include "platform/linux/sound_files.h"

namespace nimbara {

namespace {

// Characters. Services show a few lines; the whole text is a click away.
constexpr std::size_t kLongestTitle = 160;
constexpr std::size_t kLongestBody = 2000;
constexpr std::size_t kLongestLabel = 60;
constexpr std::size_t kLongestName = 100;
constexpr std::size_t kMostActions = 6;

constexpr struct {
  char const* name;
  bool NotificationCapabilities::* member;
} kCapabilities[] = {
    {"body", &NotificationCapabilities::body},
    {"body-markup", &NotificationCapabilities::bodyMarkup},
    {"actions", &NotificationCapabilities::actions},
    {"sound", &NotificationCapabilities::sound},
};

/// Where there is no room for a body, it follows the title.
std::string titleOf(NotificationRequest const& request, bool alone) {
  std::string title = cleanText(request.title, kLongestTitle, TextLines::one);
  if (!alone || request.body.empty()) return title;
  return title + ": " + cleanText(request.body, kLongestBody, TextLines::one);
}

std::string bodyOf(std::string const& text, NotificationCapabilities const& capabilities) {
  std::string const plain = cleanText(text, kLongestBody, TextLines::many);
  return capabilities.bodyMarkup ? markupEscaped(plain) : plain;
}

std::vector<std::string> actionsOf(NotificationRequest const& request) {
  std::vector<std::string> texts;
  for (NotificationAction const& action : request.actions) {
    if (texts.size() == 2 * kMostActions) break;
    texts.push_back(cleanText(action.key, kLongestName, TextLines::one));
    texts.push_back(cleanText(action.label, kLongestLabel, TextLines::one));
  }
  return texts;
}

/// The name in the desktop's sound theme where the request has no file of its own.
char const* themeSound(NotificationUrgency urgency) {
  return urgency == NotificationUrgency::critical ? "dialog-warning" : "dialog-information";
}

void addSound(NotifyCall& call, NotificationRequest const& request,
              std::filesystem::path const& soundsDirectory) {
  if (request.isSilent) {
    call.hints.emplace("suppress-sound", true);
  } else if (auto const file = request.sound ? soundFile(*request.sound, soundsDirectory) : std::nullopt) {
    call.hints.emplace("sound-file", file->string());
  } else {
    call.hints.emplace("sound-name", std::string(themeSound(request.urgency)));
  }
}

}  // namespace

NotificationCapabilities capabilitiesOf(std::vector<std::string> const& names) {
  NotificationCapabilities capabilities;
  for (std::string const& name : names) {
    for (auto const& [known, member] : kCapabilities) {
      if (name == known) capabilities.*member = true;
    }
  }
  return capabilities;
}

NotifyCall notifyCall(NotificationRequest const& request, NotificationCapabilities const& capabilities,
                      std::filesystem::path const& soundsDirectory) {
  NotifyCall call;
  call.summary = titleOf(request, !capabilities.body);
  if (capabilities.body) call.body = bodyOf(request.body, capabilities);
  if (capabilities.actions) call.actions = actionsOf(request);
  call.hints.emplace("urgency", static_cast<std::uint8_t>(request.urgency));
  call.hints.emplace("desktop-entry", std::string(kApplicationId));
  if (!request.category.empty()) {
    call.hints.emplace("category", cleanText(request.category, kLongestName, TextLines::one));
  }
  if (capabilities.sound) addSound(call, request, soundsDirectory);
  if (request.urgency == NotificationUrgency::critical) call.expireTimeout = 0;
  return call;
}

}  // namespace nimbara
