#include "feeds/fetching/plain_problem.h"

#include "feeds/fetching/feed_problem.h"

namespace nimbara {

std::string withNextRequest(std::string problem, Instant next) {
  return std::move(problem) + std::string(kAskedAgain) +
         formatIso8601(std::chrono::ceil<std::chrono::seconds>(next));
}

PlainProblem plainProblem(std::string_view sentence) {
  auto const end = sentence.find(kAskedAgain);
  PlainProblem plain{std::string(sentence.substr(0, end)), {}};
  if (end != std::string_view::npos) plain.next = parseIso8601(sentence.substr(end + kAskedAgain.size()));
  auto const part = feedProblemIn(plain.text);
  std::string_view const problem = part ? part->problem : std::string_view(plain.text);
  if (problem.find(kUnreadable) == std::string_view::npos) return plain;
  constexpr std::string_view kNotRead = "the response could not be read";
  plain.text = part ? feedProblem(part->feed, kNotRead) : std::string(kNotRead);
  return plain;
}

}  // namespace nimbara
