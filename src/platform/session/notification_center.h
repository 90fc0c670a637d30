// The port through which the program tells people something on their desktop. A center shows requests as they
// come: when something is said, whether it may ring and what was said already is decided by the notification
// engine. Any thread may call.
#pragma once

#include "base/enum_names.h"
#include "base/result.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

enum class AuthorizationStatus {
  notDetermined,  ///< nobody asked yet
  denied,         ///< nothing can be shown: no notification service, or the user forbade it
  authorized
};
template <>
inline constexpr auto enumNames<AuthorizationStatus> =
    std::to_array<std::string_view>({"notDetermined", "denied", "authorized"});
static_assert(enumNamesComplete(AuthorizationStatus::authorized));

/// How insistently the desktop shows it: `critical` pierces do-not-disturb and stays until dismissed.
enum class NotificationUrgency { low, normal, critical };
template <>
inline constexpr auto enumNames<NotificationUrgency> =
    std::to_array<std::string_view>({"low", "normal", "critical"});
static_assert(enumNamesComplete(NotificationUrgency::critical));

struct NotificationAction {
  std::string key;    ///< "snooze"; "default" is a click on the notification itself
  std::string label;  ///< what people read

  bool operator==(NotificationAction const&) const = default;
};

struct NotificationRequest {
  std::string identifier;  ///< stable; a later request under the same identifier replaces the shown one
  std::string title;       ///< plain texts: a center escapes what its desktop would take for markup
  std::string body;
  std::optional<std::string>
      sound;  ///< a rule's sound file ("rain_alert.caf"); nothing: the system's default
  NotificationUrgency urgency = NotificationUrgency::normal;
  std::string category;   ///< "weather.warning.extreme"; may be empty
  bool isSilent = false;  ///< listed, without a sound
  std::vector<NotificationAction> actions;
  std::vector<std::string> opens = {};  ///< with what a click starts the window where nobody listens any more

  bool operator==(NotificationRequest const&) const = default;
};

struct DeliveryError {
  enum class Kind {
    unavailable,  ///< no notification service answers
    refused       ///< the service did not take it
  };
  Kind kind = Kind::unavailable;
  std::string message;  ///< a sentence for people, without a full stop
};

/// A person answered a notification.
struct NotificationResponse {
  std::string identifier;
  std::string action;           ///< the key of one of its actions
  std::string activationToken;  ///< lets a window take the focus; may be empty
};

class NotificationCenter {
 public:
  using Listener = std::function<void(NotificationResponse const&)>;

  virtual ~NotificationCenter() = default;

  /// Asks the desktop now; never waits longer than a second.
  virtual AuthorizationStatus authorizationStatus() = 0;
  /// The like, after asking the user where the desktop has a question for that.
  virtual AuthorizationStatus requestAuthorization() = 0;
  /// Success means that the service has taken it, not that somebody has seen it.
  virtual Result<void, DeliveryError> deliver(NotificationRequest const& request) = 0;
  /// Replaces the notification under the request's identifier without a sound, if it is still to be seen.
  virtual Result<void, DeliveryError> update(NotificationRequest const& request) = 0;
  /// Takes the notification back, if it is still to be seen.
  virtual void withdraw(std::string_view identifier) = 0;
  /// Told of responses, on a thread of the center's own; nothing stops the telling.
  virtual void setListener(Listener listener) = 0;
};

}  // namespace nimbara
