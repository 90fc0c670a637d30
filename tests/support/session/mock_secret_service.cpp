#include "support/session/mock_secret_service.h"

#include <algorithm>

namespace nimbara::test {

namespace {

using Path = sdbus::ObjectPath;

constexpr char kService[] = "org.freedesktop.Secret.Service";
constexpr char kCollection[] = "org.freedesktop.Secret.Collection";
constexpr char kItem[] = "org.freedesktop.Secret.Item";
constexpr char kCollectionPath[] = "/org/freedesktop/secrets/collection/login";
constexpr char kSession[] = "/org/freedesktop/secrets/session/1";

sdbus::Error locked() {
  return sdbus::Error("org.freedesktop.Secret.Error.IsLocked", "locked");
}

}  // namespace

MockSecretService::MockSecretService(PrivateBus const& bus, KeyringScript script)
    : script_(std::move(script)),
      connection_(sdbus::createSessionBusConnectionWithAddress(bus.address())),
      service_(sdbus::createObject(*connection_, "/org/freedesktop/secrets")),
      collection_(sdbus::createObject(*connection_, kCollectionPath)) {
  describeService();
  describeCollection();
  // As many as a test may want.
  for (char const* const name : {"/1", "/2", "/3"}) {
    std::string const path = kCollectionPath + std::string(name);
    describeItem(Path(path), items_[path]);
  }
  connection_->enterEventLoopAsync();
  connection_->requestName("org.freedesktop.secrets");
}

MockSecretService::~MockSecretService() {
  connection_->leaveEventLoop();
}

void MockSecretService::lock(bool isLocked) {
  std::lock_guard const lock(mutex_);
  script_.isLocked = isLocked;
}

std::vector<std::string> MockSecretService::items() {
  std::lock_guard const lock(mutex_);
  std::vector<std::string> all;
  for (auto const& [path, item] : items_) {
    auto const& bytes = item.secret.get<2>();
    if (!item.isDeleted)
      all.push_back(item.label + "|" + item.attributes.at("id") + "|" +
                    std::string(bytes.begin(), bytes.end()));
  }
  return all;
}

void MockSecretService::describeService() {
  service_->registerMethod("ReadAlias").onInterface(kService).implementedAs([this](std::string const&) {
    return Path(script_.hasCollection ? kCollectionPath : "/");
  });
  service_->registerMethod("OpenSession")
      .onInterface(kService)
      .implementedAs([](std::string const& algorithm, sdbus::Variant const&) {
        if (algorithm != "plain") throw sdbus::Error("org.freedesktop.DBus.Error.NotSupported", algorithm);
        return std::tuple(sdbus::Variant(std::string()), Path(kSession));
      });
  service_->registerMethod("SearchItems")
      .onInterface(kService)
      .implementedAs([this](Attributes const& asked) {
        std::lock_guard const lock(mutex_);
        Paths found;
        for (auto const& [path, item] : items_) {
          if (!item.isDeleted && item.attributes == asked) found.emplace_back(path);
        }
        return script_.isLocked ? std::tuple(Paths(), found) : std::tuple(found, Paths());
      });
  for (char const* const method : {"Unlock", "Lock"})
    service_->registerMethod(method).onInterface(kService).implementedAs([this](Paths const&) {
      ++prompts_;
      return std::tuple(Paths(), Path("/prompt"));
    });
  service_->finishRegistration();
}

void MockSecretService::describeCollection() {
  collection_->registerProperty("Locked").onInterface(kCollection).withGetter([this] {
    std::lock_guard const lock(mutex_);
    return script_.isLocked;
  });
  collection_->registerMethod("CreateItem")
      .onInterface(kCollection)
      .implementedAs([this](Properties const& properties, Secret const& secret, bool const&) {
        auto const made = create(properties, secret);
        return std::tuple(made[0], made[1]);
      });
  collection_->finishRegistration();
}

/// The item and the question for the user.
MockSecretService::Paths MockSecretService::create(Properties const& properties, Secret const& secret) {
  std::lock_guard const lock(mutex_);
  if (script_.isLocked) throw locked();
  if (!script_.createError.empty()) throw sdbus::Error(script_.createError, "no");
  if (script_.asksUser) return {Path("/"), Path("/prompt")};
  auto const attributes = properties.at(std::string(kItem) + ".Attributes").get<Attributes>();
  auto place =
      std::ranges::find_if(items_, [&](auto const& each) { return each.second.attributes == attributes; });
  if (place == items_.end())
    place = std::ranges::find_if(items_, [](auto const& each) { return each.second.isDeleted; });
  auto& [path, item] = *place;
  item.label = properties.at(std::string(kItem) + ".Label").get<std::string>();
  item.attributes = attributes;
  item.secret = secret;
  item.isDeleted = false;
  return {Path(path), Path("/")};
}

void MockSecretService::describeItem(Path const& path, Item& item) {
  item.object = sdbus::createObject(*connection_, path);
  item.object->registerMethod("GetSecret")
      .onInterface(kItem)
      .implementedAs([this, &item](Path const& session) {
        std::lock_guard const lock(mutex_);
        if (script_.isLocked) throw locked();
        if (session != kSession) throw sdbus::Error("org.freedesktop.Secret.Error.NoSession", "none");
        return item.secret;
      });
  item.object->registerMethod("Delete").onInterface(kItem).implementedAs([this, &item] {
    std::lock_guard const lock(mutex_);
    item.isDeleted = true;
    return Path("/");
  });
  item.object->finishRegistration();
}

}  // namespace nimbara::test
