#!/usr/bin/env bash
# Installs what the build needs (Debian 12), builds, and starts Quillmeter.
#   ./run.sh                            the desktop application; without a display the live view in the terminal (without a
#                                       terminal: the usage report)
#   ./run.sh quillmeter ARGUMENTS...    the desktop application with these arguments
#   ./run.sh ARGUMENTS...               quillmeterctl with these arguments
# Standard output belongs to the program alone; what the build has to say goes to standard error.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$root/build/run
programs=(quillmeter quillmeterctl quillmeter-record quillmeter-query)
. "$root/tools/packages.sh"

fail() {
  echo "quillmeter: $1" >&2
  exit 1
}

# Packages are looked at again only when their list changed.
ensure_packages() {
  local stamp=$build/packages.stamp
  [ "$stamp" -nt "$root/tools/packages.sh" ] && return
  install_missing "${BUILD_PACKAGES[@]}" || fail "packages are missing"
  mkdir -p "$build"
  touch "$stamp"
}

# configure [--fresh]
configure() {
  (cd "$root" && cmake --preset run "$@") >"$build/configure.log" 2>&1 || { cat "$build/configure.log" >&2; return 1; }
}

is_current() { ninja -C "$build" -n "${programs[@]}" 2>/dev/null | grep -q 'no work to do'; }

# Progress on a terminal, a log elsewhere.
compile() {
  if [ -t 2 ]; then
    ninja -C "$build" "${programs[@]}" >&2
  else
    ninja -C "$build" "${programs[@]}" >"$build/build.log" 2>&1
  fi
}

# Without changes this is one look of ninja. A tree that was moved, or whose cache is stale, is configured from scratch.
build_programs() {
  is_current && return
  echo "quillmeter: building (the first time takes a few minutes)" >&2
  if [ -f "$build/build.ninja" ] && compile; then return; fi
  configure --fresh || fail "configuring failed"
  compile && return
  [ -t 2 ] || tail -n 60 "$build/build.log" >&2
  fail "the build failed"
}

ensure_packages
if command -v flock >/dev/null; then
  exec {lock}>"$build/lock"
  flock "$lock"
fi
build_programs
[ -z "${lock:-}" ] || exec {lock}>&-

# The commands that the program proposes are those that the user can type.
case $0 in
*/*) export QUILLMETER_COMMAND=$0 ;;
*) export QUILLMETER_COMMAND=./$0 ;;
esac
if [ $# -eq 0 ]; then
  if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then set -- quillmeter
  elif [ -t 1 ]; then set -- watch
  else set -- usage
  fi
fi
if [ "$1" = quillmeter ]; then
  shift
  exec "$build/src/app/quillmeter" "$@"
fi
exec "$build/src/ctl/quillmeterctl" "$@"
