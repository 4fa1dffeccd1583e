// Writes the application's icons into a folder, in the layout of an icon theme. Run by the build.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "ui/icon/ApplicationIcon.h"

using namespace quillmeter;

namespace {

bool writeText(const std::filesystem::path& file, const std::string& text) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream << text;
  return static_cast<bool>(stream.flush());
}

bool writeImage(const std::filesystem::path& file, int pixels) {
  std::filesystem::create_directories(file.parent_path());
  constexpr int smallestFile = 0;
  return ApplicationIcon::image(pixels).save(QString::fromStdString(file.string()), "PNG", smallestFile);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::filesystem::path theme = argv[1];
  const std::string name = "com.kesto.Quillmeter";
  bool written = writeText(theme / "scalable/apps" / (name + ".svg"), ApplicationIcon::svg()) &&
                 writeText(theme / "symbolic/apps" / (name + "-symbolic.svg"), ApplicationIcon::symbolicSvg());
  for (const int pixels : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
    const std::string size = std::to_string(pixels) + "x" + std::to_string(pixels);
    written = written && writeImage(theme / size / "apps" / (name + ".png"), pixels);
  }
  if (!written) std::fprintf(stderr, "icons: cannot write below %s\n", argv[1]);
  return written ? 0 : 1;
}
