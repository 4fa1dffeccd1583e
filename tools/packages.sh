# The Debian 12 packages that Quillmeter needs, and how they get installed. Sourced by run.sh and test.sh.

BUILD_PACKAGES=(
  cmake ninja-build g++ pkg-config python3
  libsimdjson-dev nlohmann-json3-dev libfmt-dev libcli11-dev libexpected-dev libutf8proc-dev
  libzstd-dev libsqlite3-dev libssl-dev libpulse-dev libsystemd-dev
  libxcb1-dev libxcb-screensaver0-dev libxcb-dpms0-dev
  libwayland-dev libwayland-bin wayland-protocols plasma-wayland-protocols
  qt6-base-dev qt6-wayland libqt6svg6 qt6-tools-dev qt6-l10n-tools qt6-tools-dev-tools
  fonts-wqy-microhei tzdata
)
TEST_PACKAGES=(libgtest-dev libgmock-dev fonts-dejavu-core dbus-daemon python3-dbusmock xvfb openbox xdotool trayer sway kwin-wayland iproute2 openssl pulseaudio pulseaudio-utils pipewire pipewire-pulse wireplumber desktop-file-utils appstream groff-base)

# missing_packages PACKAGE...: prints those that are not installed, one a line.
missing_packages() {
  local installed
  # dpkg-query fails as soon as one of them is unknown: that is an answer, also for callers that stop at failures.
  installed=$({ dpkg-query -W -f '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null || true; } | sed -n 's/ installed$//p')
  printf '%s\n' "$@" | grep -vxF -e "$installed" || true
}

# install_missing PACKAGE...: installs what is missing. On a system without apt-get it says what is needed and succeeds when
# the compiler and the build tools are there. All it prints goes to standard error.
install_missing() {
  if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    echo "quillmeter: this is no Debian system; the build needs what these Debian 12 packages hold: $*" >&2
    command -v cmake >/dev/null && command -v ninja >/dev/null && command -v c++ >/dev/null
    return
  fi
  local missing
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -gt 0 ] || return 0
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "quillmeter: these packages are missing; install them as root: apt-get install ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  echo "quillmeter: installing ${missing[*]}" >&2
  # A machine with old package lists may still have all that is needed.
  "${as_root[@]}" apt-get update -qq >&2 </dev/null || true
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2 </dev/null
}
