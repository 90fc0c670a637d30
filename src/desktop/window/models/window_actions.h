// Whom the window's models ask, and how an answer comes back to the window's thread.
#pragma once

#include "app/engine/engine_actions.h"
#include "app/engine/station_actions.h"
#include "app/services/in_use.h"
#include "desktop/imagery/radar/radar_sources.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>
#include <utility>

namespace nimbara {

/// Somebody who does nothing, for a window that only shows.
template <class Actions>
Actions& nobody() {
  static Actions idle;
  return idle;
}

class CloudService;
class ModelFieldService;

/// All of them outlive the window's models.
struct WindowActions {
  EngineActions& engine = nobody<EngineActions>();
  GlobeActions* globe = nullptr;  ///< without, the globe waits for nothing
  NotificationActions& notifications = nobody<NotificationActions>();
  StationActions& stations = nobody<StationActions>();
  RadarSources radar = {};               ///< without, the map has none
  InUse<CloudService> clouds = {};       ///< without, nobody can be asked for any
  InUse<ModelFieldService> fields = {};  ///< likewise
};

/// A listener for any thread: `show(model, answer)` runs later, on the window's, unless the model has gone.
template <class Answer, class Model, class Show>
auto answerTo(Model* model, Show show) {
  return [guard = QPointer<Model>(model), show = std::move(show)](Answer answer) {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [guard, show, answer = std::move(answer)] {
          if (guard) show(*guard, answer);
        },
        Qt::QueuedConnection);
  };
}

}  // namespace nimbara
