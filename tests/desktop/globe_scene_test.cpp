#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QImage>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace nimbara {
namespace {

using namespace nimbara::test;

bool isInstalled(char const* program) {
  return std::system(("command -v " + std::string(program) + " >/dev/null 2>&1").c_str()) == 0;
}

std::string contentOf(std::filesystem::path const& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

/// The whole program, with the scene in three dimensions drawn by Mesa's software renderer.
TEST(GlobeScene, IsDrawnOnADisplayWithoutAComplaint) {
  if (!isInstalled("xvfb-run") || !isInstalled("timeout")) GTEST_SKIP() << "no display can be had";
  TemporaryFolder const folder;
  auto const program = std::filesystem::path(NIMBARA_PROGRAM).parent_path() / "nimbara-desktop";
  auto const picture = folder.path() / "globe.png", complaints = folder.path() / "complaints";
  std::string const command =
      "env -u QT_QPA_PLATFORM -u QT_QUICK_BACKEND XDG_RUNTIME_DIR=" + folder.path().string() +
      " timeout 90 xvfb-run -a -s '-screen 0 900x700x24' " + program.string() +
      " --demo --now 2026-11-21T09:20:00Z --page globe --theme dark --size 640x560"
      " --screenshot " +
      picture.string() + " 2>" + complaints.string();
  int const code = std::system(command.c_str());
  if (code != 0 && contentOf(complaints).find("Xvfb failed") != std::string::npos)
    GTEST_SKIP() << "no display";
  ASSERT_EQ(code, 0) << contentOf(complaints);
  EXPECT_EQ(contentOf(complaints), "");
  QImage const image(QString::fromStdString(picture.string()));
  ASSERT_EQ(image.size(), QSize(640, 560));
  // Land by day is what is bright; there is none where the earth, its surface or the sun is missing.
  int lit = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) lit += qRed(image.pixel(x, y)) > 110 ? 1 : 0;
  }
  EXPECT_GT(lit, image.width() * image.height() / 50);
}

}  // namespace
}  // namespace nimbara
