// A language model behind the chat completions that OpenAI-compatible servers offer, as local model runners
// do. Nothing is sent anywhere unless the user has named an address.
#pragma once

#include "platform/http/http_client.h"
#include "platform/language_model.h"

#include <string>

namespace nimbara {

class ChatLanguageModel final : public LanguageModel {
 public:
  struct Options {
    std::string baseUrl;  ///< "http://127.0.0.1:11434"; "/v1/chat/completions" is appended
    std::string model;    ///< what the server calls the model; may be empty
    std::string apiKey;   ///< may be empty
  };

  ChatLanguageModel(HttpClient& http, Options options) : http_(http), options_(std::move(options)) {}

  Result<std::string, std::string> reply(std::string const& prompt, std::stop_token const& stop) override;

 private:
  HttpRequest requestOf(std::string const& prompt) const;

  HttpClient& http_;
  Options options_;
};

}  // namespace nimbara
