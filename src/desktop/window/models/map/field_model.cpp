#include "desktop/window/models/map/field_model.h"

#include "base/text/number.h"
#include "desktop/views/map/radar_view.h"
#include "desktop/window/models/window_actions.h"
#include "feeds/fetching/failure_words.h"
#include "feeds/imagery/radar/radar_palette.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr std::array kTitles =
    std::to_array<std::string_view>({"customnotif.type.temperature", "customnotif.type.precipitation",
                                     "customnotif.type.pressure", "report.wind"});
static_assert(kTitles.size() == enumNames<FieldKind>.size());

constexpr double kColoursOpacity = 0.62;
constexpr std::string_view kMaker = "Open-Meteo.com";

bool isColoured(FieldKind kind) {
  return kind == FieldKind::temperature || kind == FieldKind::precipitation;
}

std::vector<FieldColourView> colourViews(FieldKind kind, ViewContext const& context) {
  std::vector<FieldColourView> views;
  for (FieldStop const& stop : fieldColours(kind))
    views.push_back({colourText(stop.rgb << 8 | 0xff), display(stop.value, context.units.temperature)});
  if (kind != FieldKind::precipitation) return views;
  for (LegendStop const& stop : legendOf(RadarPalette::own))
    views.push_back({colourText(stop.rgba), display(stop.mmPerHour, context.units.precipitation)});
  return views;
}

std::string unitOf(FieldKind kind, Units const& units) {
  switch (kind) {
    case FieldKind::temperature:
      return std::string(symbol(units.temperature));
    case FieldKind::precipitation:
      return std::string(symbol(units.precipitation)) + "/h";
    case FieldKind::pressure:
      return std::string(symbol(units.pressure));
    case FieldKind::wind:
      return std::string(symbol(units.wind));
  }
  return {};
}

}  // namespace

FieldModel::FieldModel(InUse<ModelFieldService> service, QObject* parent)
    : QObject(parent),
      service_(std::move(service)),
      view_(new RecordModel(this)),
      colours_(new RecordListModel(this)) {
  view_->show(FieldView());
  colours_->show(std::vector<FieldColourView>());
}

FieldModel::~FieldModel() = default;

void FieldModel::show(ViewContext const& context) {
  context_.emplace(context);
  if (!isShown()) return;
  want();
  showAll();
}

void FieldModel::look(std::optional<FieldKind> kind, MapView const& view) {
  if (!canAsk() || !context_) return;
  bool const wasShown = isShown();
  kind_ = kind;
  looked_ = view;
  want();
  showAll();
  if (wasShown != isShown()) {
    Q_EMIT isShownChanged();
    Q_EMIT pictured();
  }
}

void FieldModel::setDark(bool isDark) {
  if (isDark == isDark_) return;
  isDark_ = isDark;
  Q_EMIT isDarkChanged();
  if (isShown()) want();
}

void FieldModel::choose(int hour) {
  if (!answer_ || !answer_->fields || hour < 0 || hour >= std::ssize(answer_->fields->times)) return;
  chosen_ = answer_->fields->times[static_cast<std::size_t>(hour)];
  want();
  showAll();
}

void FieldModel::want() {
  std::optional<FieldWish> wish;
  if (kind_ && context_) {
    // The same within the hour, so that nothing is drawn anew as time goes on.
    Instant const now = std::chrono::floor<std::chrono::hours>(context_->now);
    QColor const dark(0x14, 0x1b, 0x24), bright(0xfb, 0xfc, 0xfd);
    wish = FieldWish{*kind_,
                     looked_,
                     chosen_,
                     now,
                     {isDark_ ? bright : dark, isDark_ ? dark : bright, 12, context_->units}};
  }
  if (wish == wish_) return;
  wish_ = wish;
  if (!wish) answer_.reset();
  if (!layer_ && !wish) return;
  if (!layer_) {
    auto const listener = answerTo<FieldAnswer>(
        this, [](FieldModel& model, FieldAnswer answer) { model.take(std::move(answer)); });
    layer_ = std::make_unique<FieldLayer>(service_, listener);
  }
  layer_->want(wish_);
}

void FieldModel::take(FieldAnswer answer) {
  if (!wish_ || answer.wish != *wish_) return;
  answer_ = std::move(answer);
  showAll();
  Q_EMIT pictured();
  Q_EMIT settled();
}

MapLayerPictures FieldModel::pictures() const {
  if (!kind_ || !answer_ || answer_->picture.isNull() || answer_->wish.kind != *kind_) return {};
  MapView const& view = answer_->wish.view;
  return {{answer_->picture, pointAt(view, {0, 0}), pointAt(view, {double(view.width), double(view.height)}),
           isColoured(*kind_) ? kColoursOpacity : 1}};
}

void FieldModel::showAll() {
  if (!kind_ || !context_) return;
  FieldView shown;
  shown.title = context_->text(kTitles[static_cast<std::size_t>(*kind_)]);
  shown.unit = unitOf(*kind_, context_->units);
  shown.credit = context_->texts.format("desktop.map.model.source", std::string(kMaker));
  if (!answer_) {
    shown.note = context_->text("desktop.map.model.loading");
  } else if (answer_->failure) {
    shown.note = failureText(*answer_->failure, context_->texts);
  } else if (answer_->fields) {
    TimeWords const words(context_->texts, context_->fallback);
    shown.time = words.moment(answer_->fields->times[answer_->hour], context_->now);
    shown.hour = static_cast<double>(answer_->hour);
    shown.count = static_cast<double>(answer_->fields->times.size());
  }
  for (std::string const* const part : {&shown.title, &shown.time, &shown.note, &shown.credit}) {
    if (!part->empty()) shown.sentence += (shown.sentence.empty() ? "" : ", ") + *part;
  }
  view_->show(shown);
  colours_->show(colourViews(*kind_, *context_));
}

}  // namespace nimbara
