#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ctl/ToolRun.h"

namespace quillmeter::test {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(Streams, colourIsForTerminalsOnly) {
  ToolRun tool;
  const char* escape = "\x1b[";
  EXPECT_THAT(tool.run({"settings"}).out, Not(HasSubstr(escape)));
  tool.output = OutputKind::terminal;
  EXPECT_THAT(tool.run({"settings"}).out, HasSubstr(escape));
  EXPECT_THAT(tool.run({"settings", "get", "settings.appTheme"}).out, Not(HasSubstr(escape)));
  tool.environment["NO_COLOR"] = "";
  EXPECT_THAT(tool.run({"settings"}).out, HasSubstr(escape));
  tool.environment["NO_COLOR"] = "1";
  EXPECT_THAT(tool.run({"settings"}).out, Not(HasSubstr(escape)));
  tool.environment.erase("NO_COLOR");
  tool.environment["TERM"] = "dumb";
  EXPECT_THAT(tool.run({"settings"}).out, Not(HasSubstr(escape)));
}

TEST(Streams, aReaderThatLeftEndsTheToolQuietly) {
  ToolRun tool;
  tool.output = OutputKind::closedPipe;
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"usage"}, {"usage", "--json"}, {"settings"}, {"--help"}}) {
    const ToolResult result = tool.run(arguments);
    EXPECT_EQ(result.status, 141);
    EXPECT_EQ(result.err, "");
  }
}

TEST(Streams, outputThatCannotBeWrittenIsAFailureWithASentence) {
  for (const OutputKind kind : {OutputKind::fullDevice, OutputKind::closed}) {
    ToolRun tool;
    tool.output = kind;
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"usage", "--json"}, {"settings"}, {"--version"}}) {
      const ToolResult result = tool.run(arguments);
      EXPECT_EQ(result.status, 1);
      EXPECT_THAT(result.err, HasSubstr("无法写入标准输出"));
    }
  }
}

TEST(Streams, aClosedOutputIsNotTakenForAFileOfOurs) {
  ToolRun tool;
  tool.output = OutputKind::closed;
  ASSERT_EQ(tool.run({"settings", "set", "settings.appTheme", "dark"}).status, 0);
  EXPECT_EQ(tool.run({"settings"}).status, 1);
  tool.output = OutputKind::pipe;
  EXPECT_EQ(tool.run({"settings", "get", "settings.appTheme"}).out, "dark\n");
}

}  // namespace
}  // namespace quillmeter::test
