// What every page owes to those who listen, to those who need large letters, and to those who look at the
// pictures after a run.
#pragma once

#include "desktop/core/desktop_options.h"
#include "offscreen.h"
#include "support/paths.h"

#include <QDir>
#include <QQuickItem>
#include <functional>
#include <string>
#include <vector>

namespace nimbara::test {

inline void visitVisible(QQuickItem* item, std::function<void(QQuickItem*)> const& visit) {
  if (!item->isVisible()) return;
  visit(item);
  for (QQuickItem* const child : item->childItems()) visitVisible(child, visit);
}

/// As a screen reader walks.
inline void visitAccessible(QAccessibleInterface* node,
                            std::function<void(QAccessibleInterface&)> const& visit) {
  if (node == nullptr || node->state().invisible) return;
  visit(*node);
  for (int i = 0; i < node->childCount(); ++i) visitAccessible(node->child(i), visit);
}

inline void visitAccessible(QQuickItem* root, std::function<void(QAccessibleInterface&)> const& visit) {
  visitAccessible(QAccessible::queryAccessibleInterface(root->window()), visit);
}

/// Frames and bars say nothing of their own.
inline bool isSilent(QAccessible::Role role) {
  constexpr QAccessible::Role kSilent[] = {QAccessible::NoRole, QAccessible::Client,
                                           QAccessible::Pane,   QAccessible::LayeredPane,
                                           QAccessible::Window, QAccessible::ScrollBar};
  return std::ranges::count(kSilent, role) > 0;
}

/// What is there for people and has no name for those who listen: all that has a role or can be reached by
/// keys.
inline std::vector<std::string> namelessBelow(QQuickItem* root) {
  std::vector<std::string> nameless;
  visitVisible(root, [&](QQuickItem* item) {
    if (item->activeFocusOnTab() && item->isEnabled() && accessibleName(item).empty()) {
      nameless.emplace_back(item->metaObject()->className());
    }
  });
  visitAccessible(root, [&](QAccessibleInterface& node) {
    bool const isNamed = !node.text(QAccessible::Name).isEmpty();
    if (!isSilent(node.role()) && !isNamed) nameless.emplace_back(node.object()->metaObject()->className());
  });
  return nameless;
}

inline std::vector<std::string> namesBelow(QQuickItem* root, QAccessible::Role role) {
  std::vector<std::string> names;
  visitAccessible(root, [&](QAccessibleInterface& node) {
    if (node.role() == role) names.push_back(node.text(QAccessible::Name).toStdString());
  });
  return names;
}

/// Lists that go sideways show what is beyond the window on demand.
inline bool goesSideways(QQuickItem* item) {
  for (QQuickItem* up = item; up != nullptr; up = up->parentItem()) {
    if (up->inherits("QQuickListView")) return true;
  }
  return false;
}

/// Texts that do not show whole: shortened, wider than the place that they have, or beyond the window.
inline std::vector<std::string> cutOffBelow(QQuickItem* root) {
  std::vector<std::string> cutOff;
  visitVisible(root, [&](QQuickItem* item) {
    if (!item->inherits("QQuickText") || item->property("text").toString().isEmpty()) return;
    constexpr double kRounding = 1.5;
    bool const isShortened = item->property("truncated").toBool();
    bool const isTooWide = item->property("contentWidth").toDouble() > item->width() + kRounding;
    double const left = item->mapToScene({0, 0}).x();
    bool const isBeyond = !goesSideways(item) && (left < 0 || left + item->width() > root->window()->width());
    if (isShortened || isTooWide || isBeyond)
      cutOff.push_back(item->property("text").toString().toStdString());
  });
  return cutOff;
}

inline void keepPicture(QImage const& picture, std::string const& state, DesktopPage page, DesktopTheme theme,
                        WindowSize size) {
  QDir const folder(QString::fromUtf8(test::kPictures));
  folder.mkpath(QStringLiteral("."));
  std::string const name = std::string(enumName(page)) + "-" + state + "-" + std::string(enumName(theme)) +
                           "-" + std::to_string(size.width) + ".png";
  picture.save(folder.filePath(QString::fromStdString(name)));
}

}  // namespace nimbara::test
