// The documents of warnings, each fetched once from its address and kept until a week after its end, in
// memory and in a folder. Owned by the service that needs them. Any thread may ask; nobody waits for another
// document than the one that he asked for. Never throws.
#pragma once

#include "feeds/cap/cap_alert.h"
#include "feeds/cap/cap_files.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <span>
#include <stop_token>
#include <string>

namespace nimbara {

using CapDocument = std::shared_ptr<CapAlert const>;
using CapDocuments = std::map<std::string, CapDocument, std::less<>>;

/// What one pass may cost. The host's rest begins with a failure of the network or of the host itself, and is
/// everybody's.
struct CapFetchLimits {
  std::size_t requests = 12;
  std::chrono::milliseconds pass{15'000};
  std::chrono::milliseconds request{5'000};
  std::chrono::milliseconds hostRest{60'000};
};

/// How long a document that could not be had is not asked for: after its `failures`th failure, from 1.
std::chrono::minutes documentRest(int failures);

class CapStore {
 public:
  /// With an empty `directory` documents live as long as the store.
  CapStore(HttpClient& http, Clock const& clock, std::filesystem::path directory, CapFetchLimits limits = {});

  /// Those of the addresses that are kept or can be fetched within the limits, asked for in their order; what
  /// is missing may be asked for again in the next pass.
  CapDocuments documents(std::span<std::string const> addresses, std::stop_token const& stop = {});
  /// After a failure the address is not asked for a while.
  bool rests(std::string const& address) { return !mayAsk(address); }

 private:
  CapDocument kept(std::string const& address, bool& hasLooked);
  CapDocument fetched(std::string const& address, std::chrono::milliseconds timeout,
                      std::stop_token const& stop);
  CapDocument accept(std::string const& address, std::string const& body);
  void remember(std::string const& address, CapDocument const& document);
  bool mayAsk(std::string const& address);
  void rest(std::string const& address, bool isOfHost);
  void sweepNowAndThen();

  HttpClient& http_;
  Clock const& clock_;
  CapFetchLimits limits_;

  std::mutex mutex_;  // of all below; not held while somebody is asked
  std::condition_variable_any answered_;
  CapFiles files_;
  CapDocuments memory_;
  std::set<std::string> asking_;
  struct Rest {
    int failures = 0;
    std::chrono::steady_clock::time_point until;
  };
  std::map<std::string, Rest> rests_;  ///< by address
  std::chrono::steady_clock::time_point hostRestsUntil_;
  std::optional<std::chrono::steady_clock::time_point> sweptAt_;
};

}  // namespace nimbara
