#include "desktop/window/models/air_model.h"

#include "app/state/supplement_state.h"
#include "desktop/views/air/air_view.h"
#include "desktop/window/words.h"

namespace nimbara {

namespace {

constexpr WordRow kWords[] = {
    {"title", "desktop.air.title"},     {"now", "desktop.air.now"},
    {"hours", "desktop.air.hours"},     {"pollutants", "desktop.air.pollutants"},
    {"pollen", "desktop.air.pollen"},   {"pollenBars", "desktop.air.pollenBars"},
    {"uv", "desktop.air.uv"},           {"climate", "desktop.hazard.climate"},
    {"year", "desktop.air.year"},       {"middle", "desktop.air.middle"},
    {"most", "desktop.air.most"},       {"median", "desktop.air.median"},
    {"today", "report.today"},          {"noPlace", "desktop.air.noPlace"},
    {"hint", "desktop.meteogram.hint"}, {"unknown", "air.notKnown"},
    {"protect", "desktop.air.protect"},
};

}  // namespace

AirModel::AirModel(QObject* parent)
    : QObject(parent),
      words_(new RecordModel(this)),
      now_(new RecordModel(this)),
      steps_(new RecordListModel(this)),
      pollutants_(new RecordListModel(this)),
      pollen_(new RecordListModel(this)),
      hours_(new RecordListModel(this)) {}

void AirModel::show(EngineSnapshot const& snapshot, ViewContext const& context) {
  SupplementState const* const known = snapshot.weather->supplement.get();
  showWords(*words_, kWords, context.texts);
  now_->show(airView(known, context));
  steps_->show(airStepViews(known, context));
  pollutants_->show(pollutantViews(known, context));
  pollen_->show(pollenViews(known, context));
  hours_->show(airHourViews(known, context));
  year_ = known == nullptr ? YearCurve() : yearCurve(known->climate.data, context);
  Q_EMIT shown();
}

}  // namespace nimbara
