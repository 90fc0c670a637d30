#include "feeds/fetching/xml_reader.h"

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

/// Documents that are written as texts of 16 bits and then sent in bytes still say the former of themselves.
/// What begins with "<?" in bytes is none of those.
char const* encodingOf(std::string_view document) {
  if (!document.starts_with("<?xml")) return nullptr;
  std::string const declaration = asciiLowered(document.substr(0, document.find("?>")));
  return declaration.contains("utf-16") ? "UTF-8" : nullptr;
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
  if (document.size() > std::size_t{std::numeric_limits<int>::max()})
    return std::unexpected("it is too long");
  document = withoutRims(document);
  std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> const parser(
      XML_ParserCreate(encodingOf(document)), &XML_ParserFree);
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
