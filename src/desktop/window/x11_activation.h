// The focus that a click elsewhere gives on X11, where the toolkit knows only the clicks on its own windows
// and the program's own start: window managers tell a wanted window from an intruder by the moment of the
// click. A launcher hands it over in the startup identifier, whose end stops its busy pointer. Lives on the
// window's thread; keeps nothing.
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

/// Gives a window that has been shown the focus, as of the moment in the identifier, or of now where that
/// names none: whoever calls has just clicked or typed. False where there is no X11.
bool activateOnX11(QWindow const& window, std::string const& startupId);

}  // namespace nimbara
