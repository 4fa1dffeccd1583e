#include "update/model/UpdateManifest.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include <nlohmann/json.hpp>

#include "update/model/VersionNumber.h"

namespace quillmeter {

namespace {

using Json = nlohmann::json;
using Fault = UpdateManifestFault;

bool take(const Json& object, const char* key, std::string& into) {
  const auto found = object.find(key);
  if (found == object.end() || !found->is_string()) return false;
  into = found->get<std::string>();
  return true;
}

// A whole number may be written with a fraction of zero: 12.0 is 12.
bool take(const Json& object, const char* key, std::int64_t& into) {
  constexpr double exactBound = 9'007'199'254'740'992.0;  // 2^53
  const auto found = object.find(key);
  if (found == object.end() || !found->is_number()) return false;
  if (found->is_number_float()) {
    const double value = found->get<double>();
    if (std::trunc(value) != value || std::abs(value) > exactBound) return false;
    into = static_cast<std::int64_t>(value);
    return true;
  }
  if (found->is_number_unsigned() && !std::in_range<std::int64_t>(found->get<std::uint64_t>())) return false;
  into = found->get<std::int64_t>();
  return true;
}

// The pieces of an absolute URL that are tested. Views into the text.
struct UrlPieces {
  std::string_view scheme;
  std::optional<std::string_view> userInfo;
  std::string_view host;
  std::optional<std::string_view> port;
  std::string_view path;
  bool hasQueryOrFragment = false;
};

bool isUrlCharacter(char c) {
  return c > 0x20 && c < 0x7F && std::string_view("\"<>\\^`{|}").find(c) == std::string_view::npos;
}

UrlPieces split(std::string_view url) {
  UrlPieces pieces;
  if (!std::ranges::all_of(url, isUrlCharacter)) return pieces;
  const std::size_t schemeEnd = url.find("://");
  if (schemeEnd == std::string_view::npos) return pieces;
  pieces.scheme = url.substr(0, schemeEnd);
  url.remove_prefix(schemeEnd + 3);
  const std::size_t tail = url.find_first_of("?#");
  pieces.hasQueryOrFragment = tail != std::string_view::npos;
  url = url.substr(0, tail);
  const std::size_t slash = url.find('/');
  std::string_view authority = url.substr(0, slash);
  if (slash != std::string_view::npos) pieces.path = url.substr(slash);
  if (const std::size_t at = authority.rfind('@'); at != std::string_view::npos) {
    pieces.userInfo = authority.substr(0, at);
    authority.remove_prefix(at + 1);
  }
  if (const std::size_t colon = authority.rfind(':'); colon != std::string_view::npos) {
    pieces.port = authority.substr(colon + 1);
    authority = authority.substr(0, colon);
  }
  pieces.host = authority;
  return pieces;
}

std::size_t characterCount(std::string_view utf8) {
  return static_cast<std::size_t>(
      std::ranges::count_if(utf8, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::optional<Fault> validateUrl(std::string_view url, std::string_view webHost) {
  const UrlPieces pieces = split(url);
  if (pieces.scheme != "https") return Fault::scheme;
  if (pieces.host != webHost) return Fault::host;
  if (pieces.userInfo) return Fault::userInfo;
  if (pieces.port) return Fault::port;
  if (!pieces.path.starts_with("/downloads/Quillmeter-") || !pieces.path.ends_with(".dmg")) return Fault::path;
  if (pieces.hasQueryOrFragment) return Fault::queryOrFragment;
  return std::nullopt;
}

}  // namespace

std::optional<UpdateManifest> UpdateManifest::decode(std::string_view json) {
  const Json object = Json::parse(json.begin(), json.end(), nullptr, false);
  if (!object.is_object()) return std::nullopt;
  UpdateManifest manifest;
  const bool complete =
      take(object, "schemaVersion", manifest.schemaVersion) && take(object, "version", manifest.version) &&
      take(object, "build", manifest.build) && take(object, "minimumSystemVersion", manifest.minimumSystemVersion) &&
      take(object, "downloadURL", manifest.downloadURL) && take(object, "releaseNotes", manifest.releaseNotes);
  if (!complete) return std::nullopt;
  return manifest;
}

std::optional<UpdateManifestFault> UpdateManifest::validate(std::string_view webHost) const {
  if (schemaVersion != supportedSchemaVersion) return Fault::schemaVersion;
  if (!compareVersions(version, version)) return Fault::version;
  if (build < 1) return Fault::build;
  if (!compareVersions(minimumSystemVersion, minimumSystemVersion)) return Fault::minimumSystemVersion;
  if (const auto fault = validateUrl(downloadURL, webHost)) return fault;
  if (characterCount(releaseNotes) > maximumReleaseNotesCharacters) return Fault::releaseNotesLength;
  return std::nullopt;
}

bool UpdateManifest::isNewer(const AppVersion& running) const {
  const auto order = compareVersions(version, running.marketingVersion);
  if (!order) return false;
  return *order > 0 || (*order == 0 && running.buildNumber < build);
}

bool UpdateManifest::supports(std::string_view systemVersion) const {
  const auto order = compareVersions(systemVersion, minimumSystemVersion);
  return order && *order >= 0;
}

}  // namespace quillmeter
