#pragma once

#include <optional>

#include <tl/expected.hpp>

#include "screentime/model/ActivityArchive.h"

namespace quillmeter {

enum class ArchiveOutcome {
  done,
  heldByOther,  // another process holds the right to write
  failed,
};

// Where the screen-time record is kept. Only one process at a time may write it; reading needs no right. Main thread.
class ActivityArchiveStore {
 public:
  virtual ~ActivityArchiveStore() = default;
  // Takes the right to write until the store ends; done as well when it is held already.
  virtual ArchiveOutcome claim() = 0;
  virtual bool isClaimed() const = 0;
  // The stored archive; absent when nothing is stored. An error (the errno, or EBADMSG for content that breaks the
  // rules) means that something is there that must not be overwritten.
  virtual tl::expected<std::optional<ActivityArchive>, int> load() = 0;
  // Replaces the stored archive as a whole. Needs the claim, and gives it up when it turns out to be another's
  // meanwhile.
  virtual ArchiveOutcome save(const ActivityArchiveView& archive) = 0;
  // Nothing stored counts as removed. Takes the claim first.
  virtual ArchiveOutcome remove() = 0;
  // Whether the stored archive is still the one last loaded, saved or removed here, untouched by others.
  virtual bool isAsLeft() const = 0;
};

}  // namespace quillmeter
