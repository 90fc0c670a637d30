#include "app/settings/service_keys.h"

#include "base/files/file.h"
#include "base/files/file_turn.h"
#include "base/files/private_folders.h"
#include "base/json/json_codec.h"
#include "base/uuid.h"

#include <algorithm>

namespace nimbara {

template <>
inline constexpr auto jsonFields<KeyFile> =
    FieldList{fieldOr("keys", &KeyFile::keys), fieldOr("inKeyring", &KeyFile::inKeyring),
              fieldOr("forgotten", &KeyFile::forgotten)};

namespace {

constexpr char kFileName[] = "keys.json";
constexpr std::size_t kLargest = std::size_t{256} << 10;

std::string_view sentenceOf(SecretFault fault) {
  switch (fault) {
    case SecretFault::absent:
      return "the key is in the desktop's keyring, which cannot be reached";
    case SecretFault::locked:
      return "the key is in the desktop's keyring, which is locked";
    case SecretFault::missing:
      return "the desktop's keyring no longer has the key; enter it again";
    case SecretFault::failed:
      break;
  }
  return "the desktop's keyring did not respond";
}

/// Nothing is kept there, any more or ever; nobody who could say so is absent.
template <class Answer>
bool isNowhere(Answer const& answer) {
  return !answer && answer.error() == SecretFault::missing;
}

bool has(std::vector<std::string> const& references, std::string const& reference) {
  return std::ranges::count(references, reference) > 0;
}

/// Processes that were forked from one may draw the same.
std::string unused(KeyFile const& file) {
  while (true) {
    std::string reference = std::string(ServiceKeys::kReferencePrefix) + Uuid::random().text();
    bool const isUsed = file.keys.contains(reference) || has(file.inKeyring, reference);
    if (!isUsed && !has(file.forgotten, reference)) return reference;
  }
}

}  // namespace

bool ServiceKeys::isReference(std::string_view text) {
  return text.size() == kReferenceLength && text.starts_with(kReferencePrefix) &&
         Uuid::parse(text.substr(kReferencePrefix.size()));
}

ServiceKeys::ServiceKeys(std::filesystem::path const& directory, MakeSecretStore keyring)
    : file_(directory / kFileName), make_(std::move(keyring)) {}

std::unique_ptr<FileTurn> ServiceKeys::turn() const {
  makePrivateFolders(file_.parent_path());
  auto turn = std::make_unique<FileTurn>(file_.string() + ".lock", "keys");
  while (!turn->isHeld()) turn->wait({});
  return turn;
}

bool ServiceKeys::isEmpty() const {
  std::error_code error;
  return !std::filesystem::exists(file_, error) && !error;
}

Result<KeyFile, std::string> ServiceKeys::read() const {
  if (isEmpty()) return KeyFile{};
  auto const content = readFile(file_, kLargest);
  if (!content) return std::unexpected(content.error());
  auto file = decodeJson<KeyFile>(*content);
  // Why is not said: what stands there is secret.
  if (!file) return std::unexpected("the file " + file_.string() + " is damaged");
  return std::move(*file);
}

bool ServiceKeys::write(KeyFile const& file) const {
  return writeFileAtomically(file_, encodeJson(file)).has_value();
}

SecretStore& ServiceKeys::keyring() const {
  std::lock_guard const lock(mutex_);
  if (!keyring_) keyring_ = make_();
  return *keyring_;
}

Result<std::string, std::string> ServiceKeys::add(std::string const& key) const {
  auto file = read();
  if (!file) return std::unexpected(file.error());
  // From an attempt whose settings were not written, or for another service.
  auto const same = std::ranges::find(file->keys, key, [](auto const& entry) { return entry.second; });
  if (same != file->keys.end()) return same->first;
  std::string reference = unused(*file);
  file->keys[reference] = key;
  if (auto const written = writeFileAtomically(file_, encodeJson(*file)); !written)
    return std::unexpected(written.error());
  return reference;
}

void ServiceKeys::settle(Uses const& inUse, Others others) const {
  auto const before = read();
  if (!before || isEmpty()) return;
  KeyFile file = *before;
  if (others == Others::goAway) dropOthers(file, inUse);
  bool const isSettled = file.keys.empty() && file.forgotten.empty();
  // Before what the keyring keeps is forgotten there, the file says that it has to be.
  if (file != *before && !write(file)) return;
  if (!make_ || isSettled || !isNowhere(keyring().find("none"))) return;
  KeyFile const asked = file;
  std::erase_if(file.forgotten, [this](std::string const& reference) {
    auto const forgotten = keyring().forget(reference);
    return forgotten || isNowhere(forgotten);
  });
  move(file, inUse);
  if (file != asked) write(file);
}

void ServiceKeys::dropOthers(KeyFile& file, Uses const& inUse) {
  std::erase_if(file.keys, [&](auto const& entry) { return !inUse.contains(entry.first); });
  std::erase_if(file.inKeyring, [&](std::string const& reference) {
    if (inUse.contains(reference)) return false;
    file.forgotten.push_back(reference);
    return true;
  });
}

void ServiceKeys::move(KeyFile& file, Uses const& inUse) const {
  KeyFile marked = file;
  for (auto const& [reference, key] : file.keys) {
    if (inUse.contains(reference) && !has(marked.inKeyring, reference)) marked.inKeyring.push_back(reference);
  }
  // First it is known that they may lie there.
  if (marked != file && !write(marked)) return;
  file = marked;
  for (auto const& [reference, key] : marked.keys) {
    auto const setting = inUse.find(reference);
    if (setting == inUse.end()) continue;
    auto const kept = keyring().keep(reference, "Nimbara: " + setting->second, key);
    // Its word for it is not enough: what the file loses now is nowhere else.
    if (kept && keyring().find(reference) == key) {
      file.keys.erase(reference);
    } else if (!kept && kept.error() != SecretFault::failed) {
      std::erase(file.inKeyring, reference);
    }
  }
}

Result<std::string, std::string> ServiceKeys::find(std::string const& text) const {
  if (!isReference(text)) return text;
  {
    std::lock_guard const lock(mutex_);
    if (auto const found = found_.find(text); found != found_.end()) return found->second;
  }
  auto const file = read();
  if (!file) return std::unexpected(file.error());
  auto const entry = file->keys.find(text);
  auto key = entry != file->keys.end()     ? Result<std::string, SecretFault>(entry->second)
             : !has(file->inKeyring, text) ? std::unexpected(SecretFault::missing)
             : !make_                      ? std::unexpected(SecretFault::absent)
                                           : keyring().find(text);
  if (!key) return std::unexpected(std::string(sentenceOf(key.error())));
  std::lock_guard const lock(mutex_);
  return found_[text] = *key;
}

KeyPlace ServiceKeys::place(std::string const& text) const {
  if (!isReference(text)) return KeyPlace::settings;
  auto const file = read().value_or(KeyFile{});
  if (file.keys.contains(text)) return KeyPlace::file;
  return has(file.inKeyring, text) ? KeyPlace::keyring : KeyPlace::lost;
}

}  // namespace nimbara
