#include "desktop/window/models/sources_model.h"

#include "desktop/views/hazards/sources_view.h"
#include "desktop/window/words.h"

namespace nimbara {

namespace {

constexpr WordRow kWords[] = {
    {"title", "desktop.sources.title"},     {"hint", "desktop.sources.hint"},
    {"none", "desktop.sources.none"},       {"source", "desktop.sources.source"},
    {"checked", "desktop.sources.checked"}, {"lacks", "desktop.sources.lacks"},
    {"next", "desktop.sources.next"},       {"choice", "desktop.sources.choice"},
    {"back", "desktop.sources.back"},
};

}  // namespace

SourcesModel::SourcesModel(EngineActions& engine, QObject* parent)
    : QObject(parent), engine_(engine), words_(new RecordModel(this)), places_(new RecordListModel(this)) {}

void SourcesModel::show(EngineSnapshot const& snapshot, ViewContext const& context) {
  showWords(*words_, kWords, context.texts);
  if (isOpen_) places_->show(sourceViews(snapshot, context));
}

void SourcesModel::open() {
  engine_.lookAtSources();
  if (isOpen_) return;
  isOpen_ = true;
  Q_EMIT opened();
}

void SourcesModel::choose(QString const& place, QString const& source) {
  if (auto const id = Uuid::parse(place.toStdString()))
    engine_.chooseWarningSource(*id, source.toStdString());
}

}  // namespace nimbara
