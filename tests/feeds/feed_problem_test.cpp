#include "feeds/fetching/feed_problem.h"

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

TEST(FeedProblem, KeepsWhatTheTransportSaid) {
  EXPECT_EQ(networkProblem({Kind::connectionFailed, "could not connect to example.org"}),
            "the service cannot be reached (could not connect to example.org)");
  EXPECT_EQ(networkProblem({Kind::truncated, "the response was incomplete"}), "the response was incomplete");
  EXPECT_EQ(networkProblem({Kind::cancelled, "the request was cancelled"}), "the request was cancelled");
}

}  // namespace
}  // namespace nimbara
