#include "platform/linux/dbus/tray/status_notifier_item.h"

#include "base/text/clean_text.h"
#include "platform/application_id.h"
#include "platform/linux/dbus/tray/tray_menu.h"

#include <utility>

namespace nimbara {

namespace {

constexpr char kInterface[] = "org.kde.StatusNotifierItem";
constexpr char kPath[] = "/StatusNotifierItem";
constexpr char const* kSignals[] = {"NewTitle", "NewIcon", "NewToolTip"};
constexpr std::size_t kLongestToken = 4096;
constexpr std::size_t kLongestSummary = 200;

}  // namespace

StatusNotifierItem::StatusNotifierItem(sdbus::IConnection& connection, Activated activated)
    : activated_(std::move(activated)),
      title_(kApplicationName),
      object_(sdbus::createObject(connection, kPath)) {
  describeFace();
  describeClicks();
  for (char const* const signal : kSignals) object_->registerSignal(signal).onInterface(kInterface);
  object_->registerSignal("NewStatus").onInterface(kInterface).withParameters<std::string>();
  object_->finishRegistration();
}

void StatusNotifierItem::describeFace() {
  auto const text = [this](char const* name, auto getter) {
    object_->registerProperty(name).onInterface(kInterface).withGetter(std::move(getter));
  };
  text("Category", [] { return std::string("ApplicationStatus"); });
  text("Id", [] { return std::string(kApplicationId); });
  text("Status", [] { return std::string("Active"); });
  text("Title", [this] { return title_; });
  // A named icon would hide the picture.
  text("IconName", [this] { return std::string(pictures_.empty() ? kApplicationId : ""); });
  text("IconPixmap", [this] {
    std::vector<Pixmap> pixmaps;
    pixmaps.reserve(pictures_.size());
    for (TrayPicture const& picture : pictures_)
      pixmaps.emplace_back(picture.side, picture.side, picture.argb);
    return pixmaps;
  });
  text("ToolTip", [this] { return Tooltip({}, {}, title_, markupEscaped(summary_)); });
  text("ItemIsMenu", [] { return false; });
  text("Menu", [] { return sdbus::ObjectPath(kTrayMenuPath); });
}

void StatusNotifierItem::describeClicks() {
  auto const click = [this](std::int32_t, std::int32_t) { activated_(takeToken()); };
  object_->registerMethod("Activate").onInterface(kInterface).implementedAs(click);
  object_->registerMethod("SecondaryActivate").onInterface(kInterface).implementedAs(click);
  // Hosts show the menu themselves.
  object_->registerMethod("ContextMenu")
      .onInterface(kInterface)
      .implementedAs([](std::int32_t, std::int32_t) {});
  object_->registerMethod("Scroll")
      .onInterface(kInterface)
      .implementedAs([](std::int32_t, std::string const&) {});
  object_->registerMethod("ProvideXdgActivationToken")
      .onInterface(kInterface)
      .implementedAs([this](std::string const& token) {
        token_ = token.size() <= kLongestToken ? token : std::string();
      });
}

std::string StatusNotifierItem::takeToken() {
  return std::exchange(token_, {});
}

void StatusNotifierItem::tell(char const* signal) const {
  object_->emitSignal(signal).onInterface(kInterface);
}

void StatusNotifierItem::show(TrayFace const& face) {
  std::string const summary = cleanText(face.summary, kLongestSummary, TextLines::one);
  bool const isOtherTitle =
      std::exchange(title_, cleanText(face.title, kLongestSummary, TextLines::one)) != title_;
  bool const isOtherSummary = std::exchange(summary_, summary) != summary;
  bool const isOtherPicture = std::exchange(pictures_, face.pictures) != face.pictures;
  if (isOtherTitle) tell("NewTitle");
  if (isOtherPicture) tell("NewIcon");
  if (isOtherTitle || isOtherSummary) tell("NewToolTip");
}

}  // namespace nimbara
