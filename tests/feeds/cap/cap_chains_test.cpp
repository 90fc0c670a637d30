#include "base/json/json_codec.h"
#include "feeds/alerts/events/cap_events.h"
#include "support/answers/cap_alerts.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using test::capAlert;
using test::listOf;
using test::square;
using test::windBlock;
using testing::IsEmpty;
using testing::SizeIs;

/// Looks again and again, with a restart between any two looks.
class Looks {
 public:
  explicit Looks(Coordinate place = {10, 20}) : place_(place) {}

  GovSourceAnswer at(std::string const& time, std::vector<CapMessage> const& messages) {
    auto known = decodeJson<KnownEvents>(encodeJson(known_));
    EXPECT_TRUE(known);
    known_ = std::move(*known);
    return capEvents(messages, {source, place_, "XX", "en", test::at("2026-11-22T" + time + ":00Z")}, known_);
  }

  std::string source = "wmo";

 private:
  Coordinate place_;
  KnownEvents known_;
};

/// Of the next day: so that likeness tells nothing.
CapInfo moved(int hours) {
  CapInfo info = windBlock();
  info.onset = *info.onset + std::chrono::hours(hours);
  return info;
}

TEST(CapChains, AnEventKeepsItsIdentifierThoughMessagesAreMissingInBetween) {
  Looks looks;
  auto const first = looks.at("08:00", listOf({capAlert("1", "07:00")})).alerts;
  ASSERT_THAT(first, SizeIs(1));
  EXPECT_EQ(first[0].updates, std::nullopt);
  // The third message names the second alone, which the list no longer has, with another beginning.
  auto const second = looks.at("09:00", listOf({capAlert("2", "08:30", "Update", {"1"}, {moved(1)})})).alerts;
  ASSERT_THAT(second, SizeIs(1));
  EXPECT_EQ(second[0].id, first[0].id);
  EXPECT_EQ(second[0].updates, 1);
  auto const third = looks.at("10:00", listOf({capAlert("3", "09:30", "Update", {"2"}, {moved(2)})})).alerts;
  ASSERT_THAT(third, SizeIs(1));
  EXPECT_EQ(third[0].id, first[0].id);
  EXPECT_EQ(third[0].updates, 2);
  // A message that nobody has seen lies between: it is counted, and without hour and reference in common it
  // would be another event.
  CapAlert last = capAlert("5", "11:00", "Update", {"4", "3"}, {moved(3)});
  last.references[0].sent = at("2026-11-22T10:30:00Z");
  auto const fifth = looks.at("12:00", listOf({last})).alerts;
  ASSERT_THAT(fifth, SizeIs(1));
  EXPECT_EQ(fifth[0].id, first[0].id);
  EXPECT_EQ(fifth[0].updates, 4);
  EXPECT_NE(Looks().at("12:00", listOf({last})).alerts.at(0).id, first[0].id);
}

TEST(CapChains, OneFileIsOneEventWhoeverPassesItOn) {
  Looks wmo;
  Looks fpas;
  fpas.source = "fpas";
  EXPECT_EQ(wmo.at("08:00", listOf({capAlert("1", "07:00")})).alerts.at(0).id,
            fpas.at("08:00", listOf({capAlert("1", "07:00")})).alerts.at(0).id);
}

TEST(CapChains, AMessageIsWhatItWasBeforeItsDocumentCame) {
  struct Row {
    char const* identifier;
    bool isKept;
  };
  for (auto const& [identifier, isKept] : {Row{"2.49.0.0", true}, Row{"2.49.0.", false}}) {
    Looks looks;
    CapAlert row = capAlert(identifier, "07:00", "Alert", {}, {moved(1)});
    row.sender.clear();
    row.infos.front().senderName.clear();
    auto const before = looks.at("08:00", listOf({row})).alerts;
    auto const after = looks.at("09:00", listOf({capAlert(identifier, "07:00")})).alerts;
    ASSERT_THAT(before, SizeIs(1));
    ASSERT_THAT(after, SizeIs(1));
    EXPECT_EQ(after[0].id == before[0].id, isKept) << identifier;
  }
}

TEST(CapChains, ACancellationOfWhatIsNoLongerListedNamesTheEvent) {
  Looks looks;
  auto const first = looks.at("08:00", listOf({capAlert("1", "07:00")})).alerts.at(0);
  auto const bare = looks.at("09:00", listOf({capAlert("2", "08:30", "Cancel", {"1"}, {})}));
  ASSERT_THAT(bare.calledOff, SizeIs(1));
  EXPECT_EQ(bare.calledOff[0].id, first.id);
  EXPECT_EQ(bare.calledOff[0].title, "");
  auto const told = looks.at("09:00", listOf({capAlert("2", "08:30", "Cancel", {"1"})}));
  ASSERT_THAT(told.calledOff, SizeIs(1));
  EXPECT_EQ(told.calledOff[0].id, first.id);
  EXPECT_EQ(told.calledOff[0].title, "Wind");
  EXPECT_THAT(Looks().at("09:00", listOf({capAlert("2", "08:30", "Cancel", {"1"}, {})})).calledOff,
              IsEmpty());
}

TEST(CapChains, WhatIsIssuedAnewWithoutReferencesIsTheSameEvent) {
  Looks looks;
  auto const first = looks.at("08:00", listOf({capAlert("1", "07:00")})).alerts.at(0);
  EXPECT_EQ(looks.at("09:00", listOf({capAlert("2", "08:30")})).alerts.at(0).id, first.id);
  auto const both = looks.at("09:00", listOf({capAlert("1", "07:00"), capAlert("2", "08:30")})).alerts;
  ASSERT_THAT(both, SizeIs(1));
  EXPECT_EQ(both[0].issued, at("2026-11-22T08:30:00Z"));
  // Another beginning, another kind, another issuer: another event.
  EXPECT_NE(looks.at("09:00", listOf({capAlert("3", "08:30", "Alert", {}, {moved(2)})})).alerts.at(0).id,
            first.id);
  CapInfo rain = windBlock();
  rain.event = "Rain";
  EXPECT_NE(looks.at("09:00", listOf({capAlert("4", "08:30", "Alert", {}, {rain})})).alerts.at(0).id,
            first.id);
  CapAlert other = capAlert("5", "08:30");
  other.sender = "office@other.example";
  EXPECT_NE(looks.at("09:00", listOf({other})).alerts.at(0).id, first.id);
  // Sent at once they are two.
  EXPECT_THAT(Looks().at("09:00", listOf({capAlert("6", "08:30"), capAlert("7", "08:30")})).alerts,
              SizeIs(2));
}

/// A second message of the same kind and area, an hour later, in a period of its own.
struct Moved {
  std::string name;
  std::string type = "Update";
  std::string from = "10:00", until = "20:00";
  bool lacksReferences = true;
  bool isFirstListed = false;
  bool isSame = false;
};

CapMessage saidFor(std::string identifier, std::string const& sent, Moved const& row) {
  CapInfo info = windBlock();
  info.onset = test::at("2026-11-22T" + row.from + ":00Z");
  info.expires = test::at("2026-11-22T" + row.until + ":00Z");
  CapMessage message = test::listed(capAlert(std::move(identifier), sent, row.type, {}, {info}));
  message.lacksReferences = row.lacksReferences;
  return message;
}

TEST(CapChains, AnUpdateThatCannotNameItsPredecessorGoesOnWhereItsPeriodDoes) {
  Moved const first{"first", "Alert", "12:00", "18:00"};
  for (Moved const& row : {Moved{.name = "begins sooner", .isSame = true},
                           Moved{.name = "lies within", .from = "13:00", .until = "14:00", .isSame = true},
                           Moved{.name = "follows at once", .from = "18:30", .isSame = true},
                           Moved{.name = "follows later", .from = "18:31"},
                           Moved{.name = "ends before", .from = "10:00", .until = "11:29"},
                           Moved{.name = "is new by its own word", .type = "Alert"},
                           Moved{.name = "could have named it", .lacksReferences = false},
                           Moved{.name = "stands beside it", .isFirstListed = true}}) {
    Looks looks;
    auto const before = looks.at("08:00", {saidFor("1", "07:00", first)}).alerts;
    std::vector<CapMessage> later{saidFor("2", "08:30", row)};
    if (row.isFirstListed) later.push_back(saidFor("1", "07:00", first));
    auto const after = looks.at("09:00", later).alerts;
    ASSERT_THAT(before, SizeIs(1)) << row.name;
    ASSERT_THAT(after, SizeIs(row.isFirstListed ? 2 : 1)) << row.name;
    EXPECT_EQ(after[0].id == before[0].id, row.isSame) << row.name;
    EXPECT_EQ(looks.at("09:10", later).alerts[0].id, after[0].id) << row.name << ", asked again";
    if (row.isSame) EXPECT_EQ(after[0].updates, 1) << row.name;
  }
}

CapAlert inLanguage(std::string identifier, std::string language, std::string event) {
  CapInfo info = windBlock();
  info.language = std::move(language);
  info.event = std::move(event);
  return capAlert(std::move(identifier), "07:00", "Alert", {}, {info});
}

TEST(CapChains, MessagesOfOneTextInSeveralLanguagesAreOneEvent) {
  struct Row {
    std::string name;
    CapAlert one, other;
    std::size_t events = 1;
  };
  CapAlert apart = inLanguage("7-RU", "ru", "Ветер");
  apart.infos[0].areas[0].polygons[0][0].latitude = 9;
  CapAlert later = inLanguage("7-RU", "ru", "Ветер");
  later.infos[0].onset = at("2026-11-22T14:00:00Z");
  for (Row const& row :
       {Row{"suffixes", inLanguage("7-EN", "en", "Wind"), inLanguage("7-RU", "ru", "Ветер")},
        {"underscores", inLanguage("7_en", "en", "Wind"), inLanguage("7_ru", "ru", "Ветер")},
        {"sent at once", inLanguage("7", "en", "Wind"), inLanguage("8", "ru", "Ветер")},
        {"of two kinds", inLanguage("7", "en", "Wind"), inLanguage("8", "ru", "Гроза"), 2},
        {"of two areas", inLanguage("7-EN", "en", "Wind"), apart, 2},
        {"of two hours", inLanguage("7-EN", "en", "Wind"), later, 2},
        {"in one language", inLanguage("7-EN", "en", "Wind"), inLanguage("8-EN", "en", "Wind"), 2}}) {
    EXPECT_THAT(Looks().at("08:00", listOf({row.one, row.other})).alerts, SizeIs(row.events)) << row.name;
    EXPECT_THAT(Looks().at("08:00", listOf({row.other, row.one})).alerts, SizeIs(row.events)) << row.name;
  }
  Looks looks;
  auto const russian = looks.at("08:00", listOf({inLanguage("7-RU", "ru", "Ветер")})).alerts.at(0);
  auto const both =
      looks.at("09:00", listOf({inLanguage("7-RU", "ru", "Ветер"), inLanguage("7-EN", "en", "Wind")})).alerts;
  ASSERT_THAT(both, SizeIs(1));
  EXPECT_EQ(both[0].title, "Wind");
  EXPECT_EQ(both[0].id, russian.id);
  EXPECT_EQ(both[0].updates, std::nullopt);
}

TEST(CapChains, AnEventThatIsSplitGoesOnInEachOfItsAreas) {
  CapInfo north = windBlock();
  north.areas = {square("North", 11, 20)};
  CapInfo south = windBlock();
  south.areas = {square("South", 9, 20)};
  CapInfo whole = windBlock();
  whole.areas = {square("North", 11, 20), square("South", 9, 20)};
  auto const parts =
      listOf({capAlert("1", "07:00", "Alert", {}, {whole}), capAlert("2", "08:00", "Update", {"1"}, {north}),
              capAlert("3", "08:05", "Update", {"1"}, {south})});
  for (Coordinate const place : {Coordinate{11, 20}, {9, 20}}) {
    auto const alerts = Looks(place).at("08:10", parts).alerts;
    ASSERT_THAT(alerts, SizeIs(1));
    EXPECT_EQ(alerts[0].areaDesc, place.latitude > 10 ? "North" : "South");
  }
  // Where the end of one part is told the other goes on.
  auto ended = parts;
  ended.push_back(test::listed(capAlert("4", "09:00", "Cancel", {"3"}, {south})));
  EXPECT_THAT(Looks({11, 20}).at("09:10", ended).alerts, SizeIs(1));
  EXPECT_THAT(Looks({9, 20}).at("09:10", ended).alerts, IsEmpty());
  EXPECT_THAT(Looks({9, 20}).at("09:10", ended).calledOff, SizeIs(1));
  // What is told again of the same area replaces what was told before, though it names the first message
  // alone.
  auto const again = listOf({capAlert("1", "07:00"), capAlert("2", "08:00", "Update", {"1"}),
                             capAlert("3", "08:05", "Update", {"1"})});
  EXPECT_THAT(Looks().at("08:10", again).alerts, SizeIs(1));
}

TEST(CapChains, TwoEventsOfAMessageKeepTheirIdentifiers) {
  CapInfo rain = windBlock();
  rain.event = "Rain";
  Looks looks;
  auto const wind = looks.at("08:00", listOf({capAlert("1", "07:00")})).alerts.at(0);
  auto const both =
      looks.at("09:00", listOf({capAlert("2", "08:30", "Update", {"1"}, {rain, windBlock()})})).alerts;
  ASSERT_THAT(both, SizeIs(2));
  EXPECT_EQ(both[1].id, wind.id);
  EXPECT_NE(both[0].id, wind.id);
  auto const left = looks.at("10:00", listOf({capAlert("3", "09:30", "Update", {"2"}, {rain})})).alerts;
  ASSERT_THAT(left, SizeIs(1));
  EXPECT_EQ(left[0].id, both[0].id);
  // One event under a new name is still the same.
  Looks renamed;
  renamed.at("08:00", listOf({capAlert("1", "07:00")}));
  EXPECT_EQ(renamed.at("09:00", listOf({capAlert("2", "08:30", "Update", {"1"}, {rain})})).alerts.at(0).id,
            wind.id);
}

TEST(CapChains, WhatEndsInOnePlaceIsCalledOffThereAlone) {
  CapInfo over = windBlock();
  over.urgency = "Past";
  over.areas = {square("South", 9, 20)};
  CapInfo on = windBlock();
  on.areas = {square("North", 11, 20)};
  CapInfo whole = windBlock();
  whole.areas = {square("North", 11, 20), square("South", 9, 20)};
  auto const list = listOf(
      {capAlert("1", "07:00", "Alert", {}, {whole}), capAlert("2", "08:00", "Update", {"1"}, {over, on})});
  auto const south = Looks({9, 20}).at("08:10", list);
  EXPECT_THAT(south.alerts, IsEmpty());
  EXPECT_THAT(south.calledOff, SizeIs(1));
  auto const north = Looks({11, 20}).at("08:10", list);
  EXPECT_THAT(north.alerts, SizeIs(1));
  EXPECT_THAT(north.calledOff, IsEmpty());
}

TEST(CapChains, ThousandsOfMessagesOfOneChainAreOneEvent) {
  std::vector<CapMessage> messages;
  for (int i = 0; i < 3000; ++i) {
    std::vector<std::string> const older =
        i == 0 ? std::vector<std::string>() : std::vector{std::to_string(i - 1)};
    CapAlert alert = capAlert(std::to_string(i), "07:00", "Update", older);
    alert.sent = *alert.sent + std::chrono::seconds(i);
    messages.push_back(test::listed(std::move(alert)));
  }
  EXPECT_THAT(Looks().at("08:00", messages).alerts, SizeIs(1));
}

}  // namespace
}  // namespace nimbara
