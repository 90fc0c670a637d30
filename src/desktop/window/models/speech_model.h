// Whether the brief can be heard, and its being read out, on the window's thread. Speech itself is asked for
// on another one, since its server may have to start first. Owned by the window's model.
#pragma once

#include "app/state/engine_snapshot.h"
#include "platform/session/speech.h"

#include <QObject>
#include <QTimer>
#include <memory>
#include <string>

namespace nimbara {

class SpeechModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool isOffered READ isOffered NOTIFY changed)
  Q_PROPERTY(bool isSpeaking READ isSpeaking NOTIFY changed)

 public:
  SpeechModel(std::shared_ptr<Speech> speech, QObject* parent);

  void show(EngineSnapshot const& snapshot);

  /// The user has switched it on.
  bool isOffered() const { return isOffered_; }
  bool isSpeaking() const { return isSpeaking_; }

  /// Reads these lines out, or ends that where something is being read. Where nobody reads it is silent.
  Q_INVOKABLE void toggle(QString const& lines);

 Q_SIGNALS:
  void changed();

 private:
  void become(bool isSpeaking);
  void lookAgain();

  std::shared_ptr<Speech> speech_;
  Wording wording_;
  QTimer look_;  ///< runs while something is read, to notice its end
  bool isOffered_ = false;
  bool isSpeaking_ = false;
  bool isTaken_ = false;  ///< the server has the text
};

}  // namespace nimbara
