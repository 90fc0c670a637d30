#include "desktop/window/painting/line_signs.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <string_view>

namespace nimbara {

namespace {

using Lines = std::initializer_list<QPointF>;

/// Strokes on a square of 24 units.
void stroke(QPainter& painter, Lines points) {
  painter.drawPolyline(QPolygonF(QList<QPointF>(points)));
}

QPainterPath bellPath() {
  QPainterPath bell({4.5, 17});
  bell.cubicTo(6.5, 15, 6.5, 13, 6.5, 10.5);
  bell.cubicTo(6.5, 3.2, 17.5, 3.2, 17.5, 10.5);
  bell.cubicTo(17.5, 13, 17.5, 15, 19.5, 17);
  bell.closeSubpath();
  return bell;
}

struct SignRow {
  std::string_view name;
  void (*paint)(QPainter&);
};

constexpr std::array kSigns = std::to_array<SignRow>({
    {"up", [](QPainter& p) { stroke(p, {{6, 15}, {12, 9}, {18, 15}}); }},
    {"down", [](QPainter& p) { stroke(p, {{6, 9}, {12, 15}, {18, 9}}); }},
    {"back", [](QPainter& p) { stroke(p, {{15, 6}, {9, 12}, {15, 18}}); }},
    {"forth", [](QPainter& p) { stroke(p, {{9, 6}, {15, 12}, {9, 18}}); }},
    {"cross",
     [](QPainter& p) {
       stroke(p, {{7, 7}, {17, 17}});
       stroke(p, {{17, 7}, {7, 17}});
     }},
    {"check", [](QPainter& p) { stroke(p, {{5, 12.5}, {10, 17.5}, {19.5, 7}}); }},
    {"search",
     [](QPainter& p) {
       p.drawEllipse(QPointF(10.5, 10.5), 6.5, 6.5);
       stroke(p, {{15.5, 15.5}, {20.5, 20.5}});
     }},
    {"pencil",
     [](QPainter& p) {
       stroke(p, {{4.5, 19.5}, {5.5, 15.5}, {16, 5}, {19, 8}, {8.5, 18.5}, {4.5, 19.5}});
       stroke(p, {{13.5, 7.5}, {16.5, 10.5}});
     }},
    {"grip",
     [](QPainter& p) {
       for (double const y : {8.0, 12.0, 16.0}) stroke(p, {{6, y}, {18, y}});
     }},
    {"question",
     [](QPainter& p) {
       p.drawEllipse(QPointF(12, 12), 9, 9);
       p.drawArc(QRectF(9, 6.5, 6, 6), -60 * 16, 220 * 16);
       stroke(p, {{13.3, 12}, {12, 13.6}});
       p.drawEllipse(QPointF(12, 16.8), 0.5, 0.5);
     }},
    {"again",
     [](QPainter& p) {
       p.drawArc(QRectF(4, 5, 15, 15), 35 * 16, 290 * 16);
       stroke(p, {{18.6, 3}, {18.2, 8.6}, {12.8, 8.2}});
     }},
    {"place",
     [](QPainter& p) {
       p.drawArc(QRectF(6, 3, 12, 12), -35 * 16, 250 * 16);
       stroke(p, {{7.1, 12.4}, {12, 21}, {16.9, 12.4}});
       p.drawEllipse(QPointF(12, 9), 1.4, 1.4);
     }},
    {"bell",
     [](QPainter& p) {
       p.drawPath(bellPath());
       p.drawArc(QRectF(9.5, 17.5, 5, 4), 190 * 16, 160 * 16);
     }},
    {"silence",
     [](QPainter& p) {
       p.drawPath(bellPath());
       stroke(p, {{4, 3.5}, {20, 20.5}});
     }},
    {"warning",
     [](QPainter& p) {
       stroke(p, {{12, 3.5}, {21.5, 20}, {2.5, 20}, {12, 3.5}});
       stroke(p, {{12, 9.5}, {12, 14}});
       p.drawEllipse(QPointF(12, 17), 0.5, 0.5);
     }},
    {"air",
     [](QPainter& p) {
       stroke(p, {{3, 9}, {14, 9}});
       p.drawArc(QRectF(11, 3, 6, 6), -90 * 16, 250 * 16);
       stroke(p, {{3, 13}, {18, 13}});
       p.drawArc(QRectF(15.5, 8, 5, 5), -90 * 16, 220 * 16);
       stroke(p, {{3, 17}, {12, 17}});
       p.drawArc(QRectF(9.5, 17, 4, 4), 90 * 16, -230 * 16);
     }},
    {"gear",
     [](QPainter& p) {
       p.drawEllipse(QPointF(12, 12), 3, 3);
       p.drawEllipse(QPointF(12, 12), 7, 7);
       for (int tooth = 0; tooth < 8; ++tooth) {
         stroke(p, {{12, 5}, {12, 2.6}});
         p.translate(12, 12);
         p.rotate(45);
         p.translate(-12, -12);
       }
     }},
    {"here",
     [](QPainter& p) {
       p.drawEllipse(QPointF(12, 12), 6, 6);
       p.drawEllipse(QPointF(12, 12), 1, 1);
       stroke(p, {{12, 2}, {12, 6}});
       stroke(p, {{12, 18}, {12, 22}});
       stroke(p, {{2, 12}, {6, 12}});
       stroke(p, {{18, 12}, {22, 12}});
     }},
    {"others",
     [](QPainter& p) {
       for (double const x : {5.5, 12.0, 18.5}) p.drawEllipse(QPointF(x, 12), 0.6, 0.6);
     }},
    {"globe",
     [](QPainter& p) {
       p.drawEllipse(QPointF(12, 12), 9, 9);
       p.drawEllipse(QPointF(12, 12), 4, 9);
       stroke(p, {{3, 12}, {21, 12}});
     }},
    {"map",
     [](QPainter& p) {
       stroke(p, {{3.5, 6}, {9, 4}, {15, 6.5}, {20.5, 4.5}, {20.5, 18}, {15, 20}, {9, 17.5}, {3.5, 19.5}, {3.5, 6}});
       stroke(p, {{9, 4}, {9, 17.5}});
       stroke(p, {{15, 6.5}, {15, 20}});
     }},
    {"play", [](QPainter& p) { stroke(p, {{8, 5.5}, {18.5, 12}, {8, 18.5}, {8, 5.5}}); }},
    {"pause",
     [](QPainter& p) {
       stroke(p, {{8.5, 6}, {8.5, 18}});
       stroke(p, {{15.5, 6}, {15.5, 18}});
     }},
    {"plus",
     [](QPainter& p) {
       stroke(p, {{12, 6}, {12, 18}});
       stroke(p, {{6, 12}, {18, 12}});
     }},
    {"speak",
     [](QPainter& p) {
       stroke(p, {{4, 9.5}, {7.5, 9.5}, {12, 5.5}, {12, 18.5}, {7.5, 14.5}, {4, 14.5}, {4, 9.5}});
       p.drawArc(QRectF(11, 8.5, 5, 7), -60 * 16, 120 * 16);
       p.drawArc(QRectF(11, 5.5, 9, 13), -60 * 16, 120 * 16);
     }},
    {"station",
     [](QPainter& p) {
       stroke(p, {{12, 21}, {12, 8}});
       stroke(p, {{8, 21}, {16, 21}});
       stroke(p, {{5, 8}, {19, 8}});
       p.drawEllipse(QPointF(5, 6), 2, 2);
       p.drawEllipse(QPointF(19, 6), 2, 2);
     }},
    {"minus", [](QPainter& p) { stroke(p, {{6, 12}, {18, 12}}); }},
    {"arrow",
     [](QPainter& p) {
       stroke(p, {{12, 21}, {12, 3}});
       stroke(p, {{6, 9}, {12, 3}, {18, 9}});
     }},
});

}  // namespace

QImage LineSigns::requestImage(QString const& id, QSize* size, QSize const& requestedSize) {
  int const side = std::clamp(std::max(requestedSize.width(), requestedSize.height()), 8, 512);
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(side / 24.0, side / 24.0);
  QColor const colour(QLatin1Char('#') + id.section(QLatin1Char('/'), 1, 1));
  painter.setPen(QPen(colour, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  std::string const name = id.section(QLatin1Char('/'), 0, 0).toStdString();
  auto const row = std::ranges::find(kSigns, name, &SignRow::name);
  if (row != kSigns.end()) row->paint(painter);
  if (size != nullptr) *size = image.size();
  return image;
}

}  // namespace nimbara
