#include "page_checks.h"

#include <QtTest/QTest>

namespace nimbara::test {

void visitVisible(QQuickItem* item, std::function<void(QQuickItem*)> const& visit) {
  if (!item->isVisible()) return;
  visit(item);
  for (QQuickItem* const child : item->childItems()) visitVisible(child, visit);
}

void visitAccessible(QAccessibleInterface* node, std::function<void(QAccessibleInterface&)> const& visit) {
  if (node == nullptr || node->state().invisible) return;
  visit(*node);
  for (int i = 0; i < node->childCount(); ++i) visitAccessible(node->child(i), visit);
}

void visitAccessible(QQuickItem* root, std::function<void(QAccessibleInterface&)> const& visit) {
  visitAccessible(QAccessible::queryAccessibleInterface(root->window()), visit);
}

bool isSilent(QAccessible::Role role) {
  constexpr QAccessible::Role kSilent[] = {QAccessible::NoRole, QAccessible::Client,
                                           QAccessible::Pane,   QAccessible::LayeredPane,
                                           QAccessible::Window, QAccessible::ScrollBar};
  return std::ranges::count(kSilent, role) > 0;
}

std::vector<std::string> namelessBelow(QQuickItem* root) {
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

std::vector<std::string> namesBelow(QQuickItem* root, QAccessible::Role role) {
  std::vector<std::string> names;
  visitAccessible(root, [&](QAccessibleInterface& node) {
    if (node.role() == role) names.push_back(node.text(QAccessible::Name).toStdString());
  });
  return names;
}

bool goesSideways(QQuickItem* item) {
  for (QQuickItem* up = item; up != nullptr; up = up->parentItem()) {
    if (up->inherits("QQuickListView")) return true;
  }
  return false;
}

std::vector<std::string> cutOffBelow(QQuickItem* root) {
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

void openAll(QQuickItem* root) {
  visitVisible(root, [](QQuickItem* item) {
    bool const isNamed = item->property("summary").isValid() || item->property("heading").isValid();
    if (isNamed && item->property("isOpen").isValid()) item->setProperty("isOpen", true);
  });
}

bool awaitParts(QQuickWindow* window) {
  constexpr int kLoading = 2;  // of the toolkit's Loader, which is no part of its public headers
  return QTest::qWaitFor([window] {
    bool isMade = window->property("hasDrawn").toBool();
    visitVisible(window->contentItem(), [&](QQuickItem* item) {
      if (item->inherits("QQuickLoader") && item->property("status").toInt() == kLoading) isMade = false;
    });
    return isMade;
  });
}

QImage settled(QQuickWindow* window) {
  QImage picture = window->grabWindow();
  for (int look = 0; look < 20; ++look) {
    QCoreApplication::processEvents();
    QImage next = window->grabWindow();
    if (next == picture) break;
    picture = std::move(next);
  }
  return picture;
}

int greatestDifference(QImage const& one, QImage const& other) {
  if (one.size() != other.size()) return 256;
  int greatest = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      QRgb const a = one.pixel(x, y), b = other.pixel(x, y);
      if (a == b) continue;
      for (int const part : {0, 8, 16}) {
        int const difference = static_cast<int>((a >> part) & 255) - static_cast<int>((b >> part) & 255);
        greatest = std::max(greatest, std::abs(difference));
      }
    }
  }
  return greatest;
}

void keepPicture(QImage const& picture, std::string const& state, DesktopPage page, DesktopTheme theme,
                 WindowSize size) {
  QDir const folder(QString::fromUtf8(test::kPictures));
  folder.mkpath(QStringLiteral("."));
  std::string const name = std::string(enumName(page)) + "-" + state + "-" + std::string(enumName(theme)) +
                           "-" + std::to_string(size.width) + ".png";
  picture.save(folder.filePath(QString::fromStdString(name)));
}

}  // namespace nimbara::test
