// The user's keys for services. The settings have a reference where a key was typed; the key itself lies in a
// file that belongs to the user alone until the desktop's keyring, where that is open, has shown that it has
// it. Each key has a reference of its own, so what one stands for never changes: what the file has counts,
// else ask the keyring. Any thread; whoever adds or settles has the turn.
#pragma once

#include "base/enum_names.h"
#include "base/result.h"
#include "platform/secret_store.h"

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

class FileTurn;

enum class KeyPlace {
  settings,  ///< as it was typed: nothing could be written yet
  file,
  keyring,
  lost  ///< a reference that nobody knows
};
template <>
inline constexpr auto enumNames<KeyPlace> =
    std::to_array<std::string_view>({"settings", "file", "keyring", "lost"});
static_assert(enumNamesComplete(KeyPlace::lost));

/// What the file holds.
struct KeyFile {
  std::map<std::string, std::string> keys;  ///< by reference
  std::vector<std::string> inKeyring;       ///< references of those that may lie there
  std::vector<std::string> forgotten;       ///< the like of those that have to go from there
  bool operator==(KeyFile const&) const = default;
};

class ServiceKeys {
 public:
  /// Letters, digits and hyphens, which an address keeps as they are.
  static constexpr std::string_view kReferencePrefix = "nimbara-key-";
  static constexpr std::size_t kReferenceLength = kReferencePrefix.size() + 36;
  static bool isReference(std::string_view text);

  /// Without a maker, keys stay in the file.
  ServiceKeys(std::filesystem::path const& directory, MakeSecretStore keyring);

  /// Waits until no other of the user's programs has it.
  std::unique_ptr<FileTurn> turn() const;
  /// Brings a key to the disk and gives its reference; the error is a sentence.
  Result<std::string, std::string> add(std::string const& key) const;

  using Uses = std::map<std::string, std::string>;  ///< names of settings by reference
  enum class Others { stay, goAway };
  /// Moves keys that are in use from the file into the keyring; the others may go away, from the keyring as
  /// soon as that is open. What fails is tried again the next time.
  void settle(Uses const& inUse, Others others) const;

  /// What a reference stands for; any other text stands for itself. May ask the keyring, once for each. The
  /// error is a sentence without a full stop.
  Result<std::string, std::string> find(std::string const& text) const;
  /// Asks nobody.
  KeyPlace place(std::string const& text) const;
  /// There was never a key.
  bool isEmpty() const;

 private:
  Result<KeyFile, std::string> read() const;
  bool write(KeyFile const& file) const;
  SecretStore& keyring() const;
  static void dropOthers(KeyFile& file, Uses const& inUse);
  void move(KeyFile& file, Uses const& inUse) const;

  std::filesystem::path file_;
  MakeSecretStore make_;
  mutable std::mutex mutex_;  // guards the next two
  mutable std::unique_ptr<SecretStore> keyring_;
  mutable std::map<std::string, std::string> found_;
};

}  // namespace nimbara
