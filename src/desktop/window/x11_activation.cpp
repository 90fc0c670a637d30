#include "desktop/window/x11_activation.h"

#include <QGuiApplication>
#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <xcb/xcb.h>

namespace nimbara {

namespace {

constexpr std::string_view kTimeMark = "_TIME";
constexpr std::uint32_t kFromAnApplication = 1;

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};

xcb_atom_t atomOf(xcb_connection_t* display, std::string_view name) {
  auto const cookie = xcb_intern_atom(display, 0, static_cast<std::uint16_t>(name.size()), name.data());
  std::unique_ptr<xcb_intern_atom_reply_t, Free> const reply(xcb_intern_atom_reply(display, cookie, nullptr));
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

xcb_window_t rootOf(xcb_connection_t* display) {
  return xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
}

xcb_client_message_event_t messageOf(xcb_window_t window, xcb_atom_t type, std::uint8_t format) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = format;
  message.window = window;
  message.type = type;
  return message;
}

void tellRoot(xcb_connection_t* display, xcb_client_message_event_t const& message, std::uint32_t listeners) {
  xcb_send_event(display, 0, rootOf(display), listeners, reinterpret_cast<char const*>(&message));
}

/// A window of no use to anybody's eyes.
xcb_window_t makeHiddenWindow(xcb_connection_t* display, std::uint32_t wantedEvents) {
  xcb_window_t const window = xcb_generate_id(display);
  xcb_create_window(display, 0, window, rootOf(display), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0,
                    XCB_CW_EVENT_MASK, &wantedEvents);
  return window;
}

/// In pieces, the last of which has the text's closing zero; the hidden window names the sender.
void broadcast(xcb_connection_t* display, std::string const& text) {
  xcb_window_t const sender = makeHiddenWindow(display, 0);
  auto message = messageOf(sender, atomOf(display, "_NET_STARTUP_INFO_BEGIN"), 8);
  xcb_atom_t const further = atomOf(display, "_NET_STARTUP_INFO");
  constexpr std::size_t kPiece = sizeof message.data.data8;
  for (std::size_t begin = 0; begin <= text.size(); begin += kPiece) {
    std::memset(message.data.data8, 0, kPiece);
    std::memcpy(message.data.data8, text.data() + begin, std::min(kPiece, text.size() - begin));
    tellRoot(display, message, XCB_EVENT_MASK_PROPERTY_CHANGE);
    message.type = further;
  }
  xcb_destroy_window(display, sender);
}

/// The display tells its time with events alone, and those of the toolkit's connection are the toolkit's.
std::optional<std::uint32_t> displayTime() {
  std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> const own(xcb_connect(nullptr, nullptr),
                                                                         &xcb_disconnect);
  if (xcb_connection_has_error(own.get()) != 0) return std::nullopt;
  xcb_window_t const window = makeHiddenWindow(own.get(), XCB_EVENT_MASK_PROPERTY_CHANGE);
  xcb_change_property(own.get(), XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, "");
  xcb_flush(own.get());
  std::unique_ptr<xcb_generic_event_t, Free> const event(xcb_wait_for_event(own.get()));
  if (!event || (event->response_type & ~0x80) != XCB_PROPERTY_NOTIFY) return std::nullopt;
  return reinterpret_cast<xcb_property_notify_event_t const*>(event.get())->time;
}

void activate(xcb_connection_t* display, xcb_window_t window, std::uint32_t time) {
  xcb_change_property(display, XCB_PROP_MODE_REPLACE, window, atomOf(display, "_NET_WM_USER_TIME"),
                      XCB_ATOM_CARDINAL, 32, 1, &time);
  auto message = messageOf(window, atomOf(display, "_NET_ACTIVE_WINDOW"), 32);
  message.data.data32[0] = kFromAnApplication;
  message.data.data32[1] = time;
  tellRoot(display, message, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT);
}

}  // namespace

std::optional<std::uint32_t> startupTime(std::string_view startupId) {
  auto const mark = startupId.rfind(kTimeMark);
  if (mark == std::string_view::npos) return std::nullopt;
  auto const digits = startupId.substr(mark + kTimeMark.size());
  std::uint32_t time = 0;
  auto const [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), time);
  bool const isWhole = error == std::errc() && end == digits.data() + digits.size();
  return isWhole && time != 0 ? std::optional(time) : std::nullopt;
}

std::string startupEnd(std::string_view startupId) {
  std::string message = "remove: ID=\"";
  for (char const letter : startupId) {
    if (letter == '"' || letter == '\\') message += '\\';
    message += letter;
  }
  return message + '"';
}

bool activateOnX11(QWindow const& window, std::string const& startupId) {
  auto const* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  auto* const display = x11 == nullptr ? nullptr : x11->connection();
  if (display == nullptr) return false;  // the toolkit's platform without a screen looks like X11, too
  if (!startupId.empty()) broadcast(display, startupEnd(startupId));
  auto const named = startupTime(startupId);
  auto const time = named ? named : displayTime();
  if (time) activate(display, static_cast<xcb_window_t>(window.winId()), *time);
  xcb_flush(display);
  return time.has_value();
}

}  // namespace nimbara
