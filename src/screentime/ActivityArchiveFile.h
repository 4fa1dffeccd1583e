#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include <sys/stat.h>

#include "base/FileDescriptor.h"
#include "screentime/ActivityArchiveStore.h"

namespace quillmeter {

// The archive as one file, replaced atomically, readable by the user alone. The right to write is a lock on an empty
// file beside it
// ("activity.json.lock"), which the system releases when the process ends, however it ends. Owned by the composition.
class ActivityArchiveFile final : public ActivityArchiveStore {
 public:
  explicit ActivityArchiveFile(std::filesystem::path path);
  // Where the user's archive lies below the folder for user data.
  static std::filesystem::path defaultPath(const std::filesystem::path& dataHome) {
    return dataHome / "Quillmeter" / "ScreenTime" / "activity.json";
  }

  ArchiveOutcome claim() override;
  bool isClaimed() const override { return static_cast<bool>(lock_); }
  tl::expected<std::optional<ActivityArchive>, int> load() override;
  ArchiveOutcome save(const ActivityArchiveView& archive) override;
  ArchiveOutcome remove() override;
  bool isAsLeft() const override;

  const std::filesystem::path& path() const { return path_; }

 private:
  struct Signature {
    dev_t device = 0;
    ino_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modifiedNanoseconds = 0;
    friend bool operator==(const Signature&, const Signature&) = default;
  };
  static Signature signatureOf(const struct stat& status);
  std::optional<Signature> currentSignature() const;
  bool lockIsInPlace() const;

  std::filesystem::path path_;
  std::filesystem::path lockPath_;
  FileDescriptor lock_;
  std::optional<Signature> left_;  // absent: nothing was stored
};

}  // namespace quillmeter
