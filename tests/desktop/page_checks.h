// What every page owes to those who listen, to those who need large letters, and to those who look at the
// pictures after a run.
#pragma once

#include "desktop/core/desktop_options.h"
#include "offscreen.h"
#include "support/paths.h"

#include <QDir>
#include <QQuickItem>
#include <QQuickWindow>
#include <functional>
#include <string>
#include <vector>

namespace nimbara::test {

void visitVisible(QQuickItem* item, std::function<void(QQuickItem*)> const& visit);

/// As a screen reader walks.
void visitAccessible(QAccessibleInterface* node, std::function<void(QAccessibleInterface&)> const& visit);

void visitAccessible(QQuickItem* root, std::function<void(QAccessibleInterface&)> const& visit);

/// Frames and bars say nothing of their own.
bool isSilent(QAccessible::Role role);

/// What is there for people and has no name for those who listen: all that has a role or can be reached by
/// keys.
std::vector<std::string> namelessBelow(QQuickItem* root);

std::vector<std::string> namesBelow(QQuickItem* root, QAccessible::Role role);

/// Lists that go sideways show what is beyond the window on demand.
bool goesSideways(QQuickItem* item);

/// Texts that do not show whole: shortened, wider than the place that they have, or beyond the window.
std::vector<std::string> cutOffBelow(QQuickItem* root);

/// Groups and folded cards.
void openAll(QQuickItem* root);

/// Waits until the first frame has been shown and no part of the page is being made between the frames; false
/// after some seconds.
bool awaitParts(QQuickWindow* window);

/// The window's picture once what was laid out or opened has found its place.
QImage settled(QQuickWindow* window);

/// Of red, green or blue at any point, 0 to 255; 256 for pictures of different sizes.
int greatestDifference(QImage const& one, QImage const& other);

void keepPicture(QImage const& picture, std::string const& state, DesktopPage page, DesktopTheme theme,
                 WindowSize size);

}  // namespace nimbara::test
