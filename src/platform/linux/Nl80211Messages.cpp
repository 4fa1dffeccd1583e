#include "platform/linux/Nl80211Messages.h"

#include <linux/genetlink.h>
#include <linux/nl80211.h>

namespace quillmeter {
namespace {

constexpr double megabitsPerUnit = 0.1;  // rates come in 100 kbit/s

std::optional<std::uint8_t> commandOf(const RtnetlinkMessage& message) {
  const auto head = message.body<genlmsghdr>();
  return head ? std::optional(head->cmd) : std::nullopt;
}

template <typename Value>
std::optional<Value> valueIn(std::span<const std::byte> attributes, int type) {
  const auto payload = netlinkAttribute(attributes, type);
  return payload ? RtnetlinkMessage(*payload).valueAt<Value>(0) : std::nullopt;
}

std::optional<double> transmitRateIn(std::span<const std::byte> station) {
  const auto rate = netlinkAttribute(station, NL80211_STA_INFO_TX_BITRATE);
  if (!rate) return std::nullopt;
  // The narrow one is 0 or missing where the rate does not fit.
  if (const auto wide = valueIn<std::uint32_t>(*rate, NL80211_RATE_INFO_BITRATE32)) return *wide * megabitsPerUnit;
  if (const auto narrow = valueIn<std::uint16_t>(*rate, NL80211_RATE_INFO_BITRATE)) return *narrow * megabitsPerUnit;
  return std::nullopt;
}

}  // namespace

std::optional<std::uint16_t> genericFamilyId(const RtnetlinkMessage& message) {
  if (message.type() != GENL_ID_CTRL || commandOf(message) != CTRL_CMD_NEWFAMILY) return std::nullopt;
  return message.attributeValue<std::uint16_t>(sizeof(genlmsghdr), CTRL_ATTR_FAMILY_ID);
}

std::optional<WirelessInterface> stationInterface(const RtnetlinkMessage& message) {
  constexpr std::size_t body = sizeof(genlmsghdr);
  if (commandOf(message) != NL80211_CMD_NEW_INTERFACE ||
      message.attributeValue<std::uint32_t>(body, NL80211_ATTR_IFTYPE) != NL80211_IFTYPE_STATION) {
    return std::nullopt;
  }
  const auto index = message.attributeValue<std::int32_t>(body, NL80211_ATTR_IFINDEX);
  std::string name(message.attributeText(body, NL80211_ATTR_IFNAME));
  if (!index || *index <= 0 || name.empty()) return std::nullopt;
  return WirelessInterface{*index, std::move(name)};
}

std::optional<StationLink> stationLink(const RtnetlinkMessage& message) {
  if (commandOf(message) != NL80211_CMD_NEW_STATION) return std::nullopt;
  const auto station = message.attribute(sizeof(genlmsghdr), NL80211_ATTR_STA_INFO);
  if (!station) return std::nullopt;
  StationLink link;
  auto signal = valueIn<std::int8_t>(*station, NL80211_STA_INFO_SIGNAL);
  if (!signal) signal = valueIn<std::int8_t>(*station, NL80211_STA_INFO_SIGNAL_AVG);
  if (signal) link.signal = *signal;
  link.transmitRate = transmitRateIn(*station);
  return link;
}

}  // namespace quillmeter
