#pragma once

#include <optional>
#include <vector>

#include "screentime/ActivityArchiveStore.h"

namespace quillmeter {

// An archive in memory that fails on demand and counts what was asked of it.
class MemoryArchiveStore final : public ActivityArchiveStore {
 public:
  ArchiveOutcome claim() override {
    ++claims;
    if (claimOutcome == ArchiveOutcome::done) claimed = true;
    return claimed ? ArchiveOutcome::done : claimOutcome;
  }
  bool isClaimed() const override { return claimed; }
  tl::expected<std::optional<ActivityArchive>, int> load() override {
    if (loadError != 0) return tl::unexpected(loadError);
    asLeft = true;
    return stored;
  }
  ArchiveOutcome save(const ActivityArchiveView& archive) override {
    ++saves;
    if (saveOutcome == ArchiveOutcome::heldByOther) claimed = false;
    if (saveOutcome != ArchiveOutcome::done) return saveOutcome;
    stored = ActivityArchive{1, archive.startedAt, archive.enabled, {archive.spans.begin(), archive.spans.end()}};
    asLeft = true;
    return ArchiveOutcome::done;
  }
  ArchiveOutcome remove() override {
    if (removeOutcome != ArchiveOutcome::done) return removeOutcome;
    stored.reset();
    loadError = 0;
    asLeft = true;
    return ArchiveOutcome::done;
  }
  bool isAsLeft() const override { return asLeft; }

  std::optional<ActivityArchive> stored;
  int loadError = 0;
  ArchiveOutcome claimOutcome = ArchiveOutcome::done;
  ArchiveOutcome saveOutcome = ArchiveOutcome::done;
  ArchiveOutcome removeOutcome = ArchiveOutcome::done;
  bool claimed = false;
  bool asLeft = true;
  int claims = 0;
  int saves = 0;
};

}  // namespace quillmeter
