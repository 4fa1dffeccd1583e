#!/usr/bin/env bash
# Builds the Debian package of this tree, checks it, and installs, starts and removes it in a root of its own.
#
#   tools/check_package.sh [BUILD_FOLDER]
#
# BUILD_FOLDER is kept for the next time, with the package in it; without it all happens in a temporary folder. Needs root, and beside the
# packages of the build: dpkg-dev lintian desktop-file-utils appstream dbus-daemon dbus-bin gzip. The root sees this system's files below an
# overlay (or, where that is not to be had, dpkg works on this system itself), so that nothing of it stays.
set -euo pipefail
source=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
id=com.kesto.Quillmeter
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
build=${1:-$scratch/build}
mkdir -p "$build"
build=$(realpath "$build")
fail() {
  echo "failed: $1" >&2
  exit 1
}
step() { echo "== $1"; }

step build
# Hardened as Debian builds its own packages; how much is optimised stays the matter of the build type.
flags() { DEB_BUILD_MAINT_OPTIONS=hardening=+all DEB_CFLAGS_MAINT_STRIP="-g -O2" DEB_CXXFLAGS_MAINT_STRIP="-g -O2" dpkg-buildflags --get "$1"; }
cmake -S "$source" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr -DQUILLMETER_TESTS=OFF -DQUILLMETER_PRECOMPILE=ON \
  -DCMAKE_C_FLAGS="$(flags CPPFLAGS) $(flags CFLAGS)" -DCMAKE_CXX_FLAGS="$(flags CPPFLAGS) $(flags CXXFLAGS)" -DCMAKE_EXE_LINKER_FLAGS="$(flags LDFLAGS)" \
  >"$scratch/configure.log" || { cat "$scratch/configure.log"; fail configuring; }
ninja -C "$build" >"$scratch/build.log" || { tail -n 40 "$scratch/build.log"; fail "the build"; }

step "staged installation"
DESTDIR=$scratch/stage cmake --install "$build" >/dev/null
stage=$scratch/stage/usr
for file in bin/quillmeter bin/quillmeterctl share/applications/$id.desktop share/metainfo/$id.metainfo.xml share/dbus-1/services/$id.service \
  share/icons/hicolor/scalable/apps/$id.svg share/icons/hicolor/symbolic/apps/$id-symbolic.svg share/icons/hicolor/48x48/apps/$id.png \
  share/man/man1/quillmeter.1.gz share/man/man1/quillmeterctl.1.gz share/bash-completion/completions/quillmeter; do
  [ -f "$stage/$file" ] || fail "/usr/$file is not installed"
done
[ -z "$(find "$scratch/stage" -mindepth 1 -maxdepth 1 ! -name usr)" ] || fail "something is installed beside /usr"
desktop-file-validate "$stage/share/applications/$id.desktop"
appstreamcli validate-tree --no-net "$scratch/stage" || fail "the metadata"

step package
(cd "$build" && cpack -G DEB -B "$scratch/package" >"$scratch/cpack.log") || { cat "$scratch/cpack.log"; fail "packing"; }
package=$(echo "$scratch"/package/*.deb)
dpkg-deb --field "$package"
[[ $(dpkg-deb --field "$package" Depends) == *libqt6widgets6* ]] || fail "the package does not depend on Qt Widgets"
lintian --allow-root --display-info --fail-on error,warning,info "$package" || fail "lintian"

# What follows runs below the overlay, as its own process tree.
cat >"$scratch/inside.sh" <<'INSIDE'
set -euo pipefail
scratch=$1 package=$2 id=com.kesto.Quillmeter
fail() { echo "failed: $1" >&2; exit 1; }
dpkg --install "$package" >/dev/null
trap 'dpkg --purge quillmeter >/dev/null 2>&1 || true; kill $children 2>/dev/null || true' EXIT
children=
dpkg --verify quillmeter
[ -z "$(ldd /usr/bin/quillmeter /usr/bin/quillmeterctl /usr/libexec/quillmeter/* | grep 'not found')" ] || fail "a library is missing"
version=$(dpkg-query -W -f '${Version}' quillmeter)
[ "$(quillmeter --version)" = "quillmeter $version" ] || fail "quillmeter --version"
quillmeterctl --version >/dev/null
quillmeterctl status --json | python3 -m json.tool >/dev/null || fail "quillmeterctl status"

export HOME=$scratch/home XDG_RUNTIME_DIR=$scratch/run
mkdir -p "$HOME" && mkdir -pm 700 "$XDG_RUNTIME_DIR"
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_STATE_HOME DISPLAY WAYLAND_DISPLAY
if quillmeter 2>"$scratch/no-display"; then fail "it starts without a display"; fi
grep -q quillmeterctl "$scratch/no-display" || fail "without a display it does not name the terminal tool"

# The bus starts it, by the installed service file, as a desktop entry would.
export QT_QPA_PLATFORM=offscreen
coproc BUS { exec dbus-daemon --session --nofork --print-address 2>/dev/null; }
children="$children $BUS_PID"
read -r DBUS_SESSION_BUS_ADDRESS <&"${BUS[0]}"
export DBUS_SESSION_BUS_ADDRESS
ask() { dbus-send --session --print-reply --dest=$id /com/kesto/Quillmeter "org.freedesktop.Application.$@" >/dev/null; }
bus() { dbus-send --session --print-reply --dest=org.freedesktop.DBus / "org.freedesktop.DBus.$1" string:$id | sed -n '$s/.* //p'; }
dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.StartServiceByName string:$id uint32:0 >/dev/null ||
  fail "the bus cannot start it"
pid=$(bus GetConnectionUnixProcessID)
[ "$(readlink "/proc/$pid/exe")" = /usr/bin/quillmeter ] || fail "the bus started something else"
quillmeter --action open-dashboard || fail "a second start does not reach the first"
quillmeter --action open-settings || fail "a second start does not reach the first"
quillmeter --action refresh || fail "a second start does not reach the first"
kill -0 "$pid" || fail "it ended"
quillmeter --action quit || fail "it does not quit"
for _ in $(seq 100); do [ -d "/proc/$pid" ] || break; sleep 0.1; done
[ ! -d "/proc/$pid" ] || fail "it does not end"
dpkg --purge quillmeter >/dev/null
[ ! -e /usr/bin/quillmeter ] && [ ! -e /usr/libexec/quillmeter ] || fail "removing leaves files"
echo "installed, started, removed"
INSIDE

step "install, start, remove"
mkdir "$scratch/root" "$scratch/overlay"
cat >"$scratch/outside.sh" <<'OUTSIDE'
set -e
scratch=$1 package=$2
if mount -t tmpfs tmpfs "$scratch/overlay" && mkdir "$scratch/overlay/upper" "$scratch/overlay/work" &&
  mount -t overlay overlay -o "lowerdir=/,upperdir=$scratch/overlay/upper,workdir=$scratch/overlay/work" "$scratch/root" 2>/dev/null; then
  for folder in proc sys dev; do mount --rbind /$folder "$scratch/root/$folder"; done
  mkdir -p "$scratch/root$scratch" && mount --bind "$scratch" "$scratch/root$scratch"
  exec chroot "$scratch/root" bash "$scratch/inside.sh" "$scratch" "$package"
fi
echo "no overlay here: installing on this system"
exec bash "$scratch/inside.sh" "$scratch" "$package"
OUTSIDE
unshare --mount --propagation private bash "$scratch/outside.sh" "$scratch" "$package"
[ $# -eq 0 ] || cp -v "$package" "$build"
