// Lays out what it holds in columns of weights: each child in the lane that its property "lane" names, or
// over the whole width. Sets the children's places and widths; their heights are their own.
#pragma once

#include <QQuickItem>
#include <QVariantList>

namespace nimbara {

class Board : public QQuickItem {
  Q_OBJECT
  Q_PROPERTY(QVariantList weights MEMBER weights_ NOTIFY changed)
  Q_PROPERTY(double spacing MEMBER spacing_ NOTIFY changed)
  Q_PROPERTY(bool isMirrored MEMBER isMirrored_ NOTIFY changed)

 public:
  explicit Board(QQuickItem* parent = nullptr);

 Q_SIGNALS:
  void changed();

 protected:
  void itemChange(ItemChange change, ItemChangeData const& data) override;
  void geometryChange(QRectF const& now, QRectF const& before) override;
  void updatePolish() override;

 private:
  void follow(QQuickItem* child);

  QVariantList weights_;
  double spacing_ = 0;
  bool isMirrored_ = false;
};

}  // namespace nimbara
