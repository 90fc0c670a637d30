#include "app/words/brief/spoken_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct Row {
  std::string language;
  std::string written;
  std::string heard;
};

TEST(SpokenText, SaysUnitsInWords) {
  for (Row const& row :
       {Row{"en", "Clear, -4 °C, feels like -8 °C.", "Clear, minus 4 degrees, feels like minus 8 degrees."},
        {"en", "1 mm, 6.5 mm, 14-19 km/h.", "1 millimetre, 6.5 millimetres, 14-19 kilometres per hour."},
        {"en", "Rain from 14:00 until 7 PM, 80%.", "Rain from 14:00 until 7 PM, 80 percent."},
        {"en", "UV index up to 6 in the sun, 5\u00A0mph.", "UV index up to 6 in the sun, 5 miles per hour."},
        {"en", "Usual for mid-November (1991–2020).", "Usual for mid-November (1991–2020)."},
        {"de", "Höchstwert -1 °C, Böen bis 50 km/h.",
         "Höchstwert minus 1 Grad, Böen bis 50 Kilometer pro Stunde."},
        {"pl", "1 °C, 3 °C, 5 °C", "1 stopień, 3 stopnie, 5 stopni"},
        {"es", "Mínima -2 °C", "Mínima 2 grados bajo cero"},
        {"ja", "最高15 °C、風速50 km/h", "最高15度、風速時速50キロ"}}) {
    EXPECT_EQ(spokenText(row.written, Units::metric(), Texts::load(row.language)), row.heard) << row.written;
  }
  EXPECT_EQ(spokenText("About 3 in, 59 °F.", Units::imperial(), Texts::load("en")),
            "About 3 inches, 59 degrees.");
}

TEST(SpokenText, IsWholeInEveryLanguage) {
  for (Texts::Language const& language : Texts::languages()) {
    std::string const heard = spokenText("-1 °C 2 °F 1° 3 km/h 4 km 5 mph 6 m/s 7 mm 8 cm 9 in 10 %",
                                         Units::imperial(), Texts::load(language.code));
    EXPECT_THAT(heard, testing::Not(testing::ContainsRegex("spoken\\.|°|%"))) << language.code;
  }
}

}  // namespace
}  // namespace nimbara
