#include "platform/linux/Rtnetlink.h"

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/CheckedInt.h"

namespace quillmeter {
namespace {

constexpr std::size_t bufferBytes = 32 * 1024;  // the kernel fills at most this much of a dump into one datagram
constexpr int mostAttempts = 4;                 // of a dump that changes under way

constexpr std::size_t aligned(std::size_t bytes) {
  return (bytes + 3) & ~std::size_t{3};
}

}  // namespace

std::optional<std::span<const std::byte>> netlinkAttribute(std::span<const std::byte> bytes, int type) {
  while (const auto head = RtnetlinkMessage(bytes).valueAt<rtattr>(0)) {
    if (head->rta_len < sizeof(rtattr) || head->rta_len > bytes.size()) break;
    if ((head->rta_type & NLA_TYPE_MASK) == type) return bytes.first(head->rta_len).subspan(RTA_LENGTH(0));
    bytes = bytes.subspan(std::min(aligned(head->rta_len), bytes.size()));
  }
  return std::nullopt;
}

std::optional<std::span<const std::byte>> RtnetlinkMessage::attribute(std::size_t bodyBytes, int attributeType) const {
  const std::size_t offset = NLMSG_HDRLEN + aligned(bodyBytes);
  return bytes_.size() < offset ? std::nullopt : netlinkAttribute(bytes_.subspan(offset), attributeType);
}

std::string_view RtnetlinkMessage::attributeText(std::size_t bodyBytes, int attributeType) const {
  const auto payload = attribute(bodyBytes, attributeType);
  if (!payload) return {};
  const std::string_view text(reinterpret_cast<const char*>(payload->data()), payload->size());
  return text.substr(0, text.find('\0'));
}

RtnetlinkRequest::RtnetlinkRequest(int type, int flags) {
  nlmsghdr header{};
  header.nlmsg_type = static_cast<std::uint16_t>(type);
  header.nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags);
  append(&header, sizeof header);
}

void RtnetlinkRequest::append(const void* data, std::size_t bytes) {
  if (size_ + aligned(bytes) > sizeof bytes_) fatalError("a routing request that is too long");
  std::memcpy(bytes_ + size_, data, bytes);
  size_ += aligned(bytes);
}

void RtnetlinkRequest::addAttribute(int attributeType, const void* data, std::size_t bytes) {
  rtattr head{};
  head.rta_len = static_cast<unsigned short>(RTA_LENGTH(bytes));
  head.rta_type = static_cast<unsigned short>(attributeType);
  append(&head, sizeof head);
  append(data, bytes);
}

RtnetlinkRequest& RtnetlinkRequest::addText(int attributeType, std::string_view text) {
  const std::string terminated(text.substr(0, 128));
  addAttribute(attributeType, terminated.c_str(), terminated.size() + 1);
  return *this;
}

RtnetlinkRequest& RtnetlinkRequest::addNumber(int attributeType, std::uint32_t value) {
  addAttribute(attributeType, &value, sizeof value);
  return *this;
}

std::span<const std::byte> RtnetlinkRequest::finished(std::uint32_t sequence) {
  nlmsghdr header;
  std::memcpy(&header, bytes_, sizeof header);
  header.nlmsg_len = static_cast<std::uint32_t>(size_);
  header.nlmsg_seq = sequence;
  std::memcpy(bytes_, &header, sizeof header);
  return {bytes_, size_};
}

RtnetlinkSocket::RtnetlinkSocket(int protocol)
    : socket_(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, protocol)), buffer_(bufferBytes) {
  // Lets the kernel filter dumps by table and interface; without it (before 4.20) the caller's own filter does.
  const int on = 1;
  if (socket_ && protocol == NETLINK_ROUTE)
    ::setsockopt(socket_.get(), SOL_NETLINK, NETLINK_GET_STRICT_CHK, &on, sizeof on);
}

int RtnetlinkSocket::ask(RtnetlinkRequest request, const std::function<void(const RtnetlinkMessage&)>& visit) {
  int result = EAGAIN;
  for (int attempt = 0; attempt < mostAttempts && result == EAGAIN; ++attempt) {
    const auto bytes = request.finished(++sequence_);
    const bool isDump = (RtnetlinkMessage(bytes).header().nlmsg_flags & NLM_F_DUMP) == NLM_F_DUMP;
    if (::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0) return errno;
    result = receiveAnswer(isDump, visit);
  }
  return result;
}

int RtnetlinkSocket::receiveAnswer(bool isDump, const std::function<void(const RtnetlinkMessage&)>& visit) {
  bool isComplete = false;
  bool isDisturbed = false;
  int error = 0;
  while (!isComplete) {
    const ssize_t count = ::recv(socket_.get(), buffer_.data(), buffer_.size(), MSG_TRUNC);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno == EAGAIN ? EIO : errno;
    if (static_cast<std::size_t>(count) > buffer_.size()) return EMSGSIZE;
    forEachMessage({buffer_.data(), static_cast<std::size_t>(count)}, [&](const RtnetlinkMessage& message) {
      const nlmsghdr header = message.header();
      if (header.nlmsg_seq != sequence_) return;  // of a question that was given up
      isDisturbed = isDisturbed || (header.nlmsg_flags & NLM_F_DUMP_INTR) != 0;
      if (header.nlmsg_type == NLMSG_ERROR || header.nlmsg_type == NLMSG_DONE) {
        if (header.nlmsg_type == NLMSG_ERROR) error = -message.body<nlmsgerr>().value_or(nlmsgerr{-EIO, {}}).error;
        isComplete = true;
      } else {
        visit(message);
        isComplete = isComplete || !isDump;
      }
    });
  }
  return error == 0 && isDisturbed ? EAGAIN : error;
}

}  // namespace quillmeter
