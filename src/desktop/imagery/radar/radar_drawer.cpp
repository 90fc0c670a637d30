#include "desktop/imagery/radar/radar_drawer.h"

#include "base/files/file.h"
#include "desktop/imagery/picture_decoder.h"
#include "desktop/imagery/radar/radar_composition.h"
#include "desktop/imagery/radar/radar_picture.h"
#include "gazetteer/world_outlines.h"

#include <QFile>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <ranges>

namespace nimbara {

namespace {

constexpr QColor kSea{0xdd, 0xe6, 0xec};
constexpr QColor kLand{0xf4, 0xf2, 0xec};
constexpr QColor kCoast{0x8a, 0x93, 0x9b};
constexpr QColor kBorder{0xb9, 0xb4, 0xaa};
constexpr QColor kInk{0x1c, 0x23, 0x2b};
constexpr QColor kPaper{0xff, 0xff, 0xff, 0xe0};
constexpr QColor kMark{0xc0, 0x2a, 0x2a};
constexpr int kMargin = 8;

QString textOf(std::string const& text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::optional<QImage> pictureIn(std::string const& file) {
  constexpr std::size_t kLargest = std::size_t{4} << 20;
  auto const bytes = readFile(file, kLargest);
  return bytes ? decodePicture(*bytes) : std::nullopt;
}

class Drawer {
 public:
  explicit Drawer(RadarDrawing const& drawing)
      : drawing_(drawing),
        view_{mercatorOf({drawing.latitude, drawing.longitude}), drawing.zoom, drawing.width, drawing.height},
        picture_(drawing.width, drawing.height, QImage::Format_ARGB32_Premultiplied),
        painter_(&picture_) {
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
    QFont font = painter_.font();
    font.setPixelSize(std::clamp(drawing.height / 30, 11, 22));
    painter_.setFont(font);
  }

  Drawn drawn() {
    std::optional<PlacedPicture> rain;
    if (drawing_.source) {
      RadarSupplier const& supplier = supplierOf(*drawing_.source);
      std::vector<TilePicture> tiles;
      for (DrawnTile const& tile : drawing_.tiles) {
        auto picture = pictureIn(tile.file);
        if (!picture) return {drawingCode::kUnusable, {}};
        tiles.push_back({{tile.zoom, tile.x, tile.y}, std::move(*picture)});
      }
      if (int const code = codeOf(tiles, supplier); code != drawingCode::kDrawn) return {code, {}};
      if (!paintInOwnColours(tiles, supplier.palette)) palette_ = supplier.palette;
      rain = sideBySide(tiles, view_.centre, supplier.pixels);
    }
    drawLand();
    if (rain) painter_.drawImage(QRectF(pixel(rain->northWest), pixel(rain->southEast)), rain->picture);
    drawCoasts();
    drawPlace();
    drawWords();
    if (drawing_.source) drawLegend(legendOf(palette_));
    painter_.end();
    return {drawingCode::kDrawn, picture_};
  }

 private:
  int codeOf(std::vector<TilePicture> const& tiles, RadarSupplier const& supplier) const {
    QImage coverage;
    TileAddress of;
    if (drawing_.coverage) {
      of = {drawing_.coverage->zoom, drawing_.coverage->x, drawing_.coverage->y};
      coverage = pictureIn(drawing_.coverage->file).value_or(QImage());
    }
    if (isRepeated(tiles)) return drawingCode::kUnusable;
    auto const state = stateOf(tiles, supplier, coverage, of, {drawing_.latitude, drawing_.longitude});
    if (state == PictureState::uncovered) return drawingCode::kUncovered;
    return state == PictureState::usable ? drawingCode::kDrawn : drawingCode::kUnusable;
  }

  QPointF pixel(MapPoint point) const {
    MapPoint const at = pixelOf(view_, point);
    return {at.x, at.y};
  }

  /// Once for each way around the world that is seen.
  QPainterPath pathOf(std::vector<WorldLine> const& lines) const {
    QPainterPath path;
    WorldTurns const turns = turnsOf(view_, 0, 1);
    for (int turn = turns.first; turn <= turns.last; ++turn) {
      for (WorldLine const& line : lines) {
        QPolygonF polygon;
        for (Coordinate const& place : line) {
          MapPoint const point = mercatorOf(place);
          polygon << pixel({point.x + turn, point.y});
        }
        path.addPolygon(polygon);
      }
    }
    return path;
  }

  void drawLand() {
    coasts_ = pathOf(landOutlines());
    picture_.fill(kSea);
    painter_.fillPath(coasts_, kLand);
  }

  void drawCoasts() {
    painter_.setPen(QPen(kCoast, 1));
    painter_.drawPath(coasts_);
    painter_.setPen(QPen(kBorder, 1));
    painter_.drawPath(pathOf(borderLines()));
  }

  void drawPlace() {
    QPointF const middle(view_.width / 2.0, view_.height / 2.0);
    painter_.setPen(QPen(kPaper, 4));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawEllipse(middle, 6, 6);
    painter_.setPen(QPen(kMark, 2));
    painter_.drawEllipse(middle, 6, 6);
  }

  /// On paper, with its top left corner there; gives its size.
  QSize drawNote(QString const& text, QPoint at, bool isAbove = false) {
    QFontMetrics const metrics(painter_.font());
    QString const fitting = metrics.elidedText(text, Qt::ElideRight, view_.width - 4 * kMargin);
    QSize const size(metrics.horizontalAdvance(fitting) + 2 * kMargin, metrics.height() + kMargin);
    QRect const box(QPoint(at.x(), isAbove ? at.y() - size.height() : at.y()), size);
    painter_.fillRect(box, kPaper);
    painter_.setPen(kInk);
    painter_.drawText(box, Qt::AlignCenter, fitting);
    return size;
  }

  void drawWords() {
    QSize const place = drawNote(textOf(drawing_.place), {kMargin, kMargin});
    drawNote(textOf(drawing_.time), {kMargin, kMargin + place.height()});
    if (!drawing_.credit.empty()) drawNote(textOf(drawing_.credit), {kMargin, view_.height - kMargin}, true);
  }

  /// From the top right corner downwards, the most rain above.
  void drawLegend(std::span<LegendStop const> legend) {
    QFont font = painter_.font();
    font.setPixelSize(std::max(9, font.pixelSize() * 3 / 4));
    painter_.setFont(font);
    QFontMetrics const metrics(font);
    int const row = metrics.height();
    int const wide = metrics.horizontalAdvance(QStringLiteral("0.000")) + row + 3 * kMargin;
    int const high = row * (static_cast<int>(legend.size()) + 1) + kMargin;
    if (high + 2 * kMargin > view_.height || 3 * wide > view_.width) return;
    int const left = view_.width - wide - kMargin;
    painter_.fillRect(left, kMargin, wide, high, kPaper);
    int y = kMargin + kMargin / 2;
    painter_.setPen(kInk);
    painter_.drawText(QRect(left, y, wide, row), Qt::AlignCenter, QStringLiteral("mm/h"));
    for (LegendStop const& stop : std::views::reverse(legend)) {
      y += row;
      QColor const colour(static_cast<int>(stop.rgba >> 24), static_cast<int>(stop.rgba >> 16 & 0xff),
                          static_cast<int>(stop.rgba >> 8 & 0xff), static_cast<int>(stop.rgba & 0xff));
      painter_.fillRect(left + kMargin, y, row, row, colour);
      painter_.drawText(QRect(left + 2 * kMargin + row, y, wide, row), Qt::AlignVCenter,
                        QString::number(stop.mmPerHour, 'g', 3));
    }
  }

  RadarDrawing const& drawing_;
  MapView view_;
  RadarPalette palette_ = RadarPalette::own;
  QImage picture_;
  QPainter painter_;
  QPainterPath coasts_;
};

}  // namespace

Drawn drawnRadar(RadarDrawing const& drawing) {
  constexpr int kLeast = 100, kMost = 4096;
  bool const isSize =
      std::min(drawing.width, drawing.height) >= kLeast && std::max(drawing.width, drawing.height) <= kMost;
  return isSize ? Drawer(drawing).drawn() : Drawn();
}

int runRadarDrawer(int& count, char** arguments) {
  constexpr std::size_t kLargest = std::size_t{1} << 20;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication const application(count, arguments);
  if (count < 3) return drawingCode::kFailed;
  auto const document = readFile(arguments[2], kLargest);
  auto const drawing = document ? radarDrawingIn(*document) : std::unexpected(DecodeError());
  if (!drawing) return drawingCode::kFailed;
  Drawn const drawn = drawnRadar(*drawing);
  if (drawn.code != drawingCode::kDrawn) return drawn.code;
  return drawn.picture.save(QFile::decodeName(drawing->picture.c_str()), "PNG") ? drawingCode::kDrawn
                                                                                : drawingCode::kFailed;
}

}  // namespace nimbara
