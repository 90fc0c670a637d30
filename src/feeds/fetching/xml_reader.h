// Reads a document of XML element by element, on expat, for those who know what its elements mean. Pure; any
// bytes may be given: entities that a document declares, and elements nested beyond 64 levels, are refused.
// Encodings that documents declare are those of expat and of `utf8Of`.
#pragma once

#include "base/result.h"

#include <optional>
#include <string>
#include <string_view>

struct XML_ParserStruct;

namespace nimbara {

/// Of one element, while it is begun.
class XmlAttributes {
 public:
  explicit XmlAttributes(char const* const* namesAndValues) : namesAndValues_(namesAndValues) {}

  /// Empty for an attribute that the element does not have.
  std::string_view value(std::string_view name) const;

 private:
  char const* const* namesAndValues_;  ///< in turn; a null pointer ends them
};

class XmlReader {
 public:
  static constexpr int kDeepest = 64;

  XmlReader(XmlReader const&) = delete;
  XmlReader& operator=(XmlReader const&) = delete;

 protected:
  XmlReader() = default;
  ~XmlReader() = default;

  /// Calls the functions below in the document's order; elements count by their names without prefixes. The
  /// error is a clause: what was refused, or "line 3: mismatched tag" for what is not well formed to its end.
  Result<void, std::string> read(std::string_view document);

  virtual void begin(std::string_view name, XmlAttributes const& attributes) = 0;
  /// A part of a text; the next part may follow at once.
  virtual void characters(std::string_view text) = 0;
  virtual void end(std::string_view name) = 0;

  /// Of the element that begins, ends or has the text; 1 is the root's.
  int depth() const { return depth_; }
  /// Ends the reading; nothing more is called. The first reason counts.
  void refuse(std::string_view reason);

 private:
  struct Callbacks;

  XML_ParserStruct* parser_ = nullptr;
  int depth_ = 0;
  std::optional<std::string> refusal_;
};

}  // namespace nimbara
