#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/xml_reader.h"
#include "feeds/imagery/radar/radar_lists.h"

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::milliseconds;

/// A list longer than that is cut to its newest times.
constexpr long long kMostTimes = 1000;

/// "PT5M", "PT1H30M", "P1D".
std::optional<milliseconds> parsePeriod(std::string_view text) {
  if (!text.starts_with('P')) return std::nullopt;
  text.remove_prefix(1);
  bool isOfDay = false;
  milliseconds whole{0};
  while (!text.empty()) {
    if (text.front() == 'T') {
      isOfDay = true;
      text.remove_prefix(1);
      continue;
    }
    auto const end = text.find_first_not_of("0123456789");
    auto const count = parseInteger(text.substr(0, std::min(end, text.size())));
    constexpr int kMost = 100'000;
    if (end == std::string_view::npos || !count || *count > kMost) return std::nullopt;
    switch (text[end]) {
      case 'D':
        whole += std::chrono::hours(24) * *count;
        break;
      case 'H':
        whole += std::chrono::hours(*count);
        break;
      case 'M':
        if (!isOfDay) return std::nullopt;
        whole += std::chrono::minutes(*count);
        break;
      case 'S':
        whole += std::chrono::seconds(*count);
        break;
      default:
        return std::nullopt;
    }
    text.remove_prefix(end + 1);
  }
  return whole > milliseconds(0) ? std::optional(whole) : std::nullopt;
}

/// "2026-11-22T10:00:00.000Z/2026-11-22T14:00:00.000Z/PT5M": its newest times.
void appendPeriod(std::string_view text, std::vector<Instant>& times) {
  auto const parts = split(text, '/');
  if (parts.size() != 3) return;
  auto const from = parseIso8601(trimmed(parts[0]));
  auto const to = parseIso8601(trimmed(parts[1]));
  auto const step = parsePeriod(trimmed(parts[2]));
  if (!from || !to || !step || *to < *from) return;
  long long const count = (*to - *from) / *step + 1;
  for (long long i = std::max(count - kMostTimes, 0LL); i < count; ++i) times.push_back(*from + i * *step);
}

std::vector<Instant> timesOf(std::string_view dimension) {
  std::vector<Instant> times;
  for (std::string_view const part : split(dimension, ',')) {
    if (part.contains('/')) {
      appendPeriod(trimmed(part), times);
    } else if (auto const time = parseIso8601(trimmed(part))) {
      times.push_back(*time);
    }
  }
  std::ranges::sort(times);
  times.erase(std::ranges::unique(times).begin(), times.end());
  return times;
}

class CapabilitiesReader final : XmlReader {
 public:
  explicit CapabilitiesReader(std::string_view layer) : layer_(layer) {}

  Result<LayerTimes, DecodeError> times(std::string_view document) {
    if (auto const done = read(document); !done) return std::unexpected(DecodeError{"", done.error()});
    if (!found_) return std::unexpected(DecodeError{"", "it has no layer " + std::string(layer_)});
    LayerTimes times{timesOf(time_), {}};
    if (times.times.empty()) return std::unexpected(DecodeError{"", "the layer has no times"});
    auto const references = timesOf(reference_);
    auto const stated = parseIso8601(trimmed(statedReference_));
    if (stated) {
      times.reference = stated;
    } else if (!references.empty()) {
      times.reference = references.back();
    }
    return times;
  }

 private:
  struct Open {
    int depth = 0;
    std::string name;
  };

  bool isMeant(std::string_view name) const {
    auto const colon = name.rfind(':');
    return name == layer_ || (colon != std::string_view::npos && name.substr(colon + 1) == layer_);
  }
  bool isInLayer() const { return !open_.empty() && depth() == open_.back().depth + 1; }

  void begin(std::string_view name, XmlAttributes const& attributes) override {
    text_ = nullptr;
    if (name == "Layer") return open_.push_back({depth(), {}});
    if (!isInLayer()) return;
    if (name == "Name") text_ = &open_.back().name;
    if (name != "Dimension" || !isMeant(trimmed(open_.back().name))) return;
    found_ = true;
    std::string const dimension = asciiLowered(attributes.value("name"));
    if (dimension == "time") text_ = &time_;
    if (dimension != "reference_time") return;
    text_ = &reference_;
    statedReference_ = attributes.value("default");
  }
  void characters(std::string_view text) override {
    if (text_ != nullptr) text_->append(text);
  }
  void end(std::string_view name) override {
    text_ = nullptr;
    if (name == "Layer" && !open_.empty()) open_.pop_back();
  }

  std::string_view layer_;
  std::vector<Open> open_;
  std::string* text_ = nullptr;  ///< what the text of the element that was begun last belongs to
  bool found_ = false;
  std::string time_;
  std::string reference_;
  std::string statedReference_;
};

}  // namespace

Result<LayerTimes, DecodeError> layerTimesIn(std::string_view capabilities, std::string_view layer) {
  return CapabilitiesReader(layer).times(capabilities);
}

}  // namespace nimbara
