#include "feeds/cap/cap_store.h"

#include "feeds/cap/cap_reader.h"

namespace nimbara {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t kMostInMemory = 64;
constexpr std::size_t kMostRests = 1000;
constexpr auto kKeptAfterEnd = std::chrono::days(7);
/// For messages that name no end, or one that nobody lives to see.
constexpr auto kLongestKept = std::chrono::days(60);
constexpr auto kSweepInterval = 1h;

std::optional<Instant> endOf(CapAlert const& alert) {
  std::optional<Instant> end;
  for (CapInfo const& info : alert.infos) end = std::max(end, info.expires);
  return end;
}

Instant keptUntil(CapAlert const& alert, Instant now) {
  return std::min<Instant>(endOf(alert).value_or(now) + kKeptAfterEnd, now + kLongestKept);
}

}  // namespace

/// The last is a round of the sources.
std::chrono::minutes documentRest(int failures) {
  if (failures < 1) return 0min;
  return failures == 1 ? 1min : failures == 2 ? 5min : 10min;
}

CapStore::CapStore(HttpClient& http, Clock const& clock, std::filesystem::path directory,
                   CapFetchLimits limits)
    : http_(http), clock_(clock), limits_(limits), files_(std::move(directory)) {}

CapDocuments CapStore::documents(std::span<std::string const> addresses, std::stop_token const& stop) {
  sweepNowAndThen();
  auto const end = clock_.steadyNow() + limits_.pass;
  std::size_t requests = 0;
  bool hasLooked = false;
  CapDocuments found;
  for (std::string const& address : addresses) {
    if (stop.stop_requested()) break;
    if (found.contains(address)) continue;
    CapDocument document = kept(address, hasLooked);
    auto const left = std::chrono::floor<std::chrono::milliseconds>(end - clock_.steadyNow());
    if (!document && requests < limits_.requests && left > 0ms && mayAsk(address)) {
      ++requests;
      document = fetched(address, std::min(left, limits_.request), stop);
    }
    if (document) found.emplace(address, std::move(document));
  }
  return found;
}

/// The folder is looked at once a pass for what other processes have kept.
CapDocument CapStore::kept(std::string const& address, bool& hasLooked) {
  std::lock_guard const lock(mutex_);
  if (auto const found = memory_.find(address); found != memory_.end()) return found->second;
  if (!files_.isKnown(address) && !std::exchange(hasLooked, true)) files_.look();
  auto const file = files_.read(address);
  if (!file) return nullptr;
  auto alert = parseCap(*file);
  if (!alert) return nullptr;
  auto document = std::make_shared<CapAlert const>(std::move(*alert));
  remember(address, document);
  return document;
}

/// Whoever comes while another one asks for the same document waits for that one's answer.
CapDocument CapStore::fetched(std::string const& address, std::chrono::milliseconds timeout,
                              std::stop_token const& stop) {
  constexpr int kOk = 200;
  {
    std::unique_lock lock(mutex_);
    if (asking_.contains(address)) {
      answered_.wait(lock, stop, [&] { return !asking_.contains(address); });
      auto const found = memory_.find(address);
      return found == memory_.end() ? nullptr : found->second;
    }
    asking_.insert(address);
  }
  auto const answer = http_.get({address,
                                 {{"Accept", "application/cap+xml, application/xml, application/json;q=0.5"}},
                                 timeout,
                                 kLongestCapMessage},
                                stop);
  CapDocument document = answer && answer->status == kOk ? accept(address, answer->body) : nullptr;
  std::lock_guard const lock(mutex_);
  if (!document && !stop.stop_requested()) rest(address, !answer || answer->status >= 500);
  asking_.erase(address);
  answered_.notify_all();
  return document;
}

CapDocument CapStore::accept(std::string const& address, std::string const& body) {
  auto alert = parseCap(body);
  if (!alert) return nullptr;
  auto document = std::make_shared<CapAlert const>(std::move(*alert));
  std::lock_guard const lock(mutex_);
  rests_.erase(address);
  files_.keep(address, body, keptUntil(*document, clock_.now()));
  remember(address, document);
  return document;
}

/// With the lock held.
void CapStore::remember(std::string const& address, CapDocument const& document) {
  if (memory_.size() >= kMostInMemory) memory_.clear();
  memory_[address] = document;
}

bool CapStore::mayAsk(std::string const& address) {
  std::lock_guard const lock(mutex_);
  auto const now = clock_.steadyNow();
  auto const found = rests_.find(address);
  return now >= hostRestsUntil_ && (found == rests_.end() || now >= found->second.until);
}

/// With the lock held.
void CapStore::rest(std::string const& address, bool isOfHost) {
  auto const now = clock_.steadyNow();
  if (isOfHost) hostRestsUntil_ = now + limits_.hostRest;
  if (rests_.size() >= kMostRests && !rests_.contains(address)) rests_.clear();
  Rest& rest = rests_[address];
  rest.until = now + documentRest(++rest.failures);
}

void CapStore::sweepNowAndThen() {
  std::lock_guard const lock(mutex_);
  auto const now = clock_.steadyNow();
  if (sweptAt_ && now - *sweptAt_ < kSweepInterval) return;
  sweptAt_ = now;
  files_.sweep(clock_.now());
}

}  // namespace nimbara
