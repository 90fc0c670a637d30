#include "desktop/window/software_start.h"
#include "support/paths.h"
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

struct DrawnGlobe {
  int code = 0;
  std::string complaints;
  QImage picture;

  bool hasDisplay() const { return code == 0 || complaints.find("Xvfb failed") == std::string::npos; }
  /// Land by day is what is bright; there is none where the earth, its surface or the sun is missing.
  int litPoints() const {
    int lit = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) lit += qRed(picture.pixel(x, y)) > 110 ? 1 : 0;
    }
    return lit;
  }
};

constexpr QSize kSize(640, 560);
constexpr int kLeastLit = 640 * 560 / 50;

int differentPoints(QImage const& one, QImage const& other) {
  int count = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x)
      count += std::abs(qGreen(one.pixel(x, y)) - qGreen(other.pixel(x, y))) > 24;
  }
  return count;
}

/// The whole program on a display of its own, in this environment.
DrawnGlobe drawnGlobe(std::string const& variables, std::string const& options = {}) {
  TemporaryFolder const folder;
  auto const program = std::filesystem::path(test::kProgram).parent_path() / "nimbara-desktop";
  auto const picture = folder.path() / "globe.png", complaints = folder.path() / "complaints";
  std::string const command =
      "env -u QT_QPA_PLATFORM -u QT_QUICK_BACKEND XDG_RUNTIME_DIR=" + folder.path().string() + " " +
      variables + " timeout 90 xvfb-run -a -s '-screen 0 900x700x24' " + program.string() + " " + options +
      " --demo --now 2026-11-21T09:20:00Z --page globe --theme dark --size 640x560"
      " --screenshot " +
      picture.string() + " 2>" + complaints.string();
  int const code = std::system(command.c_str());
  return {code, contentOf(complaints), QImage(QString::fromStdString(picture.string()))};
}

struct GlobeScene : testing::Test {
  void SetUp() override {
    if (!isInstalled("xvfb-run") || !isInstalled("timeout")) GTEST_SKIP() << "no display can be had";
  }
};

/// In three dimensions, by Mesa's software renderer.
TEST_F(GlobeScene, IsDrawnOnADisplayWithoutAComplaint) {
  DrawnGlobe const globe = drawnGlobe("", "--globe 3d");
  if (!globe.hasDisplay()) GTEST_SKIP() << "no display";
  ASSERT_EQ(globe.code, 0) << globe.complaints;
  EXPECT_EQ(globe.complaints, "");
  ASSERT_EQ(globe.picture.size(), kSize);
  EXPECT_GT(globe.litPoints(), kLeastLit);
}

/// The scene in three dimensions differs in a third of its points; eleven thousand satellites move on between
/// two starts.
TEST_F(GlobeScene, IsPaintedWhereTheProcessorImitatesAGraphicsCard) {
  DrawnGlobe const chosen = drawnGlobe("LIBGL_ALWAYS_SOFTWARE=1");
  if (!chosen.hasDisplay()) GTEST_SKIP() << "no display";
  DrawnGlobe const painted = drawnGlobe("LIBGL_ALWAYS_SOFTWARE=1", "--globe painted");
  ASSERT_EQ(chosen.code, 0) << chosen.complaints;
  EXPECT_EQ(chosen.complaints, "");
  EXPECT_LT(differentPoints(chosen.picture, painted.picture), kSize.width() * kSize.height() / 8);
}

struct RendererRow {
  char const* name;
  bool isSoftware;
};

TEST(Renderers, AreKnownByTheirNames) {
  for (auto const& [name, isSoftware] : {RendererRow{"llvmpipe (LLVM 15.0.6, 256 bits)", true},
                                         {"softpipe", true},
                                         {"Software Rasterizer", true},
                                         {"Google SwiftShader", true},
                                         {"Mesa Intel(R) UHD Graphics 620 (KBL GT2)", false},
                                         {"AMD Radeon RX 580 (polaris10, LLVM 15.0.6, DRM 3.49)", false},
                                         {"NVIDIA GeForce GTX 1650/PCIe/SSE2", false},
                                         {"", false}}) {
    EXPECT_EQ(isSoftwareRenderer(name), isSoftware) << name;
  }
}

TEST_F(GlobeScene, IsPaintedWhereThereIsNoOpenGL) {
  DrawnGlobe const globe = drawnGlobe("QT_XCB_GL_INTEGRATION=none");
  if (!globe.hasDisplay()) GTEST_SKIP() << "no display";
  ASSERT_EQ(globe.code, 0) << globe.complaints;
  EXPECT_NE(globe.complaints.find("nimbara-desktop: drawn without the graphics card: "), std::string::npos)
      << globe.complaints;
  ASSERT_EQ(globe.picture.size(), kSize);
  EXPECT_GT(globe.litPoints(), kLeastLit);
}

}  // namespace
}  // namespace nimbara
