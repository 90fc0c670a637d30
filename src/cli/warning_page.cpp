#include "cli/warning_page.h"

#include "base/text.h"
#include "base/time_words.h"

namespace nimbara {

namespace {

constexpr std::size_t kLongestText = 2000;
constexpr int kIndent = 2;

AlertSeverity severityOf(NWSAlertSeverity severity) {
  switch (severity) {
    case NWSAlertSeverity::extreme:
      return AlertSeverity::critical;
    case NWSAlertSeverity::severe:
      return AlertSeverity::warning;
    case NWSAlertSeverity::moderate:
      return AlertSeverity::advisory;
    case NWSAlertSeverity::minor:
    case NWSAlertSeverity::unknown:
      break;
  }
  return AlertSeverity::info;
}

std::string momentText(Instant moment, WarningPageContext const& context) {
  return TimeWords(context.texts, context.calendar).moment(moment, context.now);
}

std::string paragraph(std::string const& text, WarningPageContext const& context) {
  std::string out;
  for (std::string const& line :
       wrapped(context.style.text(oneLine(text, kLongestText)), context.width - kIndent)) {
    if (!line.empty()) out += "  " + line + "\n";
  }
  return out;
}

std::string spanText(WarningEntry const& entry, WarningPageContext const& context) {
  auto const text = [&](std::string_view key, Instant moment) {
    return context.texts.format(key, momentText(moment, context));
  };
  std::string from = entry.onset && *entry.onset > context.now ? text("warning.from", *entry.onset) : "";
  std::string until = entry.end ? text("warning.until", *entry.end) : "";
  return from + (from.empty() || until.empty() ? "" : ", ") + until;
}

std::string rendered(WarningEntry const& entry, WarningPageContext const& context) {
  std::string const severity(context.texts.text("severity." + std::string(enumName(entry.severity))));
  Colour const colour = entry.severity >= AlertSeverity::warning ? Colour::warning : Colour::sun;
  std::string out;
  for (std::string const& line :
       wrapped(context.style.text(severity + ": " + oneLine(entry.title)), context.width)) {
    out += context.style.painted(line, colour) + "\n";
  }
  out += paragraph(spanText(entry, context), context);
  if (entry.isNearOnly) out += paragraph(std::string(context.texts.text("warning.near")), context);
  out += paragraph(entry.area, context);
  if (entry.message != entry.title && entry.message != entry.area) out += paragraph(entry.message, context);
  if (!entry.instruction.empty()) {
    out += paragraph(context.texts.format("warning.whatToDo", oneLine(entry.instruction, kLongestText)),
                     context);
  }
  return out + paragraph(entry.source, context);
}

}  // namespace

WarningEntry warningEntry(WeatherAlert const& alert) {
  return {alert.severity,
          alert.title,
          alert.message,
          alert.areaDesc.value_or(""),
          alert.instruction.value_or(""),
          alert.source.value_or(""),
          alert.onset,
          alert.expires,
          alert.distanceKm.has_value()};
}

WarningEntry warningEntry(NWSAlert const& alert) {
  bool const isMarked = !alert.status.empty() && alert.status != "Actual";
  bool const isCancel = alert.messageType == "Cancel";
  std::string const mark = isMarked   ? "[" + alert.status + "] "
                           : isCancel ? "[" + alert.messageType + "] "
                                      : "";
  return {severityOf(alert.severity),
          mark + alert.event,
          alert.headline,
          alert.areaDesc,
          alert.instruction,
          alert.senderName,
          alert.onset,
          alert.ends ? alert.ends : alert.expires};
}

std::string warningPage(std::vector<WarningEntry> const& entries, WarningPageContext const& context) {
  std::string out;
  for (WarningEntry const& entry : entries) out += (out.empty() ? "" : "\n") + rendered(entry, context);
  return out;
}

std::string warningNote(GovAlerts const& alerts, WarningPageContext const& context) {
  if (!alerts.isCovered()) return std::string(context.texts.text("warning.uncovered"));
  if (!alerts.failedSince()) return {};
  auto const checkedAt = alerts.checkedAt();
  if (!checkedAt) return std::string(context.texts.text("warning.neverChecked"));
  return context.texts.format("warning.uncheckedSince", momentText(*checkedAt, context));
}

}  // namespace nimbara
