#include "platform/linux/FontPages.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <fstream>
#include <numeric>
#include <string>
#include <utility>

#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

constexpr std::size_t fileBytes = 1 << 20;

// One private mapping of a whole file that has been read.
class MappedFile {
 public:
  MappedFile(std::string path, int rights) : path_(std::move(path)) {
    std::ofstream(path_) << std::string(fileBytes, 'g');
    const int file = ::open(path_.c_str(), O_RDONLY);
    bytes_ = static_cast<char*>(::mmap(nullptr, fileBytes, rights, MAP_PRIVATE, file, 0));
    ::close(file);
    sum();
  }
  ~MappedFile() { ::munmap(bytes_, fileBytes); }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  char* bytes() { return bytes_; }
  long sum() const { return std::accumulate(bytes_, bytes_ + fileBytes, 0L); }

  // What of it this process holds, as the kernel tells it for the mapping: "Rss: 64 kB" some lines below the path.
  long kilobytesHeld() const {
    std::ifstream mappings("/proc/self/smaps");
    bool isThis = false;
    for (std::string line; std::getline(mappings, line);) {
      if (line.ends_with(path_)) isThis = true;
      if (isThis && line.starts_with("Rss:")) return std::stol(line.substr(4));
    }
    return -1;
  }

 private:
  std::string path_;
  char* bytes_ = nullptr;
};

TEST(FontPages, thoseOfFontsLeaveAndNothingThatWasWrittenIsLost) {
  const test::TemporaryDirectory directory;
  const std::string folder = directory.path().string();
  MappedFile font(folder + "/song with a space.ttc", PROT_READ);
  MappedFile writable(folder + "/changed.ttf", PROT_READ | PROT_WRITE);
  MappedFile other(folder + "/records.db", PROT_READ);
  writable.bytes()[5] = 'x';
  const long sum = font.sum();
  ASSERT_GT(font.kilobytesHeld(), 0);

  releaseFontPages();

  EXPECT_EQ(font.kilobytesHeld(), 0);
  EXPECT_GT(other.kilobytesHeld(), 0);
  EXPECT_EQ(writable.bytes()[5], 'x');
  EXPECT_EQ(font.sum(), sum);
}

}  // namespace
}  // namespace quillmeter
