#include "app/words/failure_text.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct Row {
  APIError error;
  char const* english;
  char const* portuguese;
};

TEST(FailureText, SaysInTheUsersLanguageWhatHappened) {
  using Case = APIError::Case;
  using Kind = HttpError::Kind;
  Texts const english = Texts::load("en");
  Texts const portuguese = Texts::load("pt");
  for (Row const& row :
       {Row{APIError::network({Kind::unresolvedHost, "could not resolve host x"}),
            "the server could not be found", "o servidor não foi encontrado"},
        {APIError::network({Kind::timedOut, "no answer in 15 s"}), "the service took too long to respond",
         "o serviço demorou demasiado a responder"},
        {APIError::network({Kind::protocol, "the key is away"}), "the request failed: the key is away",
         "o pedido falhou: the key is away"},
        {APIError::refusal(), "every forecast service failed a few minutes ago",
         "todos os serviços de previsão falharam há poucos minutos"},
        {APIError::http(503), "the service returned an error (HTTP 503)",
         "o serviço devolveu um erro (HTTP 503)"},
        {APIError::http(400, "no such place"), "the service returned an error (HTTP 400: no such place)",
         "o serviço devolveu um erro (HTTP 400: no such place)"},
        {APIError::http(429, "slow down"), "the service's rate limit was reached",
         "o limite de pedidos do serviço foi atingido"},
        {APIError::of(Case::decodingError), "the response could not be read",
         "não foi possível ler a resposta"},
        {{Case::networkError, 0, "WeatherKit is not configured", {}, {}},
         "WeatherKit is not configured",
         "WeatherKit is not configured"}}) {
    EXPECT_EQ(failureText(row.error, english), row.english);
    EXPECT_EQ(failureText(row.error, portuguese), row.portuguese);
  }
}

TEST(FailureText, HasWordsForEveryFailure) {
  for (auto const& [language, name] : Texts::languages()) {
    Texts const texts = Texts::load(language);
    for (std::string_view const kind : enumNames<HttpError::Kind>) {
      EXPECT_TRUE(texts.translates("failure." + std::string(kind))) << language << " " << kind;
    }
  }
}

}  // namespace
}  // namespace nimbara
