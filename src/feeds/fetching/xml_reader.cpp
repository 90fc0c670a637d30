#include "feeds/fetching/xml_reader.h"

#include "base/text/encodings.h"
#include "base/text/text.h"

#include <expat.h>

#include <limits>
#include <memory>

namespace nimbara {

namespace {

std::string_view withoutPrefix(std::string_view name) {
  return name.substr(name.find(':') + 1);
}

/// Some services put an empty line before their documents, or a zero behind them.
std::string_view withoutRims(std::string_view document) {
  auto const first = document.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos || document[first] != '<') return document;
  document.remove_prefix(first);
  bool const isWide = document.size() > 1 && document[1] == '\0';
  while (!isWide && document.ends_with('\0')) document.remove_suffix(1);
  return document;
}

/// What the document says of itself in bytes, in lower case; empty where it says nothing.
std::string declaredEncoding(std::string_view document) {
  constexpr std::size_t kLongestDeclaration = 200;
  document = document.substr(0, kLongestDeclaration);
  if (!document.starts_with("<?xml")) return {};
  std::string const declaration = asciiLowered(document.substr(0, document.find("?>")));
  auto const at = declaration.find("encoding");
  auto const opening = at == std::string::npos ? at : declaration.find_first_of("'\"", at);
  if (opening == std::string::npos) return {};
  auto const closing = declaration.find(declaration[opening], opening + 1);
  if (closing == std::string::npos) return {};
  return declaration.substr(opening + 1, closing - opening - 1);
}

/// The document, and as what expat takes it whatever it declares; null where that is for expat to find out.
struct Decoded {
  std::optional<std::string> text;  ///< where the bytes had to be changed
  char const* encoding = nullptr;
};

Decoded decoded(std::string_view document) {
  if (document.starts_with("\xEF\xBB\xBF")) return {{}, "UTF-8"};
  std::string const declared = declaredEncoding(document);
  // Written as a text of 16 bits and then sent in bytes: what begins with "<?" in bytes is no such text.
  if (declared.starts_with("utf-16")) return {{}, "UTF-8"};
  auto text = utf8Of(document, declared);
  bool const isOther = text.has_value();
  return {std::move(text), isOther ? "UTF-8" : nullptr};
}

}  // namespace

/// What expat calls. It may end an element whose beginning was refused.
struct XmlReader::Callbacks {
  static XmlReader& reader(void* data) { return *static_cast<XmlReader*>(data); }

  static void begin(void* data, XML_Char const* name, XML_Char const** attributes) {
    XmlReader& self = reader(data);
    if (self.refusal_) return;
    if (++self.depth_ > kDeepest) return self.refuse("its elements are nested too deeply");
    self.begin(withoutPrefix(name), XmlAttributes(attributes));
  }

  static void end(void* data, XML_Char const* name) {
    XmlReader& self = reader(data);
    if (self.refusal_) return;
    self.end(withoutPrefix(name));
    --self.depth_;
  }

  static void characters(void* data, XML_Char const* text, int size) {
    XmlReader& self = reader(data);
    if (!self.refusal_) self.characters({text, static_cast<std::size_t>(size)});
  }

  static void entity(void* data, XML_Char const*, int, XML_Char const*, int, XML_Char const*, XML_Char const*,
                     XML_Char const*, XML_Char const*) {
    reader(data).refuse("it declares entities");
  }
};

std::string_view XmlAttributes::value(std::string_view name) const {
  for (char const* const* pair = namesAndValues_; pair[0] != nullptr; pair += 2) {
    if (name == pair[0]) return pair[1];
  }
  return {};
}

void XmlReader::refuse(std::string_view reason) {
  if (!refusal_) refusal_ = reason;
  XML_StopParser(parser_, XML_FALSE);
}

Result<void, std::string> XmlReader::read(std::string_view document) {
  constexpr std::size_t kMostBytes = std::numeric_limits<int>::max();
  if (document.size() > kMostBytes) return std::unexpected("it is too long");
  document = withoutRims(document);
  Decoded const body = decoded(document);
  if (body.text) document = *body.text;
  if (document.size() > kMostBytes) return std::unexpected("it is too long");
  std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> const parser(XML_ParserCreate(body.encoding),
                                                                            &XML_ParserFree);
  parser_ = parser.get();
  XML_SetUserData(parser_, this);
  XML_SetElementHandler(parser_, &Callbacks::begin, &Callbacks::end);
  XML_SetCharacterDataHandler(parser_, &Callbacks::characters);
  XML_SetEntityDeclHandler(parser_, &Callbacks::entity);
  auto const status = XML_Parse(parser_, document.data(), static_cast<int>(document.size()), XML_TRUE);
  if (refusal_) return std::unexpected(*refusal_);
  if (status == XML_STATUS_OK) return {};
  return std::unexpected("line " + std::to_string(XML_GetCurrentLineNumber(parser_)) + ": " +
                         XML_ErrorString(XML_GetErrorCode(parser_)));
}

}  // namespace nimbara
