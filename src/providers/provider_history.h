// What became of the last attempts at each forecast provider, kept in a file of the cache folder, so that
// short-lived runs of the program know of each other's failures. Best effort: without a writable folder the
// memory lasts as long as the process.
#pragma once

#include "base/json/json.h"
#include "base/time/instant.h"
#include "model/provider_option.h"

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace nimbara {

struct ProviderRecord {
  std::optional<Instant> lastFailureAt;  ///< absent once an attempt succeeded
  std::optional<Instant> blockedUntil;   ///< the service asked not to be bothered before
  std::optional<std::string> lastError;  ///< its text and moment stay for diagnosis
  std::optional<Instant> lastErrorAt;
  std::optional<Instant> lastSuccessAt;

  bool operator==(ProviderRecord const&) const = default;
};

template <>
inline constexpr auto jsonFields<ProviderRecord> = FieldList{
    field("lastFailureAt", &ProviderRecord::lastFailureAt),
    field("blockedUntil", &ProviderRecord::blockedUntil), field("lastError", &ProviderRecord::lastError),
    field("lastErrorAt", &ProviderRecord::lastErrorAt),
    field("lastSuccessAt", &ProviderRecord::lastSuccessAt)};

class ProviderHistory {
 public:
  /// `file` empty: nothing is kept beyond the process.
  explicit ProviderHistory(std::filesystem::path file = {});

  using Records = std::map<std::string, ProviderRecord, std::less<>>;  ///< by the provider's case name

  Records records();
  ProviderRecord record(std::string_view provider);
  void noteFailure(std::string_view provider, Instant now, std::string error,
                   std::optional<Instant> blockedUntil = {});
  void noteSuccess(std::string_view provider, Instant now);
  /// Lets every provider be tried again, as when the network has come back.
  void forgetFailures();
  /// The like for one, whose failure was not its own. What went wrong stays for diagnosis.
  void forgiveFailure(std::string_view provider);

 private:
  template <class Change>
  void update(Change change);
  void reread();

  std::filesystem::path file_;
  std::mutex turn_;
  Records records_;
};

}  // namespace nimbara
