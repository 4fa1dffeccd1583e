#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "update/model/AppVersion.h"

namespace quillmeter {

// The rule that a manifest breaks, in the order in which they are tested.
enum class UpdateManifestFault {
  schemaVersion,
  version,
  build,
  minimumSystemVersion,
  scheme,
  host,
  userInfo,
  port,
  path,
  queryOrFragment,
  releaseNotesLength
};

// The newest release as the web host describes it.
struct UpdateManifest {
  static constexpr std::int64_t supportedSchemaVersion = 1;
  static constexpr std::size_t maximumReleaseNotesCharacters = 8'000;  // Unicode code points

  std::int64_t schemaVersion = 0;
  std::string version;               // "1.5.7"
  std::int64_t build = 0;            // 1 and above
  std::string minimumSystemVersion;  // "14.0"
  std::string downloadURL;
  std::string releaseNotes;

  // Absent for what is no JSON object with these six keys of the right types. `json` is bounded by the caller.
  static std::optional<UpdateManifest> decode(std::string_view json);
  // The first broken rule; absent when the manifest may be used. A download has to lie on `webHost`.
  std::optional<UpdateManifestFault> validate(std::string_view webHost) const;
  bool isNewer(const AppVersion& running) const;
  // Whether the release runs on a system of this version.
  bool supports(std::string_view systemVersion) const;

  friend bool operator==(const UpdateManifest&, const UpdateManifest&) = default;
};

}  // namespace quillmeter
