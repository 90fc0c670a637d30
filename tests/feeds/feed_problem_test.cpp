#include "feeds/fetching/feed_problem.h"

#include "feeds/fetching/plain_problem.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using Kind = HttpError::Kind;

struct Row {
  std::string sentence;
  char const* english;
  char const* portuguese;
};

TEST(FeedProblem, IsSaidInTheUsersLanguage) {
  Texts const english = Texts::load("en");
  Texts const portuguese = Texts::load("pt");
  for (Row const& row : {
           Row{networkProblem({Kind::unresolvedHost, "could not resolve host example.org"}),
               "the server could not be found", "a rede não está acessível"},
           {networkProblem({Kind::connectionFailed, "could not connect to example.org"}),
            "could not connect to the server", "a rede ou o serviço não está acessível"},
           {networkProblem({Kind::timedOut, ""}), "the service took too long to respond",
            "o serviço não respondeu a tempo"},
           {networkProblem({Kind::truncated, "the response was incomplete"}), "the response was incomplete",
            "a resposta do serviço foi cortada"},
           {statusProblem(503), "the service returned an error (HTTP 503)",
            "o serviço respondeu com um erro (HTTP 503)"},
           {statusProblem(429), "the service's rate limit was reached", "o limite do serviço foi atingido"},
           {"the response is not a valid list of earthquakes (a list is expected)",
            "the response could not be read", "não foi possível ler a resposta do serviço"},
           {networkProblem({Kind::protocol, "the response is not HTTP"}), "the response is not HTTP",
            "the response is not HTTP"},
           {"the service returned status soon", "the service returned status soon",
            "the service returned status soon"},
           {"", "", ""},
       }) {
    EXPECT_EQ(problemText(row.sentence, english), row.english) << row.sentence;
    EXPECT_EQ(problemText(row.sentence, portuguese), row.portuguese) << row.sentence;
  }
}

TEST(FeedProblem, IsPlainWithoutAParsersWords) {
  struct PlainRow {
    std::string sentence, text;
    std::optional<Instant> next;
  };
  constexpr char kUnreadable[] =
      "the response is not a valid list of alerts (it is not JSON (TAPE_ERROR: improper structure))";
  Instant const next = test::at("2026-11-21T11:20:00Z");
  for (PlainRow const& row : {
           PlainRow{kUnreadable, "the response could not be read", {}},
           {feedProblem("the K index", kUnreadable),
            "the K index could not be fetched: the response could not be read",
            {}},
           {statusProblem(503), "the service returned status 503", {}},
           {networkProblem({Kind::unresolvedHost, "could not resolve host example.org"}),
            "the network cannot be reached (could not resolve host example.org)",
            {}},
           {withNextRequest(statusProblem(403), next - std::chrono::milliseconds(400)),
            "the service returned status 403", next},
           {feedProblem("the satellites", withNextRequest(kUnreadable, next)),
            "the satellites could not be fetched: the response could not be read", next},
           {"", "", {}},
       }) {
    PlainProblem const plain = plainProblem(row.sentence);
    EXPECT_EQ(plain.text, row.text);
    EXPECT_EQ(plain.next, row.next) << row.sentence;
  }
  EXPECT_EQ(problemText(withNextRequest("no response yet", next), Texts::load("en")), "no response yet");
}

TEST(FeedProblem, KeepsWhatTheTransportSaid) {
  EXPECT_EQ(networkProblem({Kind::connectionFailed, "could not connect to example.org"}),
            "the service cannot be reached (could not connect to example.org)");
  EXPECT_EQ(networkProblem({Kind::truncated, "the response was incomplete"}), "the response was incomplete");
  EXPECT_EQ(networkProblem({Kind::cancelled, "the request was cancelled"}), "the request was cancelled");
}

}  // namespace
}  // namespace nimbara
