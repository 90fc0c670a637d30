// What the pages can use of the program's own: the items that they draw with, and App, the model that they
// read.
#pragma once

#include <QMetaObject>
#include <span>

class QQmlEngine;

namespace nimbara {

class DesktopModel;

inline constexpr char kItemsModule[] = "NimbaraItems";

/// An item that pages create.
struct PageItem {
  char const* name;
  QMetaObject const* meta;
  void (*enrol)(char const* name);  ///< makes it known to the toolkit
};

std::span<PageItem const> pageItems();

/// Makes the items and App known; once a process.
void enrolPageItems();

/// The model that the pages of `engine` see as App; before they are created.
void setPageModel(QQmlEngine& engine, DesktopModel& model);

}  // namespace nimbara
