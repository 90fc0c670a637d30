#include "table_file.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace nimbara::gazetteer {

std::string contentOf(std::filesystem::path const& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  if (!in) throw std::runtime_error("cannot read " + file.string());
  return content.str();
}

std::uint32_t TableFile::appendBytes(Section section, std::string_view bytes) {
  std::string& all = sections_[static_cast<std::size_t>(section)];
  auto const offset = static_cast<std::uint32_t>(all.size());
  all += bytes;
  return offset;
}

std::uint32_t TableFile::text(std::string_view text) {
  auto const known = texts_.find(text);
  if (known != texts_.end()) return known->second;
  if (text.size() > 0xFF) throw std::runtime_error("a text of more than 255 bytes: " + std::string(text));
  std::string const entry = static_cast<char>(static_cast<unsigned char>(text.size())) + std::string(text);
  return texts_[std::string(text)] = appendBytes(Section::texts, entry);
}

void TableFile::write(std::filesystem::path const& file) const {
  constexpr std::size_t kAlignment = 8;
  Directory directory{kMagic, {}};
  std::string body;
  for (std::size_t i = 0; i < kSections; ++i) {
    body.resize((body.size() + kAlignment - 1) / kAlignment * kAlignment);
    directory.sections[i] = {static_cast<std::uint32_t>(sizeof directory + body.size()),
                             static_cast<std::uint32_t>(sections_[i].size())};
    body += sections_[i];
  }
  std::ofstream out(file, std::ios::binary);
  out.write(reinterpret_cast<char const*>(&directory), sizeof directory);
  out.write(body.data(), static_cast<std::streamsize>(body.size()));
  out.close();
  if (!out) throw std::runtime_error("cannot write " + file.string());
}

}  // namespace nimbara::gazetteer
