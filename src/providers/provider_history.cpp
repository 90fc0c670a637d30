#include "providers/provider_history.h"

#include "base/files/file.h"
#include "base/files/file_lock.h"
#include "base/json/json_codec.h"

#include <algorithm>
#include <utility>

namespace nimbara {

template Result<ProviderRecord, DecodeError> decodeJson(std::string_view);

namespace {

constexpr std::size_t kLargestFile = std::size_t{64} << 10;
/// A run of successes is written down this often at most: it matters to nobody but the diagnosis.
constexpr std::chrono::seconds kSuccessSpacing{60};

}  // namespace

ProviderHistory::ProviderHistory(std::filesystem::path file) : file_(std::move(file)) {}

void ProviderHistory::reread() {
  if (file_.empty()) return;
  auto const bytes = readFile(file_, kLargestFile);
  if (!bytes) return;
  if (auto records = decodeJson<Records>(*bytes)) records_ = std::move(*records);
}

template <class Change>
void ProviderHistory::update(Change change) {
  std::lock_guard const turn(turn_);
  std::optional<FileLock> lock;
  if (!file_.empty()) lock.emplace(std::filesystem::path(file_) += ".lock");
  reread();
  if (!change(records_) || file_.empty()) return;
  JsonWriter writer;
  writer.beginObject();
  for (auto const& [provider, record] : records_) writer.member(provider, record);
  writer.endObject();
  std::ignore = writeFileAtomically(file_, writer.take());
}

ProviderHistory::Records ProviderHistory::records() {
  std::lock_guard const turn(turn_);
  reread();
  return records_;
}

ProviderRecord ProviderHistory::record(std::string_view provider) {
  auto const all = records();
  auto const found = all.find(provider);
  return found == all.end() ? ProviderRecord{} : found->second;
}

void ProviderHistory::noteFailure(std::string_view provider, Instant now, std::string error,
                                  std::optional<Instant> blockedUntil) {
  update([&](Records& records) {
    ProviderRecord& record = records[std::string(provider)];
    record.lastFailureAt = record.lastErrorAt = now;
    record.lastError = std::move(error);
    record.blockedUntil = blockedUntil;
    return true;
  });
}

void ProviderHistory::noteSuccess(std::string_view provider, Instant now) {
  update([&](Records& records) {
    ProviderRecord& record = records[std::string(provider)];
    bool const recently =
        record.lastSuccessAt && *record.lastSuccessAt <= now && now - *record.lastSuccessAt < kSuccessSpacing;
    if (recently && !record.lastFailureAt && !record.blockedUntil) return false;
    record.lastFailureAt = record.blockedUntil = std::nullopt;
    record.lastSuccessAt = now;
    return true;
  });
}

void ProviderHistory::forgetFailures() {
  update([](Records& records) {
    bool const any = std::ranges::any_of(
        records, [](auto const& entry) { return entry.second.lastFailureAt.has_value(); });
    for (auto& [provider, record] : records) record.lastFailureAt = std::nullopt;
    return any;
  });
}

void ProviderHistory::forgiveFailure(std::string_view provider) {
  update([&](Records& records) {
    auto const found = records.find(provider);
    return found != records.end() && std::exchange(found->second.lastFailureAt, std::nullopt).has_value();
  });
}

}  // namespace nimbara
