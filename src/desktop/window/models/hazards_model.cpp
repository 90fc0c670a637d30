#include "desktop/window/models/hazards_model.h"

#include "desktop/views/hazards/alert_view.h"
#include "desktop/views/hazards/supplement_view.h"
#include "desktop/window/words.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr WordRow kWords[] = {
    {"title", "desktop.page.hazards"},
    {"official", "desktop.official"},
    {"noPlace", "desktop.official.noPlace"},
    {"quakes", "desktop.quakes"},
    {"radius", "desktop.quakes.radius"},
    {"strength", "desktop.quakes.strength"},
    {"order", "desktop.quakes.order"},
    {"map", "desktop.quakes.map"},
    {"mapHint", "desktop.quakes.mapHint"},
    {"lastHour", "desktop.quakes.lastHour"},
    {"lastSix", "desktop.quakes.lastSix"},
    {"lastDay", "desktop.quakes.lastDay"},
    {"kp", "desktop.kp"},
    {"bars", "desktop.kp.bars"},
};

}  // namespace

HazardsModel::HazardsModel(EngineActions& engine, QObject* parent)
    : QObject(parent),
      engine_(engine),
      words_(new RecordModel(this)),
      official_(new RecordModel(this)),
      warnings_(new RecordListModel(this)),
      about_(new RecordModel(this)),
      quakes_(new RecordListModel(this)),
      radii_(new RecordListModel(this)),
      magnitudes_(new RecordListModel(this)),
      orders_(new RecordListModel(this)),
      kp_(new RecordModel(this)),
      supplement_(new RecordListModel(this)) {}

void HazardsModel::show(EngineSnapshot const& snapshot, ViewContext const& context) {
  HazardsState const& state = *snapshot.hazards;
  showWords(*words_, kWords, context.texts);
  official_->show(officialView(state.official, snapshot.place, *snapshot.weather, context));
  warnings_->show(officialViews(*snapshot.weather, context, state.official));
  showQuakes(snapshot, context);
  kp_->show(kpView(state, context));
  supplement_->show(supplementCards(snapshot.weather->supplement.get(), context));
  kpBars_ = nimbara::kpBars(state, context);
  Q_EMIT shown();
}

/// What is pointed at stays so in whichever row it is now.
void HazardsModel::showQuakes(EngineSnapshot const& snapshot, ViewContext const& context) {
  HazardsState const& state = *snapshot.hazards;
  std::string const pointedAt =
      highlighted_ < 0 ? std::string() : shownQuakes_[static_cast<std::size_t>(highlighted_)].id;
  auto const events = shownQuakes(state, snapshot.place, order_, context);
  shownQuakes_ = quakeViews(events, snapshot.place, context);
  quakeMap_ = nimbara::quakeMap(events, state, snapshot.place, context);
  about_->show(quakesView(state, events, snapshot.place, context));
  radii_->show(radiusChoices(state.filter, context));
  magnitudes_->show(magnitudeChoices(state.filter, context));
  orders_->show(orderChoices(order_, context));
  quakes_->show(shownQuakes_);
  auto const found = std::ranges::find(shownQuakes_, pointedAt, &QuakeView::id);
  bool const isStill = !pointedAt.empty() && found != shownQuakes_.end();
  highlighted_ = isStill ? static_cast<int>(found - shownQuakes_.begin()) : -1;
  Q_EMIT highlightedChanged();
}

void HazardsModel::setHighlighted(int row) {
  row = std::clamp(row, -1, static_cast<int>(shownQuakes_.size()) - 1);
  if (row == highlighted_) return;
  highlighted_ = row;
  Q_EMIT highlightedChanged();
}

QString HazardsModel::highlightedText() const {
  if (highlighted_ < 0) return {};
  return QString::fromStdString(shownQuakes_[static_cast<std::size_t>(highlighted_)].sentence);
}

void HazardsModel::look() {
  engine_.lookAtHazards();
}

void HazardsModel::setRadius(double km) {
  engine_.setQuakeRadius(km);
}

void HazardsModel::setMagnitude(double least) {
  engine_.setQuakeMagnitude(least);
}

void HazardsModel::setOrder(double order) {
  auto const wanted = order > 0 ? QuakeOrder::time : QuakeOrder::significance;
  if (wanted == order_) return;
  order_ = wanted;
  Q_EMIT reordered();
}

}  // namespace nimbara
