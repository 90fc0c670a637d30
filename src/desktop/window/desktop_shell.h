// The window's place in the desktop session: the tray, what closing the window does, and what launchers,
// notifications and later starts ask for. Lives on the window's thread; model and window outlive it. Never
// leaves the program running where nobody can reach it.
#pragma once

#include "desktop/core/desktop_options.h"
#include "desktop/window/models/desktop_model.h"
#include "platform/session/application_instance.h"
#include "platform/session/tray.h"

#include <QObject>
#include <QQuickWindow>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>

namespace nimbara {

class DesktopShell : public QObject {
  Q_OBJECT

 public:
  struct Surroundings {
    std::function<std::unique_ptr<Tray>(Tray::Listener)> makeTray;
    std::function<void(std::string)> choosePlace;
    /// How long a hidden window waits for a host that comes back, as one does that is replaced.
    std::chrono::milliseconds hostPatience{5000};
  };

  DesktopShell(DesktopModel& model, QQuickWindow& window, Surroundings surroundings);
  ~DesktopShell() override;

  /// The tray appears where there is one. For the time after the first frame.
  void begin();
  /// Any thread may call.
  void receive(ApplicationCall const& call);
  void receive(TrayEvent const& event);

  bool hasHost() const { return hasHost_; }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void answer(ApplicationCall const& call);
  void answer(TrayEvent const& event);
  void apply(DesktopOptions const& options);
  void choose(std::string const& key, std::string const& activationToken);
  void hostIs(bool isThere);
  void toggle(std::string const& activationToken);
  void raise(std::string const& activationToken);
  void showFace();

  DesktopModel& model_;
  QQuickWindow& window_;
  Surroundings surroundings_;
  bool hasHost_ = false;
  bool isEnding_ = false;  ///< the menu, a key or the end of the session: closing hides no more
  TrayView shown_;
  QTimer hostGone_;
  std::unique_ptr<Tray> tray_;
};

}  // namespace nimbara
