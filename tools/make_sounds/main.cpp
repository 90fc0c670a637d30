// Writes the sounds of the notification rules as WAV files into the folder that is its argument.
#include "score.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

int main(int count, char** arguments) {
  if (count != 2) {
    std::fputs("usage: make_sounds FOLDER\n", stderr);
    return 2;
  }
  std::filesystem::path const folder = arguments[1];
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  for (auto const& sound : nimbara::sounds::score()) {
    auto const path = folder / (sound.name + ".wav");
    std::ofstream file(path, std::ios::binary);
    file << nimbara::sounds::wavFile(nimbara::sounds::render(sound));
    if (!file.flush()) {
      std::fprintf(stderr, "make_sounds: %s cannot be written\n", path.c_str());
      return 1;
    }
  }
  return 0;
}
