#include "desktop/imagery/field_picture.h"

#include "desktop/offscreen.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

/// Warmer and drier to the east; nothing is known of the south-eastern quarter.
struct FieldPictures : test::OffscreenTest {
  FieldPictures() {
    fields.grid = modelGridFor(view);
    fields.times = {test::at("2026-11-22T10:00:00Z")};
    ModelHour& hour = fields.hours.emplace_back();
    for (int row = 0; row < fields.grid.rows; ++row) {
      for (int column = 0; column < fields.grid.columns; ++column) {
        bool const isHole = row > fields.grid.rows / 2 && column > fields.grid.columns / 2;
        auto const part = static_cast<float>(column) / static_cast<float>(fields.grid.columns - 1);
        hour.temperature.push_back(isHole ? kNone : 40 * part);
        hour.precipitation.push_back(isHole ? kNone : 5 - 10 * part);
        hour.pressure.push_back(isHole ? kNone : 990 + 40 * part);
        hour.windEast.push_back(isHole ? kNone : 30.0F);
        hour.windNorth.push_back(isHole ? kNone : 0.0F);
      }
    }
  }
  QImage picture(FieldKind kind) const { return fieldPicture(fields, kind, 0, view, look); }
  static long long drawn(QImage const& picture, QRect part) {
    long long count = 0;
    for (int y = part.top(); y <= part.bottom(); ++y)
      for (int x = part.left(); x <= part.right(); ++x) count += qAlpha(picture.pixel(x, y)) > 0;
    return count;
  }

  MapView view{mercatorOf({20, 10}), 4, 600, 400};
  FieldLook look{Qt::black, Qt::white, 12, {}};
  ModelFields fields;
};

TEST_F(FieldPictures, AreEmptyWhereTheModelSaysNothing) {
  for (FieldKind const kind :
       {FieldKind::temperature, FieldKind::precipitation, FieldKind::pressure, FieldKind::wind}) {
    QImage const made = picture(kind);
    EXPECT_EQ(made.size(), QSize(600, 400));
    EXPECT_GT(drawn(made, {0, 0, 200, 120}), 100) << int(kind);
    EXPECT_EQ(drawn(made, {560, 380, 40, 20}), 0) << int(kind);
  }
}

TEST_F(FieldPictures, ColdIsBluerThanWarm) {
  QImage const made = picture(FieldKind::temperature);
  QColor const cold = made.pixelColor(20, 60), warm = made.pixelColor(580, 60);
  EXPECT_GT(cold.blue() - cold.red(), 0);
  EXPECT_GT(warm.red() - warm.blue(), 60);
  EXPECT_EQ(drawn(picture(FieldKind::precipitation), {560, 0, 40, 40}), 0);  // dry
}

TEST(FieldColours, GoOverFromStopToStop) {
  constexpr FieldStop kStops[] = {{0, 0x000000}, {10, 0xff8000}};
  for (auto const& [value, rgb] :
       {std::pair(-5.0, 0x000000U), {0.0, 0x000000U}, {5.0, 0x804000U}, {10.0, 0xff8000U}, {99.0, 0xff8000U}})
    EXPECT_EQ(fieldColour(kStops, value), rgb) << value;
}

}  // namespace
}  // namespace nimbara
