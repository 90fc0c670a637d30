#include "cli/pages/warnings/warning_page.h"

#include "app/words/coverage_text.h"
#include "base/text/text.h"
#include "base/words/list_text.h"
#include "base/words/moment_text.h"
#include "feeds/alerts/warning_words.h"

namespace nimbara {

namespace {

constexpr std::size_t kLongestText = 20'000;
constexpr std::size_t kMostLines = 400;
constexpr int kIndent = 2;

AlertSeverity severityOf(NWSAlertSeverity severity) {
  switch (severity) {
    case NWSAlertSeverity::extreme:
      return AlertSeverity::critical;
    case NWSAlertSeverity::severe:
      return AlertSeverity::warning;
    case NWSAlertSeverity::moderate:
    case NWSAlertSeverity::unknown:  // taken for medium
      return AlertSeverity::advisory;
    case NWSAlertSeverity::minor:
      break;
  }
  return AlertSeverity::info;
}

std::string paragraph(std::string const& text, WarningPageContext const& context) {
  std::string out;
  for (std::string const& line :
       wrapped(context.style.text(oneLine(text, kLongestText)), context.width - kIndent)) {
    if (!line.empty()) out += "  " + line + "\n";
  }
  return out;
}

/// Line by line as the issuer has it, but for empty lines and those that are too long.
std::string verbatim(std::string_view text, WarningPageContext const& context) {
  auto lines = split(text, '\n');
  if (lines.size() > kMostLines) lines.resize(kMostLines);
  std::string out;
  for (std::string_view const line : lines) out += paragraph(std::string(line), context);
  return out;
}

std::string indented(std::string_view lines) {
  std::string out;
  while (!lines.empty()) {
    std::size_t const end = std::min(lines.find('\n'), lines.size() - 1);
    if (lines.front() != '\n') out += "  ";
    out += lines.substr(0, end + 1);
    lines.remove_prefix(end + 1);
  }
  return out;
}

WarningWords wordsOf(WarningPageContext const& context) {
  return {context.texts, TimeWords(context.texts, context.calendar), context.now, context.distance};
}

std::optional<std::string> colourOf(WarningEntry const& entry) {
  return entry.colour.empty() ? std::nullopt : std::optional(entry.colour);
}

/// That all of it is near, or which areas of it are.
std::string nearText(WarningEntry const& entry, WarningPageContext const& context) {
  if (entry.distanceKm) {
    return context.texts.format("warning.nearBy", display(*entry.distanceKm, context.distance),
                                symbol(context.distance));
  }
  NearArea const own{{}, 0, entry.severity, colourOf(entry), entry.onset, entry.end};
  std::string const areas = nearAreasText(entry.near, own, wordsOf(context));
  return areas.empty() ? areas : context.texts.format("warning.nearAreas", areas);
}

std::string sourceText(WarningEntry const& entry, WarningPageContext const& context) {
  std::string text = entry.source;
  if (!entry.issuer.empty())
    text = context.texts.format("warning.issuedBy", oneLine(entry.issuer), entry.source);
  if (!entry.issued) return text;
  TimeWords const words(context.texts, context.calendar);
  appendClause(text, momentText("warning.issued", *entry.issued, context.now, words, context.texts),
               context.texts);
  return text;
}

std::string rendered(WarningEntry const& entry, WarningPageContext const& context) {
  WarningGrade const grade{entry.severity, entry.colour, entry.isLevelStated};
  std::string const heading = gradedTitle(grade, oneLine(entry.title), context.texts);
  Colour const colour = entry.severity >= AlertSeverity::warning ? Colour::warning : Colour::sun;
  std::string out;
  for (std::string const& line : wrapped(context.style.text(heading), context.width)) {
    out += context.style.painted(line, colour) + "\n";
  }
  out += paragraph(statedSeverityText(grade, context.texts), context);
  out += paragraph(spanText(entry.onset, entry.end, wordsOf(context)), context);
  if (entry.isOnWater) out += paragraph(std::string(context.texts.text("warning.onWater")), context);
  out += paragraph(entry.area, context);
  out += paragraph(nearText(entry, context), context);
  out += indented(entry.map);
  if (entry.message != entry.title && entry.message != entry.area) out += paragraph(entry.message, context);
  if (entry.text != entry.message) out += verbatim(entry.text, context);
  if (entry.isTextMissing) out += paragraph(std::string(context.texts.text("warning.noFullText")), context);
  if (!entry.instruction.empty())
    out += verbatim(context.texts.format("warning.whatToDo", entry.instruction), context);
  return out + paragraph(sourceText(entry, context), context);
}

}  // namespace

WarningEntry warningEntry(WeatherAlert const& alert) {
  return {.severity = alert.severity,
          .title = alert.title,
          .message = alert.message,
          .area = placeAreas(alert),
          .instruction = alert.instruction.value_or(""),
          .source = alert.source.value_or(""),
          .onset = alert.onset,
          .end = alert.expires,
          .distanceKm = alert.distanceKm,
          .near = alert.near.value_or(std::vector<NearArea>()),
          .text = alert.text ? *alert.text : alert.description.value_or(""),
          .isTextMissing = alert.isFullText == false,
          .issuer = alert.issuer.value_or(""),
          .colour = alert.colour.value_or(""),
          .issued = alert.issued,
          .isLevelStated = alert.levelStated.value_or(true),
          .isOnWater = alert.onWater.value_or(false),
          .map = {}};
}

WarningEntry unplacedEntry(WeatherAlert const& alert, std::string_view countryCode, Texts const& texts) {
  WarningEntry entry = warningEntry(alert);
  entry.area = unplacedAreaText(alert, countryCode, texts);
  if (entry.message == alert.areaDesc) entry.message.clear();
  return entry;
}

WarningEntry warningEntry(NWSAlert const& alert) {
  bool const isMarked = !alert.status.empty() && alert.status != "Actual";
  bool const isCancel = alert.messageType == "Cancel";
  std::string const mark = isMarked   ? "[" + alert.status + "] "
                           : isCancel ? "[" + alert.messageType + "] "
                                      : "";
  WarningEntry entry;
  entry.severity = severityOf(alert.severity);
  entry.title = mark + alert.event;
  entry.message = alert.headline;
  entry.area = alert.areaDesc;
  entry.instruction = alert.instruction;
  entry.source = alert.senderName;
  entry.onset = alert.onset;
  entry.end = alert.ends ? alert.ends : alert.expires;
  entry.isLevelStated = alert.severity != NWSAlertSeverity::unknown;
  return entry;
}

std::string warningPage(std::vector<WarningEntry> const& entries, WarningPageContext const& context) {
  std::string out;
  for (WarningEntry const& entry : entries) out += (out.empty() ? "" : "\n") + rendered(entry, context);
  return out;
}

std::string coveragePage(std::vector<SourceCoverage> const& coverage, WarningPageContext const& context) {
  std::string out;
  for (std::string const& text : coverageLines(coverage, context.texts, context.calendar, context.now)) {
    for (std::string const& line : wrapped(context.style.text(text), context.width)) {
      out += context.style.painted(line, Colour::dim) + "\n";
    }
  }
  return out;
}

}  // namespace nimbara
