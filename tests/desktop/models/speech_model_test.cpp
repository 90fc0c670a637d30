#include "desktop/window/models/speech_model.h"

#include "app/settings/settings_registry.h"
#include "desktop/offscreen.h"
#include "support/session/fake_speech.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

namespace nimbara {
namespace {

using testing::ElementsAre;

/// Before what needs its loop of events.
struct Application {
  Application() { test::offscreenApplication(); }
};

struct SpeechButton : Application, testing::Test {
  void offer(bool isOffered) {
    Settings const settings(settingsRegistry(), {{std::string(kSpeechSetting), isOffered}});
    EngineSnapshot snapshot;
    snapshot.settings = std::make_shared<SettingsState>(settings);
    model.show(snapshot);
  }

  std::shared_ptr<test::FakeSpeech> speech = std::make_shared<test::FakeSpeech>();
  SpeechModel model{speech, nullptr};
};

TEST_F(SpeechButton, IsOfferedWhereTheUserWantsIt) {
  model.show(EngineSnapshot());
  EXPECT_FALSE(model.isOffered());
  offer(false);
  EXPECT_FALSE(model.isOffered());
  offer(true);
  EXPECT_TRUE(model.isOffered());
}

TEST_F(SpeechButton, ReadsTheBriefAndPressedAgainStops) {
  offer(true);
  model.toggle(QStringLiteral("Today: low -4 °C."));
  EXPECT_TRUE(model.isSpeaking());
  EXPECT_TRUE(QTest::qWaitFor([&] { return speech->isSpeaking(); }));
  EXPECT_THAT(speech->said(), ElementsAre("en: Today: low minus 4 degrees."));
  model.toggle(QStringLiteral("Today: low -4 °C."));
  EXPECT_FALSE(model.isSpeaking());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !speech->isSpeaking(); }));
  EXPECT_THAT(speech->said(), testing::SizeIs(1));
}

TEST_F(SpeechButton, NoticesTheEndAndThatNobodySpeaks) {
  offer(true);
  model.toggle(QStringLiteral("Dry."));
  EXPECT_TRUE(QTest::qWaitFor([&] { return speech->isSpeaking(); }));
  speech->stop();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !model.isSpeaking(); }));
  speech->isThere = false;
  model.toggle(QStringLiteral("Dry."));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !model.isSpeaking(); })) << "silently";
  model.toggle({});
  EXPECT_FALSE(model.isSpeaking()) << "there is nothing to read";
}

}  // namespace
}  // namespace nimbara
