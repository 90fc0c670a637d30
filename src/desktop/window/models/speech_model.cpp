#include "desktop/window/models/speech_model.h"

#include "app/settings/settings_registry.h"
#include "app/words/brief/spoken_text.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

namespace nimbara {

namespace {

constexpr std::chrono::milliseconds kBetweenLooks{400};

}  // namespace

SpeechModel::SpeechModel(std::shared_ptr<Speech> speech, QObject* parent)
    : QObject(parent), speech_(std::move(speech)) {
  look_.setInterval(kBetweenLooks);
  connect(&look_, &QTimer::timeout, this, &SpeechModel::lookAgain);
}

void SpeechModel::show(EngineSnapshot const& snapshot) {
  if (snapshot.wording) wording_ = *snapshot.wording;
  bool const isOffered = snapshot.settings && snapshot.settings->settings.boolean(kSpeechSetting);
  if (isOffered == isOffered_) return;
  isOffered_ = isOffered;
  if (!isOffered && isSpeaking_) toggle({});
  Q_EMIT changed();
}

void SpeechModel::toggle(QString const& lines) {
  bool const ends = isSpeaking_;
  if (!ends && lines.isEmpty()) return;
  become(!ends);
  auto const done = [guard = QPointer<SpeechModel>(this)](bool isTaken) {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [guard, isTaken] {
          if (!guard) return;
          guard->isTaken_ = isTaken;
          if (!isTaken) guard->become(false);
        },
        Qt::QueuedConnection);
  };
  if (ends) return QThreadPool::globalInstance()->start([speech = speech_] { speech->stop(); });
  QThreadPool::globalInstance()->start(
      [speech = speech_, done, language = wording_.texts->language(),
       text = spokenText(lines.toStdString(), wording_.units, *wording_.texts)] {
        done(speech->say(text, language, SpeechUrgency::usual).has_value());
      });
}

void SpeechModel::become(bool isSpeaking) {
  if (isSpeaking == isSpeaking_) return;
  isSpeaking_ = isSpeaking;
  isTaken_ = false;
  isSpeaking ? look_.start() : look_.stop();
  Q_EMIT changed();
}

void SpeechModel::lookAgain() {
  if (isTaken_ && !speech_->isSpeaking()) become(false);
}

}  // namespace nimbara
