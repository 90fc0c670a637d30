#include "providers/kept_answers.h"

#include "base/files/file.h"
#include "base/json/json_codec.h"
#include "base/sha256.h"

#include <algorithm>

namespace nimbara {

namespace {

/// Bodies of 100 KB: a person watches a few places.
constexpr std::size_t kMostInMemory = 16;
constexpr std::size_t kLargestFile = std::size_t{16} << 20;

}  // namespace

std::filesystem::path KeptAnswers::fileOf(std::string const& key) const {
  return folder_ / (sha256Hex(key) + suffix_);
}

std::optional<KeptAnswer> KeptAnswers::find(std::string const& key) {
  if (auto const found = memory_.find(key); found != memory_.end()) return found->second;
  if (folder_.empty()) return std::nullopt;
  auto const content = readFile(fileOf(key), kLargestFile);
  if (!content) return std::nullopt;
  auto answer = decodeJson<KeptAnswer>(*content);
  if (!answer) return std::nullopt;
  return std::move(*answer);
}

Result<void, std::string> KeptAnswers::keep(std::string const& key, KeptAnswer answer) {
  Result<void, std::string> written;
  if (!folder_.empty()) written = writeFileAtomically(fileOf(key), encodeJson(answer));
  memory_.insert_or_assign(key, std::move(answer));
  if (memory_.size() > kMostInMemory) {
    memory_.erase(
        std::ranges::min_element(memory_, {}, [](auto const& entry) { return entry.second.fetched; }));
  }
  return written;
}

}  // namespace nimbara
