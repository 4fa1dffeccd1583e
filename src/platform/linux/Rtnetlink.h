#pragma once

#include <linux/netlink.h>
#include <linux/rtnetlink.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/FileDescriptor.h"

namespace quillmeter {

// The payload of the first attribute of `type` among the attributes in `bytes`, which may be nested ones; absent when
// there is none.
std::optional<std::span<const std::byte>> netlinkAttribute(std::span<const std::byte> bytes, int type);

// One message of a netlink socket (routing, generic), header included. Valid during the call that hands it over.
class RtnetlinkMessage {
 public:
  explicit RtnetlinkMessage(std::span<const std::byte> bytes) : bytes_(bytes) {}

  int type() const { return header().nlmsg_type; }
  // The fixed part behind the header (ifinfomsg, rtmsg ...); absent when the message is too short for it.
  template <typename Body>
  std::optional<Body> body() const {
    return valueAt<Body>(NLMSG_HDRLEN);
  }
  // The payload of an attribute behind a fixed part of `bodyBytes`; absent when there is none.
  std::optional<std::span<const std::byte>> attribute(std::size_t bodyBytes, int attributeType) const;
  // The same as a value, of which the kernel may send more than is known here, but not less.
  template <typename Value>
  std::optional<Value> attributeValue(std::size_t bodyBytes, int attributeType) const {
    const auto payload = attribute(bodyBytes, attributeType);
    return payload ? RtnetlinkMessage(*payload).valueAt<Value>(0) : std::nullopt;
  }
  // The same as text up to its NUL.
  std::string_view attributeText(std::size_t bodyBytes, int attributeType) const;

  nlmsghdr header() const { return valueAt<nlmsghdr>(0).value_or(nlmsghdr{}); }

  template <typename Value>
  std::optional<Value> valueAt(std::size_t offset) const {
    if (bytes_.size() < offset + sizeof(Value)) return std::nullopt;
    Value value;
    __builtin_memcpy(&value, bytes_.data() + offset, sizeof value);
    return value;
  }

 private:
  std::span<const std::byte> bytes_;
};

// Calls `visit` with each complete RtnetlinkMessage of a datagram.
template <typename Visit>
void forEachMessage(std::span<const std::byte> datagram, const Visit& visit) {
  while (const auto head = RtnetlinkMessage(datagram).valueAt<nlmsghdr>(0)) {
    if (head->nlmsg_len < sizeof(nlmsghdr) || head->nlmsg_len > datagram.size()) return;
    visit(RtnetlinkMessage(datagram.first(head->nlmsg_len)));
    datagram = datagram.subspan(std::min<std::size_t>(NLMSG_ALIGN(head->nlmsg_len), datagram.size()));
  }
}

// A request under construction: header, fixed part, attributes.
class RtnetlinkRequest {
 public:
  template <typename Body>
  RtnetlinkRequest(int type, int flags, const Body& body) : RtnetlinkRequest(type, flags) {
    append(&body, sizeof body);
  }
  RtnetlinkRequest& addText(int attributeType, std::string_view text);
  RtnetlinkRequest& addNumber(int attributeType, std::uint32_t value);
  // With the sequence number set.
  std::span<const std::byte> finished(std::uint32_t sequence);

 private:
  RtnetlinkRequest(int type, int flags);
  void append(const void* data, std::size_t bytes);
  void addAttribute(int attributeType, const void* data, std::size_t bytes);

  std::byte bytes_[256] = {};
  std::size_t size_ = 0;
};

// A routing socket for questions, or one of another netlink protocol. The kernel puts its answer into the socket while
// it takes the question, so that asking never waits.
class RtnetlinkSocket {
 public:
  explicit RtnetlinkSocket(int protocol = NETLINK_ROUTE);

  // Sends the request and hands over each message of the answer. 0, or the errno of what went wrong (ENODEV: no such
  // interface).
  int ask(RtnetlinkRequest request, const std::function<void(const RtnetlinkMessage&)>& visit);

 private:
  // 0 when the answer is complete, EAGAIN when it was disturbed and has to be asked for again, else an errno.
  int receiveAnswer(bool isDump, const std::function<void(const RtnetlinkMessage&)>& visit);

  FileDescriptor socket_;
  std::vector<std::byte> buffer_;
  std::uint32_t sequence_ = 0;
};

}  // namespace quillmeter
