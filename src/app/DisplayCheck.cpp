#include "app/DisplayCheck.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>

#include <xcb/xcb.h>
#include <QLibraryInfo>

#include "base/FileDescriptor.h"
#include "base/L10n.h"

namespace quillmeter {
namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

// By the rule of the Wayland library: a name below the runtime directory, or an absolute path.
bool waylandAnswers(const std::string& display) {
  const std::filesystem::path path = std::filesystem::path(environment("XDG_RUNTIME_DIR")) / display;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.native().size() >= sizeof address.sun_path) return false;
  std::ranges::copy(path.native(), address.sun_path);
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  return socket.get() >= 0 && ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

bool x11Answers(const std::string& display) {
  xcb_connection_t* connection = xcb_connect(display.c_str(), nullptr);
  const bool answers = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return answers;
}

bool hasWaylandPlugin() {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path folder = fs::path(QLibraryInfo::path(QLibraryInfo::PluginsPath).toStdString()) / "platforms";
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    if (entry.path().filename().string().starts_with("libqwayland")) return true;
  }
  return false;
}

}  // namespace

std::optional<std::string> displayProblem() {
  const std::string chosen = environment("QT_QPA_PLATFORM");
  if (!chosen.empty() && !chosen.starts_with("xcb") && !chosen.starts_with("wayland")) return std::nullopt;
  const std::string x11 = environment("DISPLAY");
  const std::string wayland = environment("WAYLAND_DISPLAY");
  const bool hasWayland = !wayland.empty() && waylandAnswers(wayland);
  if (hasWayland && hasWaylandPlugin()) return std::nullopt;
  if (!x11.empty() && x11Answers(x11)) return std::nullopt;
  if (hasWayland) {
    return QM_TR("缺少 Qt 的 Wayland 支持（软件包 qt6-wayland），无法显示窗口。在终端中请使用 quillmeterctl。");
  }
  if (x11.empty() && wayland.empty()) {
    return QM_TR("没有图形显示（DISPLAY 与 WAYLAND_DISPLAY 均未设置）。在终端中请使用 quillmeterctl。");
  }
  return L10n::format(QM_TR("无法连接图形显示“%@”。在终端中请使用 quillmeterctl。"), {x11.empty() ? wayland : x11});
}

}  // namespace quillmeter
