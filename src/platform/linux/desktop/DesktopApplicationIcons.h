#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ApplicationIcons.h"

namespace quillmeter {

class ApplicationEntryIndex;

// The icons that desktop entries name. What an entry says is passed on only when it can be an icon: a plain name of the
// icon theme, or the absolute path of an image file of a sensible size. Main thread.
class DesktopApplicationIcons final : public ApplicationIcons {
 public:
  static constexpr std::int64_t maximumFileBytes = 4'194'304;

  // The index outlives this object.
  explicit DesktopApplicationIcons(ApplicationEntryIndex& entries) : entries_(entries) {}
  std::string iconName(std::string_view applicationId) override;

 private:
  ApplicationEntryIndex& entries_;
};

}  // namespace quillmeter
