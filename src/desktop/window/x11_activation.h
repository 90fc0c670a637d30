// The focus that a launcher hands over on X11, where the toolkit takes only that of the program's own start:
// the startup identifier names the moment of the click, by which window managers tell a wanted window from an
// intruder, and its end stops the launcher's busy pointer. Lives on the window's thread; keeps nothing.
#pragma once

#include <QWindow>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

/// The moment in "host-1234_TIME5678", in milliseconds of the display's clock; nothing where it names none.
std::optional<std::uint32_t> startupTime(std::string_view startupId);

/// The message of the startup notification protocol that ends the sequence.
std::string startupEnd(std::string_view startupId);

/// Gives a window that has been shown the focus, as of the moment in the identifier. False, with nothing done
/// to the window, where there is no X11 or the identifier names no moment.
bool activateOnX11(QWindow const& window, std::string const& startupId);

}  // namespace nimbara
