#include "feeds/fetching/feed_problem.h"

#include "base/text/number.h"
#include "feeds/fetching/plain_problem.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

using Kind = HttpError::Kind;

struct Beginning {
  Kind kind;
  std::string_view text;
};

constexpr std::array kBeginnings =
    std::to_array<Beginning>({{Kind::unresolvedHost, "the network cannot be reached"},
                              {Kind::connectionFailed, "the service cannot be reached"},
                              {Kind::tlsFailed, "could not establish a secure connection"},
                              {Kind::timedOut, "the service took too long to respond"},
                              {Kind::bodyTooLarge, "the response was too large"},
                              {Kind::truncated, "the response was incomplete"}});

constexpr std::string_view kStatus = "the service returned status ";
constexpr std::string_view kNotFetched = " could not be fetched: ";
constexpr int kTooManyRequests = 429;

std::string_view upTo(std::string_view text, char end) {
  return text.substr(0, text.find(end));
}

std::string statusText(int status, Texts const& texts) {
  if (status == kTooManyRequests) return std::string(texts.text("failure.limit"));
  return texts.format("failure.status", status);
}

}  // namespace

std::string networkProblem(HttpError const& error) {
  auto const row = std::ranges::find(kBeginnings, error.kind, &Beginning::kind);
  if (row == kBeginnings.end()) return error.message;
  std::string const said(row->text);
  return error.message.empty() || error.message == said ? said : said + " (" + error.message + ")";
}

std::string feedProblem(std::string_view feed, std::string_view problem) {
  if (problem.empty()) return {};
  return std::string(feed) + std::string(kNotFetched) + std::string(problem);
}

std::optional<FeedProblem> feedProblemIn(std::string_view sentence) {
  auto const at = sentence.find(kNotFetched);
  if (at == std::string_view::npos) return std::nullopt;
  return FeedProblem{sentence.substr(0, at), sentence.substr(at + kNotFetched.size())};
}

std::string statusProblem(int status) {
  return std::string(kStatus) + std::to_string(status);
}

std::string problemText(std::string_view sentence, Texts const& texts) {
  auto const row = std::ranges::find_if(
      kBeginnings, [&](Beginning const& beginning) { return sentence.starts_with(beginning.text); });
  if (row != kBeginnings.end()) return std::string(texts.text("failure." + std::string(enumName(row->kind))));
  if (sentence.find(kUnreadable) != std::string_view::npos)
    return std::string(texts.text("failure.unreadable"));
  auto const status =
      sentence.starts_with(kStatus) ? parseInteger(upTo(sentence.substr(kStatus.size()), ';')) : std::nullopt;
  return status ? statusText(*status, texts) : std::string(sentence.substr(0, sentence.find(kAskedAgain)));
}

}  // namespace nimbara
