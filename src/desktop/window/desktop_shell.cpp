#include "desktop/window/desktop_shell.h"

#include "desktop/window/painting/tray_pictures.h"
#include "desktop/window/x11_activation.h"
#include "platform/application_id.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <utility>

namespace nimbara {

namespace {

/// What the desktop file's actions mean, as a command line would say it.
std::vector<std::string> argumentsOf(ApplicationCall const& call) {
  if (call.action == "start") return call.arguments;
  if (call.action == "refresh") return {"--refresh"};
  auto const page = enumFromName<DesktopPage>(call.action);
  return page ? std::vector<std::string>{"--page", call.action} : std::vector<std::string>{};
}

}  // namespace

DesktopShell::DesktopShell(DesktopModel& model, QQuickWindow& window, Surroundings surroundings)
    : model_(model), window_(window), surroundings_(std::move(surroundings)) {
  hostGone_.setSingleShot(true);
  hostGone_.setInterval(surroundings_.hostPatience);
  connect(&hostGone_, &QTimer::timeout, this, [this] {
    if (!window_.isVisible()) window_.show();
  });
  // The window's events come by here as well.
  QCoreApplication::instance()->installEventFilter(this);
}

DesktopShell::~DesktopShell() {
  tray_.reset();
}

void DesktopShell::begin() {
  if (tray_ || !surroundings_.makeTray) return;
  tray_ = surroundings_.makeTray([this](TrayEvent const& event) { receive(event); });
  connect(&model_, &DesktopModel::shown, this, &DesktopShell::showFace);
  showFace();
}

void DesktopShell::receive(ApplicationCall const& call) {
  QMetaObject::invokeMethod(this, [this, call] { answer(call); }, Qt::QueuedConnection);
}

void DesktopShell::receive(TrayEvent const& event) {
  QMetaObject::invokeMethod(this, [this, event] { answer(event); }, Qt::QueuedConnection);
}

void DesktopShell::answer(ApplicationCall const& call) {
  if (auto const options = parseDesktopOptions(argumentsOf(call), {})) apply(*options);
  raise(call.activationToken);
}

void DesktopShell::apply(DesktopOptions const& options) {
  if (options.page) window_.setProperty("page", viewName(enumName(*options.page)));
  if (options.theme) window_.setProperty("theme", viewName(enumName(*options.theme)));
  if (options.size) window_.resize(options.size->width, options.size->height);
  if (!options.place.empty() && surroundings_.choosePlace) surroundings_.choosePlace(options.place);
  if (options.refresh) model_.refresh();
}

void DesktopShell::answer(TrayEvent const& event) {
  switch (event.kind) {
    case TrayEvent::Kind::hostCame:
      return hostIs(true);
    case TrayEvent::Kind::hostLeft:
      return hostIs(false);
    case TrayEvent::Kind::activated:
      return toggle(event.activationToken);
    case TrayEvent::Kind::chosen:
      return choose(event.key, event.activationToken);
  }
}

void DesktopShell::choose(std::string const& key, std::string const& activationToken) {
  if (key == kTrayShow) raise(activationToken);
  if (key == kTrayRefresh) model_.refresh();
  if (key == kTrayQuit) QCoreApplication::quit();
}

void DesktopShell::hostIs(bool isThere) {
  hasHost_ = isThere;
  if (isThere) {
    hostGone_.stop();
  } else if (!window_.isVisible()) {
    hostGone_.start();
  }
}

void DesktopShell::toggle(std::string const& activationToken) {
  if (window_.isVisible() && window_.isActive() && hasHost_) {
    window_.hide();
  } else {
    raise(activationToken);
  }
}

void DesktopShell::raise(std::string const& activationToken) {
  // Where the toolkit looks for it.
  if (!activationToken.empty()) qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activationToken));
  if (window_.windowStates().testFlag(Qt::WindowMinimized)) {
    window_.setWindowStates(window_.windowStates() & ~Qt::WindowMinimized);
  }
  window_.show();
  window_.raise();
  if (!activateOnX11(window_, activationToken)) window_.requestActivate();
}

bool DesktopShell::eventFilter(QObject* watched, QEvent* event) {
  // The toolkit ends by closing the windows, and one that only hides would keep the program running.
  if (event->type() == QEvent::Quit && watched == QCoreApplication::instance()) isEnding_ = true;
  bool const hides = watched == &window_ && event->type() == QEvent::Close && !isEnding_ && hasHost_ &&
                     model_.closesToTray();
  if (!hides) return QObject::eventFilter(watched, event);
  event->ignore();
  window_.hide();
  return true;
}

void DesktopShell::showFace() {
  TrayView view = model_.tray();
  if (view == shown_) return;
  shown_ = std::move(view);
  tray_->show({kApplicationName, shown_.summary, trayPictures(shown_), shown_.menu});
}

}  // namespace nimbara
