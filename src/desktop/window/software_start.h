// What happens where no graphics card's interface can be had, as without OpenGL or with a broken driver: the
// toolkit learns that only when it first draws and cannot change its renderer then, so the program starts
// once more, drawn in software. Called by the program's entry alone.
#pragma once

#include <QQuickWindow>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace nimbara {

/// The event loop ends with this code when the window cannot be drawn: no process's.
inline constexpr int kCannotDraw = 256;

/// Ends the event loop with `kCannotDraw` in place of the process with an abort, after telling why.
void endWhereNothingCanBeDrawn(QQuickWindow& window, std::function<void(std::string)> const& tell);

/// Whether the processor draws what a graphics card should, by the name that the interface gives itself.
bool isSoftwareRenderer(std::string_view name);

/// Tells that name once, on the window's thread, as soon as the window is first drawn; empty where no OpenGL
/// draws.
void whenRendererIsKnown(QQuickWindow& window, std::function<void(std::string)> tell);

/// The same program in place of this one, with the toolkit's software renderer. Returns only where that is in
/// use already or the program's file cannot be started.
void startInSoftware(std::filesystem::path const& program, char* const* arguments);

}  // namespace nimbara
