#include "cli/pages/kp_page.h"

#include "support/instants.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using testing::HasSubstr;
using testing::StartsWith;

constexpr char kNow[] = "2026-11-21T09:20:00Z";

std::string page(KpOutlook const& outlook, Calendar const& calendar = Calendar::utc(),
                 Texts const& texts = Texts::load("en")) {
  return kpPage(outlook, texts, calendar, at(kNow), Style{});
}

TEST(KpPage, SaysWhatTheIndexMeansForAPlace) {
  struct Row {
    double kp;
    Coordinate place;
    std::string_view sentence;
  };
  for (Row const& row :
       {Row{1.67, {52.52, 13.41}, "Kp 1.67: quiet; aurora not expected at 53°N\n"},
        Row{7,
            {52.52, 13.41},
            "Kp 7.00: strong storm (G3); aurora possible low on the horizon at 53°N, in a dark and clear "
            "sky\n"},
        Row{4,
            {69.65, 18.96},
            "Kp 4.00: active; aurora possible high in the sky at 70°N, if it is dark and clear\n"},
        Row{0, {-42.88, 147.33}, "Kp 0.00: quiet; aurora not expected at 43°S\n"}}) {
    EXPECT_EQ(page({row.kp, {}, {}, row.place}), row.sentence);
  }
  EXPECT_EQ(page({1.67, {}, {}, {}}), "Kp 1.67: quiet\nAuroras stay in the polar regions.\n");
  EXPECT_THAT(page({1.67, {}, {}, {}}, Calendar::utc(), Texts::load("de")), StartsWith("Kp 1,67: ruhig\n"));
}

TEST(KpPage, HasTheLastAndTheNextDaysInTheReadersHours) {
  using enum KpKind;
  KpOutlook const outlook{
      2,
      {{at("2026-11-20T21:00:00Z"), 1.33, observed},
       {at("2026-11-21T00:00:00Z"), 2.67, observed},
       {at("2026-11-21T06:00:00Z"), 2, estimated}},
      {{at("2026-11-21T09:00:00Z"), 3, predicted}, {at("2026-11-22T18:00:00Z"), 5.33, predicted}},
      {}};
  EXPECT_THAT(page(outlook),
              testing::EndsWith("Highest in the forecast: Kp 5.33, minor storm (G1), Sunday 6:00 PM\n"
                                "\n"
                                "Kp in steps of three hours (~ forecast)\n"
                                "           12 AM    3 AM    6 AM    9 AM   12 PM    3 PM    6 PM    9 PM\n"
                                "Fri 20                                                              1.33\n"
                                "Sat 21      2.67            2.00   ~3.00\n"
                                "Sun 22                                                     ~5.33\n"));
  EXPECT_THAT(page(outlook, test::zone("Europe/Berlin")),
              HasSubstr("            1 AM    4 AM    7 AM   10 AM    1 PM    4 PM    7 PM   10 PM\n"
                        "Fri 20                                                              1.33\n"
                        "Sat 21      2.67            2.00   ~3.00\n"));
  EXPECT_THAT(page(outlook, test::zone("Asia/Kathmandu")), HasSubstr("     2:45    5:45    8:45   11:45"));
  KpOutlook const measured{2, outlook.history, {}, {}};
  EXPECT_THAT(page(measured), HasSubstr("\n\nKp in steps of three hours\n"));
  EXPECT_THAT(page(measured), testing::Not(HasSubstr("Highest")));
}

}  // namespace
}  // namespace nimbara
