#include "desktop/window/models/map/radar_model.h"

#include "desktop/imagery/radar/radar_layer.h"
#include "desktop/window/models/window_actions.h"
#include "desktop/window/words.h"

#include <algorithm>

namespace nimbara {

namespace {

using State = RadarProgress::State;

constexpr WordRow kWords[] = {
    {"title", "desktop.map.radar"},         {"play", "desktop.map.radar.play"},
    {"pause", "desktop.map.radar.pause"},   {"earlier", "desktop.map.radar.earlier"},
    {"later", "desktop.map.radar.later"},   {"times", "desktop.map.radar.times"},
    {"now", "desktop.map.radar.now"},       {"forecast", "desktop.map.radar.forecast"},
    {"legend", "desktop.map.radar.legend"}, {"hint", "desktop.map.radar.hint"},
};

/// A picture that is too old to be taken for the present is thinner.
constexpr double kOldOpacity = 0.45;

}  // namespace

RadarModel::RadarModel(RadarSources sources, QObject* parent)
    : QObject(parent),
      sources_(std::move(sources)),
      words_(new RecordModel(this)),
      view_(new RecordModel(this)),
      steps_(new RecordListModel(this)),
      colours_(new RecordListModel(this)) {
  view_->show(RadarView());
  patience_.setSingleShot(true);
  patience_.setInterval(kPatienceMs);
  connect(&patience_, &QTimer::timeout, this, &RadarModel::showAll);
  connect(&play_, &QTimer::timeout, this, &RadarModel::playOn);
}

RadarModel::~RadarModel() = default;

void RadarModel::show(ViewContext const& context) {
  context_.emplace(context);
  showWords(*words_, kWords, context.texts);
  if (isShown_ && !patience_.isActive()) showAll();
}

void RadarModel::look(std::optional<MapView> const& view) {
  if (!sources_ || view == looked_) return;
  looked_ = view;
  isWaiting_ = view.has_value();
  if (!view) stop();
  if (isShown_ != view.has_value()) {
    isShown_ = view.has_value();
    if (!isShown_ && layer_) layer_->rest();
    Q_EMIT isShownChanged();
    Q_EMIT pictured();
  }
  want();
}

void RadarModel::want() {
  if (!looked_) return;
  if (!layer_) {
    layer_ = std::make_unique<RadarLayer>(
        sources_, answerTo<RadarProgress>(
                      this, [](RadarModel& model, RadarProgress const& progress) { model.take(progress); }));
  }
  layer_->want({*looked_, chosen_, wantsAll_, isPlaying()});
}

void RadarModel::take(RadarProgress progress) {
  isWaiting_ = false;
  bool const isOther = progress.source != progress_.source;
  progress_ = std::move(progress);
  bool const isThere = std::ranges::any_of(progress_.frames, [this](RadarProgress::Frame const& each) {
    return chosen_ && each.frame.time == *chosen_;
  });
  if (!isThere && !progress_.frames.empty()) chosen_.reset();
  if (isOther || progress_.state == State::none || progress_.state == State::failed) pictures_.clear();
  showFrame();
  // A map that was moved keeps its words until they are known to be others.
  bool const isLoading = progress_.state == State::loading && !pictures_.empty();
  if (isLoading && !patience_.isActive()) patience_.start();
  if (!isLoading) {
    patience_.stop();
    showAll();
  }
  if (hasSettled()) Q_EMIT settled();
}

void RadarModel::showFrame() {
  if (progress_.frames.empty() || !layer_) {
    Q_EMIT pictured();
    return;
  }
  auto const& frame = progress_.frames[frameOf(progress_, chosen_)];
  if (frame.isLoaded) {
    if (auto picture = layer_->picture(frame.frame.time)) {
      auto const& newest = progress_.frames[newestOf(progress_)].frame;
      bool const isTooOld = context_ && isOld(newest, supplierOf(progress_.source), context_->now);
      pictures_ = {
          {std::move(picture->picture), picture->northWest, picture->southEast, isTooOld ? kOldOpacity : 1}};
      shown_ = frame.frame.time;
    }
  } else if (shown_ != frame.frame.time) {
    pictures_.clear();  // one of another time would be taken for this one
  }
  Q_EMIT pictured();
}

void RadarModel::showAll() {
  if (!context_) return;
  view_->show(radarView(progress_, chosen_, *context_));
  steps_->show(radarStepViews(progress_));
  colours_->show(radarColourViews(progress_, chosen_, *context_));
}

bool RadarModel::hasSettled() const {
  return !isShown_ || (!isWaiting_ && progress_.state != State::waiting && progress_.state != State::loading);
}

void RadarModel::chooseFrame(std::size_t frame) {
  bool const isNewest = frame == newestOf(progress_) && !isPlaying();
  chosen_ = isNewest ? std::nullopt : std::optional(progress_.frames[frame].frame.time);
  wantsAll_ = true;
  want();
  showFrame();
  patience_.stop();
  showAll();
}

void RadarModel::choose(int frame) {
  if (progress_.frames.empty()) return;
  int const last = static_cast<int>(progress_.frames.size()) - 1;
  chooseFrame(static_cast<std::size_t>(std::clamp(frame, 0, last)));
}

void RadarModel::step(int by) {
  stop();
  choose(static_cast<int>(frameOf(progress_, chosen_)) + by);
}

void RadarModel::togglePlay() {
  if (isPlaying()) {
    stop();
    return;
  }
  if (!isShown_ || progress_.frames.size() < 2) return;
  wantsAll_ = true;
  play_.start(kFrameMs);
  want();
  Q_EMIT isPlayingChanged();
}

void RadarModel::stop() {
  if (!isPlaying()) return;
  play_.stop();
  if (isShown_) want();  // where it stands still, it is to be sharp
  Q_EMIT isPlayingChanged();
}

/// From one frame that is there to the next; the last stays a while.
void RadarModel::playOn() {
  std::size_t const now = frameOf(progress_, chosen_);
  std::size_t const next = nextLoaded(progress_, now);
  if (progress_.frames.size() < 2) {
    stop();
  } else if (next != now) {
    chooseFrame(next);
  }
  std::size_t const after = nextLoaded(progress_, next);
  if (after <= next) return play_.setInterval(kLastFrameMs);
  auto const step = progress_.frames[after].frame.time - progress_.frames[next].frame.time;
  play_.setInterval(
      std::clamp(static_cast<int>(kFrameMs * step / std::chrono::minutes(10)), kFrameMs / 2, kFrameMs));
}

}  // namespace nimbara
