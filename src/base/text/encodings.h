// Texts in the encodings that were usual before UTF-8, which some services still send.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

/// The bytes as UTF-8, from the encoding of that name in any letter case: windows-125x, iso-8859-x, koi8,
/// those of Chinese, Japanese, Korean and Thai. Names stand for what is written under them: "gb2312" for all
/// of GB 18030, "iso-8859-1" for windows-1252, whose quotation marks its texts have. Bytes that are no
/// character become U+FFFD. Nothing for other names, those of UTF-8 and UTF-16 too.
std::optional<std::string> utf8Of(std::string_view bytes, std::string_view encoding);

}  // namespace nimbara
