#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "base/FileDescriptor.h"
#include "ctl/BarChart.h"
#include "ctl/DisplayWidth.h"
#include "ctl/TextTable.h"
#include "ctl/ToolCommandName.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::ctl {
namespace {

// What a console that is no terminal writes.
template <typename Print>
std::string printed(const Print& print) {
  const test::TemporaryDirectory scratch;
  const auto path = scratch.write("out", "");
  const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
  Console console(file.get(), file.get());
  print(console);
  EXPECT_EQ(console.finish(ExitCode::done), ExitCode::done);
  return test::readFile(path);
}

TEST(DisplayWidth, countsCellsByTheUnicodeTables) {
  const std::pair<const char*, int> cases[] = {
      {"", 0},          {"Codex", 5},       {"千问办公", 8}, {"ｆｕｌｌ", 8}, {"한국어", 6},   {"ｶﾅ", 2},
      {"e\xCC\x81", 1}, {"日本語 log", 10}, {"█▏…·—", 5},    {"🚀", 2},        {"\xFF\xFE", 2}, {"\xE5\x8D", 2},
  };
  for (const auto& [text, width] : cases) EXPECT_EQ(displayWidth(text), width) << text;
}

TEST(DisplayWidth, foreignNamesCannotSteerTheTerminal) {
  EXPECT_EQ(printable("a\x1b[2Jb\nc\td\x7f"), "a�[2Jb�c�d�");
  EXPECT_EQ(printable("x\xC2\x9Bm \xE2\x80\xAEtxt.exe \xFF"), "x�m �txt.exe �");
  EXPECT_EQ(printable("/home/李/项目 é"), "/home/李/项目 é");
}

TEST(DisplayWidth, textIsCutBetweenCharacters) {
  EXPECT_EQ(truncatedToWidth("千问办公", 8), "千问办公");
  EXPECT_EQ(truncatedToWidth("千问办公", 7), "千问办…");
  EXPECT_EQ(truncatedToWidth("千问办公", 6), "千问…");
  EXPECT_EQ(truncatedToWidth("abc", 0), "");
  EXPECT_EQ(padded("千", 4, Alignment::right), "  千");
  EXPECT_EQ(padded("千问", 3, Alignment::left), "千问");
}

TEST(TextTable, columnsLineUpAlthoughCharactersAreWide) {
  const std::string text = printed([](Console& console) {
    TextTable table({Alignment::left, Alignment::right, Alignment::left});
    table.addHead({"Agent", "今天", "状态"});
    table.addRow({{"千问办公"}, {"1.0K"}, {"已连接"}});
    table.addRow({{"Pi"}, {"999"}, {""}});
    table.addRow({{"a\nb"}});
    table.print(console);
  });
  EXPECT_EQ(text,
            "Agent     今天  状态\n"
            "千问办公  1.0K  已连接\n"
            "Pi         999\n"
            "a�b\n");
}

TEST(BarChart, barsGrowByEighths) {
  const std::pair<double, const char*> cases[] = {{0, ""},     {-1, ""},       {0.0001, "▏"}, {0.125, "▌"}, {0.25, "█"},
                                                  {0.5, "██"}, {0.97, "███▉"}, {1, "████"},   {7, "████"}};
  for (const auto& [fraction, bar] : cases) EXPECT_EQ(blockBar(fraction, 4), bar) << fraction;
  EXPECT_EQ(blockBar(1.0 / 0.0, 1), "█");
  EXPECT_EQ(blockBar(0.0 / 0.0, 4), "");
}

TEST(BarChart, theGreatestValueTakesTheWholeWidthAndNothingShowsNoBar) {
  const std::string text = printed([](Console& console) {
    printBarChart(console, {{"08:00", 0, "0"}, {"09:00", 500, "500"}, {"10:00", 1, "1"}, {"11:00", 1000, "1.0K"}});
  });
  std::string full;
  for (int i = 0; i < 48; ++i) full += "█";
  EXPECT_EQ(text, "08:00\n09:00  " + full.substr(0, full.size() / 2) + " 500\n10:00  ▏ 1\n11:00  " + full + " 1.0K\n");
}

TEST(ToolCommandName, isWhatTheUserTypes) {
  EXPECT_EQ(toolCommandName(nullptr, "/usr/bin/quillmeterctl"), "/usr/bin/quillmeterctl");
  EXPECT_EQ(toolCommandName("./run.sh", "/x/build/quillmeterctl"), "./run.sh");
  EXPECT_EQ(toolCommandName("", ""), "quillmeterctl");
  EXPECT_EQ(toolCommandName("../my tree/it's/run.sh", "x"), "'../my tree/it'\\''s/run.sh'");
}

}  // namespace
}  // namespace quillmeter::ctl
