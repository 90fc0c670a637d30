#include "desktop/window/models/first_model.h"

#include "app/settings/settings_registry.h"
#include "desktop/views/places/first_view.h"
#include "desktop/window/words.h"

namespace nimbara {

namespace {

constexpr WordRow kWords[] = {
    {"title", "desktop.welcome"},
    {"purpose", "desktop.welcome.purpose"},
    {"examples", "desktop.welcome.examples"},
    {"services", "desktop.welcome.services"},
    {"accept", "desktop.background.accept"},
    {"decline", "desktop.background.decline"},
    {"again", "desktop.arrival.again"},
};

}  // namespace

FirstModel::FirstModel(EngineActions& engine, QObject* parent)
    : QObject(parent),
      engine_(engine),
      words_(new RecordModel(this)),
      welcome_(new RecordModel(this)),
      sources_(new RecordListModel(this)),
      arrival_(new RecordModel(this)),
      background_(new RecordModel(this)) {}

void FirstModel::show(EngineSnapshot const& snapshot, ViewContext const& context) {
  showWords(*words_, kWords, context.texts);
  welcome_->show(welcomeView(snapshot, context));
  bool const hasApple = snapshot.settings && snapshot.settings->isAppleWeatherConfigured;
  bool const isWelcome = !snapshot.place;
  sources_->show(isWelcome ? welcomeSources(hasApple, context) : std::vector<WelcomeSource>());
  arrival_->show(arrivalView(snapshot, context));
  background_->show(backgroundView(snapshot, isAnswered_, context));
}

void FirstModel::acceptBackground() {
  isAnswered_ = true;
  engine_.setStartAtLogin(true);
  engine_.changeSetting(std::string(kAskedBackgroundSetting), "true");
  Q_EMIT answered();
}

void FirstModel::closeBackground() {
  isAnswered_ = false;
  engine_.changeSetting(std::string(kAskedBackgroundSetting), "true");
  Q_EMIT answered();
}

}  // namespace nimbara
