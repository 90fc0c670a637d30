#include "feeds/fetching/failure_words.h"

#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using Kind = ServiceFailure::Kind;
using Transport = HttpError::Kind;

struct Row {
  ServiceFailure failure;
  char const* plain;
  char const* english;
  char const* portuguese;
};

ServiceFailure unreadableWaters() {
  ServiceFailure failure = ServiceFailure::of(Kind::unreadable, "the response is not a valid list of alerts");
  failure.isOfWaters = true;
  return failure;
}

ServiceFailure leftAlone() {
  ServiceFailure failure = ServiceFailure::of(Kind::leftAlone);
  failure.nextTry = test::at("2026-11-21T17:20:00Z");
  return failure;
}

TEST(ServiceFailures, AreSaidInTheUsersLanguageAndPlainlyInLogs) {
  Texts const english = Texts::load("en");
  Texts const portuguese = Texts::load("pt");
  for (Row const& row : {
           Row{ServiceFailure::network({Transport::unresolvedHost, "could not resolve host example.org"}),
               "the network cannot be reached (could not resolve host example.org)",
               "the server could not be found", "o servidor não foi encontrado"},
           {ServiceFailure::network({Transport::timedOut, ""}), "the service took too long to respond",
            "the service took too long to respond", "o serviço demorou demasiado a responder"},
           {ServiceFailure::network({Transport::truncated, "the response was incomplete"}),
            "the response was incomplete", "the response was incomplete", "a resposta estava incompleta"},
           {ServiceFailure::network({Transport::cancelled, "the request was cancelled"}),
            "the request was cancelled", "cancelled", "cancelado"},
           {ServiceFailure::answered(503), "the service returned status 503",
            "the service returned an error (HTTP 503)", "o serviço devolveu um erro (HTTP 503)"},
           {ServiceFailure::answered(429), "the service returned status 429",
            "the service's rate limit was reached", "o limite de pedidos do serviço foi atingido"},
           {unreadableWaters(),
            "those for the water off the shore: the response is not a valid list of alerts",
            "for the waters off the shore, the response could not be read",
            "quanto às águas ao largo da costa, não foi possível ler a resposta"},
           {leftAlone(), "the service failed a short while ago; next attempt from 2026-11-21T17:20:00Z",
            "after its last failure the service is only asked again later",
            "depois da última falha, o serviço só volta a ser consultado mais tarde"},
       }) {
    EXPECT_EQ(sentenceOf(row.failure), row.plain);
    EXPECT_EQ(failureText(row.failure, english), row.english) << row.plain;
    EXPECT_EQ(failureText(row.failure, portuguese), row.portuguese) << row.plain;
  }
}

TEST(ServiceFailures, HaveAllTheirKindsInEveryLanguage) {
  for (auto const& [language, name] : Texts::languages()) {
    Texts const texts = Texts::load(language);
    for (std::size_t i = 2; i < enumNames<Kind>.size(); ++i) {
      EXPECT_TRUE(texts.translates("failure." + std::string(enumNames<Kind>[i]))) << language << i;
    }
    for (std::string_view const transport : enumNames<Transport>) {
      EXPECT_TRUE(texts.translates("failure." + std::string(transport))) << language << transport;
    }
  }
}

}  // namespace
}  // namespace nimbara
