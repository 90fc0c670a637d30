#include "demo/world/warnings/demo_cap.h"

#include "base/text/text.h"
#include "demo/world/demo_words.h"
#include "demo/world/warnings/demo_warning_messages.h"

#include <fmt/format.h>

#include <array>

namespace nimbara {

namespace {

using std::chrono::minutes;

/// Larger than any tile.
constexpr int kCircleKm = 140;
constexpr int kBuddhistEra = 543;
constexpr std::size_t kYearDigits = 4;

constexpr std::string_view kSignature =
    "<Signature xmlns=\"http://www.w3.org/2000/09/xmldsig#\"><SignedInfo><CanonicalizationMethod "
    "Algorithm=\"http://www.w3.org/2001/10/xml-exc-c14n#\"/><SignatureMethod "
    "Algorithm=\"http://www.w3.org/2001/04/xmldsig-more#rsa-sha256\"/><Reference URI=\"\"><DigestMethod "
    "Algorithm=\"http://www.w3.org/2001/04/xmlenc#sha256\"/><DigestValue>ZGVtbw==</DigestValue></Reference>"
    "</SignedInfo><SignatureValue>ZGVtbw==</SignatureValue><KeyInfo><KeyName>demo</KeyName></KeyInfo>"
    "</Signature>\n";

/// In the issuer's zone and era.
std::string timeText(DemoIssuer const& issuer, Instant instant) {
  std::string text =
      formatIso8601(std::chrono::floor<std::chrono::seconds>(instant) + minutes(issuer.zoneMinutes));
  text.pop_back();
  if (issuer.has(kBuddhistYears)) {
    int const year = std::stoi(text.substr(0, kYearDigits));
    text = std::to_string(year + kBuddhistEra) + text.substr(kYearDigits);
  }
  if (issuer.has(kNoZone)) return text + "-00:00";
  int const ahead = std::abs(issuer.zoneMinutes);
  return fmt::format("{}{}{:02}:{:02}", text, issuer.zoneMinutes < 0 ? '-' : '+', ahead / 60, ahead % 60);
}

std::string cornersText(std::vector<Coordinate> const& outline, std::string_view between) {
  std::string text;
  for (Coordinate const corner : outline) {
    text += fmt::format("{}{:.3f},{:.3f}", text.empty() ? "" : between, corner.latitude, corner.longitude);
  }
  return text;
}

class CapWriter {
 public:
  explicit CapWriter(DemoWorldMessage const& message)
      : message_(message),
        event_(message.event),
        issuer_(*message.event.issuer),
        step_(message.about()),
        prefix_(issuer_.has(kPrefixes) ? "cap:" : "") {}

  std::string write() && {
    out_ = fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<{0}alert "
        "xmlns{1}=\"urn:oasis:names:tc:emergency:cap:1.2\">\n",
        prefix_, issuer_.has(kPrefixes) ? ":cap" : "");
    element("identifier", message_.identifier());
    element("sender", sender());
    element("sent", time(step_.sent));
    element("status", event_.isDrill ? "Test" : "Actual");
    element("msgType", messageType());
    element("scope", "Public");
    if (std::string const text = references(); !text.empty()) element("references", text);
    for (std::string_view const language : languages()) block(language);
    if (issuer_.has(kSigned)) out_ += kSignature;
    return std::move(out_) + fmt::format("</{}alert>\n", prefix_);
  }

 private:
  void element(std::string_view name, std::string_view text) {
    out_ += fmt::format("<{0}{1}>{2}</{0}{1}>\n", prefix_, name, demoXmlText(text));
  }
  void pair(std::string_view name, std::string_view key, std::string_view value) {
    out_ += fmt::format("<{0}{1}><{0}valueName>{2}</{0}valueName><{0}value>{3}</{0}value></{0}{1}>\n",
                        prefix_, name, key, value);
  }

  std::string time(Instant instant) const { return timeText(issuer_, instant); }
  std::string sender() const {
    return fmt::format("warnings@{}.demo.invalid", asciiLowered(issuer_.countryCode));
  }
  bool isCalledOffBy(DemoEnding ending) const { return step_.isOver && issuer_.ending == ending; }
  bool isAllClear() const { return isCalledOffBy(DemoEnding::allClear); }
  bool isPast() const { return isCalledOffBy(DemoEnding::past) || isAllClear(); }

  std::string_view messageType() const {
    if (isCalledOffBy(DemoEnding::cancel)) return "Cancel";
    return step_.isUpdate ? "Update" : "Alert";
  }

  /// All messages before it, each "sender,identifier,sent".
  std::string references() const {
    std::string text;
    std::size_t const count = message_.step + (issuer_.has(kNamesItself) ? 1 : 0);
    for (std::size_t i = 0; i < count; ++i) {
      DemoWorldMessage const other{event_, i, message_.isInEnglish};
      text += fmt::format("{}{},{},{}", i == 0 ? "" : " ", sender(), other.identifier(),
                          time(other.about().sent));
    }
    return text;
  }

  std::vector<std::string_view> languages() const {
    if (issuer_.language.empty() || message_.isInEnglish) return {"en"};
    if (issuer_.languages == DemoLanguages::ownAndEnglish) return {issuer_.language, "en"};
    return {issuer_.language};
  }

  void block(std::string_view language) {
    DemoWords const& words = demoWords(language);
    std::string const event(words.events[event_.kind]);
    std::string const area = demoAreaName(event_);
    out_ += fmt::format("<{}info>\n", prefix_);
    element("language", language);
    element("category", "Met");
    element("event", event);
    if (isAllClear()) element("responseType", "AllClear");
    element("urgency", isPast() ? "Past" : step_.sent < event_.begin ? "Future" : "Immediate");
    element("severity", demoSeverity(issuer_, step_));
    element("certainty", "Likely");
    element("effective", time(step_.sent));
    element("onset", time(event_.begin));
    element("expires", time(step_.end));
    element("senderName", demoServiceName(issuer_));
    element("headline", event + " – " + area);
    issuer_.has(kNoText) ? void(out_ += "<description/>\n") : element("description", words.sentenceFor(area));
    element("instruction", words.instruction);
    if (issuer_.has(kColours)) pair("parameter", "awareness_level", demoAwarenessLevel(step_.level));
    writeArea(area);
    out_ += fmt::format("</{}info>\n", prefix_);
  }

  void writeArea(std::string const& name) {
    out_ += fmt::format("<{}area>\n", prefix_);
    element("areaDesc", name);
    writeShape();
    if (issuer_.has(kFlat)) {
      element("altitude", "0");
      element("ceiling", "0");
    }
    out_ += fmt::format("</{}area>\n", prefix_);
  }

  void writeShape() {
    bool const isEmpty = issuer_.shape == DemoShape::emptyPolygon;
    switch (issuer_.shape) {
      case DemoShape::polygon:
      case DemoShape::tabs:
        for (auto const& outline : event_.tile.outlines())
          element("polygon", cornersText(outline, issuer_.shape == DemoShape::tabs ? "\n\t\t\t" : " "));
        return;
      case DemoShape::circle:
        return element("circle", fmt::format("{} {}", cornersText({event_.tile.center()}, ""), kCircleKm));
      case DemoShape::emptyPolygon:
      case DemoShape::codes:
        if (isEmpty) out_ += fmt::format("<{}polygon/>\n", prefix_);
        return pair(
            "geocode", "DEMO_AREA",
            fmt::format("{}{:03}{:03}", issuer_.countryCode, event_.tile.row + 90, event_.tile.column + 90));
      case DemoShape::country:
        return;
    }
  }

  DemoWorldMessage const& message_;
  DemoEvent const& event_;
  DemoIssuer const& issuer_;
  DemoStep step_;
  std::string_view prefix_;
  std::string out_;
};

}  // namespace

std::string demoCapDocument(DemoWorldMessage const& message) {
  return CapWriter(message).write();
}

std::string demoServiceName(DemoIssuer const& issuer) {
  return fmt::format("Demo Weather Service of {}", issuer.country);
}

std::string demoAreaName(DemoEvent const& event) {
  bool const isWhole = event.issuer->shape == DemoShape::country;
  return isWhole ? std::string(event.issuer->country) : event.tile.name();
}

std::string_view demoSeverity(DemoIssuer const& issuer, DemoStep const& step) {
  return issuer.has(kNoSeverity) ? "Unknown" : kDemoWarningSeverities[static_cast<std::size_t>(step.level)];
}

std::string demoAwarenessLevel(int level) {
  auto const index = static_cast<std::size_t>(level);
  return fmt::format("{}; {}; {}", level + 1, asciiLowered(kDemoWarningColours[index]),
                     kDemoWarningSeverities[index]);
}

}  // namespace nimbara
