#include "feeds/cap/cap_files.h"

#include "base/files/file.h"
#include "base/sha256.h"
#include "feeds/cap/cap_reader.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace nimbara {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kHashDigits = 32;
constexpr std::string_view kEnding = ".cap";

std::string hashOf(std::string_view address) {
  return sha256Hex(address).substr(0, kHashDigits);
}

/// "0123…-1795348800.cap": the hash and the second of the epoch until which the file is kept.
std::string fileName(std::string const& hash, Instant until) {
  auto const seconds = std::chrono::floor<std::chrono::seconds>(until).time_since_epoch().count();
  return hash + "-" + std::to_string(seconds) + std::string(kEnding);
}

std::optional<Instant> untilOf(std::string_view name) {
  if (!name.ends_with(kEnding) || name.size() <= kHashDigits || name[kHashDigits] != '-') return std::nullopt;
  std::string_view const digits =
      name.substr(kHashDigits + 1, name.size() - kHashDigits - 1 - kEnding.size());
  std::int64_t seconds = 0;
  auto const [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
  constexpr std::int64_t kLatest = 253'402'300'799;  // the end of the year 9999
  bool const isWhole = error == std::errc{} && end == digits.data() + digits.size();
  if (!isWhole || seconds < 0 || seconds > kLatest) return std::nullopt;
  return Instant(std::chrono::seconds(seconds));
}

}  // namespace

CapFiles::CapFiles(fs::path directory, CapFileLimits limits)
    : directory_(std::move(directory)), limits_(limits) {}

std::optional<std::string> CapFiles::read(std::string_view address) const {
  if (directory_.empty()) return std::nullopt;
  auto const found = files_.find(hashOf(address));
  if (found == files_.end()) return std::nullopt;
  auto content = readFile(found->second.path, kLongestCapMessage);
  return content ? std::optional(std::move(*content)) : std::nullopt;
}

bool CapFiles::isKnown(std::string_view address) const {
  return !directory_.empty() && files_.contains(hashOf(address));
}

void CapFiles::look() {
  if (!directory_.empty()) files_ = listed();
}

void CapFiles::keep(std::string_view address, std::string_view document, Instant until) {
  if (directory_.empty()) return;
  std::string const hash = hashOf(address);
  fs::path const path = directory_ / fileName(hash, until);
  if (writeFileAtomically(path, document)) files_[hash] = {path, until, document.size()};
}

void CapFiles::sweep(Instant now) {
  if (directory_.empty()) return;
  files_ = listed();
  std::vector<std::pair<Instant, std::string>> byEnd;
  std::size_t bytes = 0;
  for (auto const& [hash, file] : files_) {
    byEnd.emplace_back(file.until, hash);
    bytes += file.bytes;
  }
  std::ranges::sort(byEnd);
  std::size_t count = byEnd.size();
  for (auto const& [until, hash] : byEnd) {
    if (until > now && count <= limits_.files && bytes <= limits_.bytes) return;
    auto const file = files_.find(hash);
    std::error_code ignored;
    fs::remove(file->second.path, ignored);
    bytes -= file->second.bytes;
    --count;
    files_.erase(file);
  }
}

std::map<std::string, CapFiles::File> CapFiles::listed() const {
  std::map<std::string, File> files;
  std::error_code error;
  for (fs::directory_iterator it(directory_, error), end; !error && it != end; it.increment(error)) {
    std::string const name = it->path().filename().string();
    auto const until = untilOf(name);
    std::error_code gone;
    auto const bytes = until ? it->file_size(gone) : 0;
    if (until && !gone) files[name.substr(0, kHashDigits)] = {it->path(), *until, bytes};
  }
  return files;
}

}  // namespace nimbara
