// The curves of seven days, painted from the model's meteogram, with a cursor that pointer and keys move. An
// item of the window; the values and their words come from the model.
#pragma once

#include "desktop/window/models/desktop_model.h"

#include <QColor>
#include <QQuickPaintedItem>

namespace nimbara {

class MeteogramItem : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(nimbara::DesktopModel* model READ model WRITE setModel NOTIFY changed)
  Q_PROPERTY(int cursor READ cursor WRITE setCursor NOTIFY cursorChanged)
  Q_PROPERTY(double cursorX READ cursorX NOTIFY cursorChanged)
  Q_PROPERTY(QString when READ when NOTIFY cursorChanged)
  Q_PROPERTY(QString readings READ readings NOTIFY cursorChanged)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(bool hasUsual READ hasUsual NOTIFY changed)
  Q_PROPERTY(bool showsUsual MEMBER showsUsual_ NOTIFY changed)
  Q_PROPERTY(double enlargement MEMBER scale_ NOTIFY changed)
  Q_PROPERTY(QColor text MEMBER text_ NOTIFY changed)
  Q_PROPERTY(QColor grid MEMBER grid_ NOTIFY changed)
  Q_PROPERTY(QColor night MEMBER night_ NOTIFY changed)
  Q_PROPERTY(QColor warm MEMBER warm_ NOTIFY changed)
  Q_PROPERTY(QColor felt MEMBER felt_ NOTIFY changed)
  Q_PROPERTY(QColor rain MEMBER rain_ NOTIFY changed)
  Q_PROPERTY(QColor wind MEMBER wind_ NOTIFY changed)
  Q_PROPERTY(QColor air MEMBER air_ NOTIFY changed)
  Q_PROPERTY(QColor cloud MEMBER cloud_ NOTIFY changed)
  Q_PROPERTY(QColor observed MEMBER observed_ NOTIFY changed)
  Q_PROPERTY(bool hasObserved READ hasObserved NOTIFY changed)

 public:
  explicit MeteogramItem(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

  DesktopModel* model() const { return model_; }
  void setModel(DesktopModel* model);
  /// The index of a point; -1 for none.
  int cursor() const { return cursor_; }
  void setCursor(int cursor);
  double cursorX() const;
  QString when() const;
  QString readings() const;
  bool isEmpty() const { return data().points.empty(); }
  /// A station has measured something of it.
  bool hasObserved() const { return !data().observed.empty(); }
  /// What is usual on these days is known.
  bool hasUsual() const { return !data().usual.empty(); }
  /// The point nearest to a place in the item.
  Q_INVOKABLE int pointAt(double x) const;

 Q_SIGNALS:
  void changed();
  void cursorChanged();

 private:
  Meteogram const& data() const;
  MeteogramPoint const* pointAtCursor() const;
  /// Not enlarged, as all that is painted.
  double xOf(double hours) const;
  void shadeNights(QPainter& painter, double top, double bottom) const;
  void nameDays(QPainter& painter, double top, double bottom) const;

  DesktopModel* model_ = nullptr;
  int cursor_ = -1;
  double scale_ = 1;
  bool showsUsual_ = true;
  QColor text_, grid_, night_, warm_, felt_, rain_, wind_, air_, cloud_, observed_;
};

}  // namespace nimbara
