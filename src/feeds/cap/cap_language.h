// Languages of texts and of readers. Pure functions.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

/// "de" of "de-DE" and of "de_DE.UTF-8"; the written forms of Norwegian are one language here.
std::string primaryLanguage(std::string_view tag);

/// "pt-br" of "pt-BR" and of "pt_BR.UTF-8": with region and script.
std::string languageTag(std::string_view tag);

/// How well a reader of `language` is served by a text in another one: 0 in his own, 1 in English, 2 else.
int languageRank(std::string_view text, std::string_view language);

}  // namespace nimbara
