#include "platform/linux/dbus/secret_service.h"

#include "platform/application_id.h"
#include "platform/linux/dbus/bus.h"

#include <algorithm>
#include <map>

namespace nimbara {

namespace {

using Path = sdbus::ObjectPath;
using Paths = std::vector<Path>;
using Bytes = std::vector<std::uint8_t>;
using Attributes = std::map<std::string, std::string>;
/// Session, parameters of its encryption, the secret, and what kind of text that is.
using Secret = sdbus::Struct<Path, Bytes, Bytes, std::string>;

constexpr std::chrono::seconds kPatience{3};
constexpr char kSecrets[] = "org.freedesktop.secrets";
constexpr char kSecretsPath[] = "/org/freedesktop/secrets";
constexpr char kService[] = "org.freedesktop.Secret.Service";
constexpr char kCollection[] = "org.freedesktop.Secret.Collection";
constexpr char kItem[] = "org.freedesktop.Secret.Item";
constexpr std::string_view kNothing = "/";  ///< in place of a path

SecretFault faultOf(sdbus::Error const& error) {
  constexpr std::string_view kAbsences[] = {".ServiceUnknown", ".NameHasNoOwner", ".Disconnected",
                                            ".NoServer", ".FileNotFound"};
  std::string const& name = error.getName();
  if (name.ends_with(".IsLocked")) return SecretFault::locked;
  bool const isAbsent =
      name.find(".Spawn.") != std::string::npos ||
      std::ranges::any_of(kAbsences, [&](std::string_view ending) { return name.ends_with(ending); });
  return isAbsent ? SecretFault::absent : SecretFault::failed;
}

Attributes attributesOf(std::string const& id) {
  return {{"xdg:schema", kApplicationId}, {"id", id}};
}

/// One question with all its calls.
class Keyring {
 public:
  explicit Keyring(std::string const& sessionBus)
      : connection_(connectToSessionBus(sessionBus)), task_(*connection_, kPatience, {}) {}

  template <class... Results, class... Arguments>
  Result<std::tuple<Results...>, SecretFault> ask(std::string const& path, char const* interface,
                                                  char const* method, Arguments const&... arguments) {
    return askOf<Results...>(kSecrets, path, interface, method, arguments...);
  }

  Result<bool, SecretFault> isRunning() {
    auto const reply = askOf<bool>("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                   "NameHasOwner", std::string(kSecrets));
    if (!reply) return std::unexpected(reply.error());
    return std::get<0>(*reply);
  }

  /// Where new secrets go, if it is open.
  Result<Path, SecretFault> openCollection() {
    auto const alias = ask<Path>(kSecretsPath, kService, "ReadAlias", std::string("default"));
    if (!alias) return std::unexpected(alias.error());
    Path const& collection = std::get<0>(*alias);
    // A collection is made by asking the user.
    if (collection == kNothing) return std::unexpected(SecretFault::absent);
    auto const locked = ask<sdbus::Variant>(collection, "org.freedesktop.DBus.Properties", "Get",
                                            std::string(kCollection), std::string("Locked"));
    if (!locked) return std::unexpected(locked.error());
    if (std::get<0>(*locked).get<bool>()) return std::unexpected(SecretFault::locked);
    return collection;
  }

  /// Secrets cross the session's bus as they are: whoever could read them there could ask for them, too.
  Result<Path, SecretFault> session() {
    auto const opened = ask<sdbus::Variant, Path>(kSecretsPath, kService, "OpenSession", std::string("plain"),
                                                  sdbus::Variant(std::string()));
    if (!opened) return std::unexpected(opened.error());
    return std::get<1>(*opened);
  }

  /// Those of the identifier that are open.
  Result<Paths, SecretFault> items(std::string const& id) {
    auto const found = ask<Paths, Paths>(kSecretsPath, kService, "SearchItems", attributesOf(id));
    if (!found) return std::unexpected(found.error());
    auto const& [unlocked, locked] = *found;
    if (unlocked.empty()) return std::unexpected(locked.empty() ? SecretFault::missing : SecretFault::locked);
    return unlocked;
  }

 private:
  template <class... Results, class... Arguments>
  Result<std::tuple<Results...>, SecretFault> askOf(std::string const& name, std::string const& path,
                                                    char const* interface, char const* method,
                                                    Arguments const&... arguments) {
    auto const proxy = sdbus::createProxy(*connection_, name, path);
    proxy->finishRegistration();
    auto const reply = task_.call<Results...>(*proxy, interface, method, arguments...);
    if (!reply) return std::unexpected(SecretFault::failed);
    if (!*reply) return std::unexpected(faultOf(reply->error()));
    return **reply;
  }

  std::unique_ptr<sdbus::IConnection> connection_;
  BusTask task_;
};

/// `work` with a keyring; what the library throws is an answer like another.
template <class Work>
auto inKeyring(std::string const& sessionBus, Work work) -> decltype(work(std::declval<Keyring&>())) {
  try {
    Keyring keyring(sessionBus);
    return work(keyring);
  } catch (sdbus::Error const& error) {
    return std::unexpected(faultOf(error));
  }
}

}  // namespace

Result<void, SecretFault> SecretService::keep(std::string const& id, std::string const& label,
                                              std::string const& secret) {
  return inKeyring(sessionBus_, [&](Keyring& keyring) -> Result<void, SecretFault> {
    auto const isRunning = keyring.isRunning();
    if (!isRunning) return std::unexpected(isRunning.error());
    if (!*isRunning) return std::unexpected(SecretFault::absent);
    auto const collection = keyring.openCollection();
    if (!collection) return std::unexpected(collection.error());
    auto const session = keyring.session();
    if (!session) return std::unexpected(session.error());
    std::map<std::string, sdbus::Variant> const properties{
        {std::string(kItem) + ".Label", sdbus::Variant(label)},
        {std::string(kItem) + ".Attributes", sdbus::Variant(attributesOf(id))}};
    Secret const value(*session, Bytes(), Bytes(secret.begin(), secret.end()), "text/plain");
    auto const made =
        keyring.ask<Path, Path>(*collection, kCollection, "CreateItem", properties, value, true);
    if (!made) return std::unexpected(made.error());
    // A question for the user instead of an item.
    if (std::get<0>(*made) == kNothing) return std::unexpected(SecretFault::locked);
    return {};
  });
}

Result<std::string, SecretFault> SecretService::find(std::string const& id) {
  return inKeyring(sessionBus_, [&](Keyring& keyring) -> Result<std::string, SecretFault> {
    auto const items = keyring.items(id);
    if (!items) return std::unexpected(items.error());
    auto const session = keyring.session();
    if (!session) return std::unexpected(session.error());
    auto const told = keyring.ask<Secret>(items->front(), kItem, "GetSecret", *session);
    if (!told) return std::unexpected(told.error());
    Bytes const& value = std::get<0>(*told).get<2>();
    return std::string(value.begin(), value.end());
  });
}

Result<void, SecretFault> SecretService::forget(std::string const& id) {
  return inKeyring(sessionBus_, [&](Keyring& keyring) -> Result<void, SecretFault> {
    auto const items = keyring.items(id);
    if (!items) return std::unexpected(items.error());
    for (Path const& item : *items) {
      auto const prompt = keyring.ask<Path>(item, kItem, "Delete");
      if (!prompt) return std::unexpected(prompt.error());
      if (std::get<0>(*prompt) != kNothing) return std::unexpected(SecretFault::locked);
    }
    return {};
  });
}

}  // namespace nimbara
