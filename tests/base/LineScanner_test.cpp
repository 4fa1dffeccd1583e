#include "base/LineScanner.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "base/FileDescriptor.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

using Lines = std::vector<std::pair<std::uint64_t, std::string>>;

// What a scan has to give, said as plainly as possible.
Lines markedLines(const std::string& text, const std::string& marker, std::size_t maximumLine) {
  Lines lines;
  std::uint64_t index = 0;
  for (std::size_t begin = 0; begin < text.size(); ++index) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    std::string line = text.substr(begin, end - begin);
    if (line.size() <= maximumLine && line.find(marker) != std::string::npos)
      lines.emplace_back(index, std::move(line));
    begin = end + 1;
  }
  return lines;
}

class CollectingConsumer {
 public:
  bool operator()(const ScannedLine& line) {
    for (std::size_t i = 0; i < LineScanner::paddingBytes; ++i) sum_ = sum_ + line.text.data()[line.text.size() + i];
    lines.emplace_back(line.index, std::string(line.text));
    return lines.size() < stopAfter;
  }
  Lines lines;
  std::size_t stopAfter = static_cast<std::size_t>(-1);

 private:
  volatile int sum_ = 0;  // the padding is really read
};

Lines scanFile(LineScanner& scanner, const std::filesystem::path& path, ScanEnd expected = ScanEnd::complete) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  CollectingConsumer consumer;
  EXPECT_EQ(scanner.scan(file.get(), std::ref(consumer)), expected);
  return consumer.lines;
}

Lines scanChunks(LineScanner& scanner, const std::string& text, std::size_t chunk) {
  CollectingConsumer consumer;
  scanner.begin();
  for (std::size_t at = 0; at < text.size(); at += chunk) {
    // A copy of exactly these bytes: reading beyond them is an error that the address sanitizer sees.
    const std::vector<char> piece(text.begin() + static_cast<std::ptrdiff_t>(at),
                                  text.begin() + static_cast<std::ptrdiff_t>(std::min(at + chunk, text.size())));
    EXPECT_TRUE(scanner.append({piece.data(), piece.size()}, std::ref(consumer)));
  }
  EXPECT_TRUE(scanner.finish(std::ref(consumer)));
  return consumer.lines;
}

// Lines of letters that make markers and halves of markers likely, with lengths around the sizes of the scanner.
std::string randomText(std::mt19937& random, const std::string& marker, std::size_t block, std::size_t maximumLine) {
  const std::size_t lengths[] = {0,
                                 1,
                                 marker.size(),
                                 block - 1,
                                 block,
                                 block + 1,
                                 3 * block,
                                 maximumLine - 1,
                                 maximumLine,
                                 maximumLine + 1,
                                 2 * maximumLine};
  std::string text;
  const std::size_t count = random() % 12;
  for (std::size_t i = 0; i < count; ++i) {
    std::string line(random() % 3 == 0 ? lengths[random() % std::size(lengths)] : random() % (block + 2), 'x');
    for (char& c : line) c = marker.empty() ? 'x' : random() % 4 == 0 ? marker[random() % marker.size()] : 'x';
    for (std::size_t hits = random() % 3; hits > 0 && line.size() >= marker.size(); --hits) {
      line.replace(random() % (line.size() - marker.size() + 1), marker.size(), marker);
    }
    text += line;
    if (i + 1 < count || random() % 2 == 0) text += '\n';
  }
  return text;
}

TEST(LineScanner, findsTheLinesOfAPlainSplitterWhereverTheBlocksEnd) {
  std::mt19937 random(20261121);
  const test::TemporaryDirectory folder;
  for (const std::string marker : {"\"ab\"", "m", "", "aaab", "\"token_count\""}) {
    for (const std::size_t block : {8, 13, 64, 200}) {
      const LineScanner::Sizes sizes{block, 5 * block};
      LineScanner scanner(marker, true, sizes);  // one scanner for all texts: no scan leaves anything to the next
      for (int round = 0; round < 60; ++round) {
        const std::string text = randomText(random, marker, block, sizes.maximumLine);
        const Lines expected = markedLines(text, marker, sizes.maximumLine);
        ASSERT_EQ(scanFile(scanner, folder.write("log", text)), expected)
            << "marker " << marker << " block " << block << "\n"
            << text;
        ASSERT_EQ(scanChunks(scanner, text, 1 + random() % (2 * block)), expected)
            << "marker " << marker << " block " << block << "\n"
            << text;
        ASSERT_LE(scanner.capacity(), sizes.maximumLine + 2 * block + LineScanner::paddingBytes + marker.size());
      }
    }
  }
}

TEST(LineScanner, carriageReturnsAndBytesThatAreNoTextPassThrough) {
  const std::string text = std::string("m\r\n") + '\0' + "m\xff\n\xc3\n" + "m";
  const test::TemporaryDirectory folder;
  LineScanner scanner("m");
  const Lines expected = {{0, "m\r"}, {0, std::string("\0m\xff", 3)}, {0, "m"}};
  EXPECT_EQ(scanFile(scanner, folder.write("log", text)), expected);
  EXPECT_TRUE(scanFile(scanner, folder.write("empty", "")).empty());
}

TEST(LineScanner, startsAtTheOffsetOfTheDescriptor) {
  const test::TemporaryDirectory folder;
  const auto path = folder.write("log", "m first\nm second\n" + std::string(300, 'x') + "m\n");
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(::lseek(file.get(), 8, SEEK_SET), 8);
  LineScanner scanner("m", true, {64, 1000});
  CollectingConsumer consumer;
  EXPECT_EQ(scanner.scan(file.get(), std::ref(consumer)), ScanEnd::complete);
  EXPECT_EQ(consumer.lines, (Lines{{0, "m second"}, {1, std::string(300, 'x') + "m"}}));
}

TEST(LineScanner, stopsWhenTheConsumerHasEnough) {
  const test::TemporaryDirectory folder;
  const std::string text = "m1\nm2\nm3\nm4";
  const FileDescriptor file(::open(folder.write("log", text).c_str(), O_RDONLY | O_CLOEXEC));
  LineScanner scanner("m");
  CollectingConsumer consumer;
  consumer.stopAfter = 2;
  EXPECT_EQ(scanner.scan(file.get(), std::ref(consumer)), ScanEnd::stopped);
  EXPECT_EQ(consumer.lines.size(), 2U);

  CollectingConsumer last;
  last.stopAfter = 4;
  ASSERT_EQ(::lseek(file.get(), 0, SEEK_SET), 0);
  EXPECT_EQ(scanner.scan(file.get(), std::ref(last)), ScanEnd::stopped)
      << "the line without a line feed counts like any other";
}

TEST(LineScanner, aReadErrorEndsTheScan) {
  const test::TemporaryDirectory folder;
  LineScanner scanner("m");
  CollectingConsumer consumer;
  const FileDescriptor directory(::open(folder.path().c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_EQ(scanner.scan(directory.get(), std::ref(consumer)), ScanEnd::readError);
  EXPECT_EQ(scanner.scan(-1, std::ref(consumer)), ScanEnd::readError);
  EXPECT_TRUE(consumer.lines.empty());
}

TEST(LineScanner, readsAPipe) {
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
  const FileDescriptor reader(ends[0]);
  FileDescriptor writer(ends[1]);
  const std::string text = std::string(500, 'x') + "m\n" + std::string(900, 'x') + "m\nm";
  ASSERT_EQ(::write(writer.get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
  writer.reset();
  LineScanner scanner("m", true, {64, 600});
  CollectingConsumer consumer;
  EXPECT_EQ(scanner.scan(reader.get(), std::ref(consumer)), ScanEnd::complete);
  EXPECT_EQ(consumer.lines, (Lines{{0, std::string(500, 'x') + "m"}, {2, "m"}}));
}

// The consumer cuts the file while it is read, so the beginning of the long line is gone when its marker comes.
TEST(LineScanner, aFileThatShrinksUnderTheScanLosesOnlyWhatIsGone) {
  const test::TemporaryDirectory folder;
  const std::string text = "m\n" + std::string(5000, 'x') + "m\nm last\n";
  const auto path = folder.write("log", text);
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  LineScanner scanner("m", false, {64, 10'000});
  std::vector<std::string> lines;
  const ScanEnd end = scanner.scan(file.get(), [&](const ScannedLine& line) {
    lines.emplace_back(line.text);
    EXPECT_EQ(::truncate(path.c_str(), 1000), 0);
    return true;
  });
  EXPECT_EQ(end, ScanEnd::complete);
  EXPECT_EQ(lines, std::vector<std::string>{"m"});
}

TEST(LineScanner, theBeginningOfALongLineThatWasRewrittenMeanwhileIsNoPartOfIt) {
  const test::TemporaryDirectory folder;
  const std::string text = "m\n" + std::string(2000, 'x') + "m tail\nm last\n";
  const auto path = folder.write("log", text);
  const FileDescriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC));
  LineScanner scanner("m", true, {64, 10'000});
  Lines lines;
  const ScanEnd end = scanner.scan(file.get(), [&](const ScannedLine& line) {
    lines.emplace_back(line.index, std::string(line.text));
    EXPECT_EQ(::pwrite(file.get(), "\n", 1, 30), 1);  // the block with this place was read already
    return true;
  });
  EXPECT_EQ(end, ScanEnd::complete);
  EXPECT_EQ(lines, (Lines{{0, "m"}, {2, "m last"}}));
}

// 300 MB without a line feed. Its marker comes never, at once, or when most of the line has gone by; the line behind it
// comes while the buffer is still as the giant made it.
TEST(LineScanner, aGiantLineCostsNoMemory) {
  const test::TemporaryDirectory folder;
  const auto path = folder.write("log", "short m\n");
  constexpr off_t size = 300'000'000;
  ASSERT_EQ(::truncate(path.c_str(), size), 0);  // a hole: zeros, no line feed
  const FileDescriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC));
  ASSERT_EQ(::pwrite(file.get(), "\nlast m\n", 8, size), 8);
  for (const off_t markerAt : {off_t{-1}, size - 2, off_t{10}}) {
    if (markerAt >= 0) {
      ASSERT_EQ(::pwrite(file.get(), "m", 1, markerAt), 1);
    }
    ASSERT_EQ(::lseek(file.get(), 0, SEEK_SET), 0);
    LineScanner scanner("m");
    std::vector<std::string> lines;
    const ScanEnd end = scanner.scan(file.get(), [&](const ScannedLine& line) {
      EXPECT_EQ(scanner.capacity(), LineScanner::blockBytes + LineScanner::paddingBytes) << "marker at " << markerAt;
      lines.emplace_back(line.text);
      return true;
    });
    EXPECT_EQ(end, ScanEnd::complete);
    EXPECT_EQ(lines, (std::vector<std::string>{"short m", "last m"}));
  }
}

TEST(LineScanner, aLineAtTheBoundIsDeliveredAndTheBufferShrinksAgain) {
  const test::TemporaryDirectory folder;
  std::string longest(LineScanner::maximumLineBytes, 'x');
  longest.back() = 'm';
  std::string tooLong = longest + "x";
  const auto path = folder.write(
      "log", longest + "\n" + tooLong + "\n" + std::string(3'000'000, 'y') + "\nm\n" + std::string(3'000'000, 'y'));
  LineScanner scanner("m", true);
  const Lines lines = scanFile(scanner, path);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_TRUE(lines[0].second == longest);
  EXPECT_EQ(lines[1], (std::pair<std::uint64_t, std::string>{3, "m"}));
  EXPECT_EQ(scanner.capacity(), LineScanner::blockBytes + LineScanner::paddingBytes);
}

}  // namespace
}  // namespace quillmeter
