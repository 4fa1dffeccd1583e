#!/usr/bin/env bash
# The list of missing packages, under the options that run.sh sets, with a package manager of the test's own.
set -euo pipefail
tools=$1/tools
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cat >"$scratch/dpkg-query" <<'FAKE'
#!/bin/sh
# Knows "there" as installed and "removed" as configured only; fails, like the real one, when a name is unknown.
shift 3
status=0
for name in "$@"; do
  case $name in
    there) echo "there installed" ;;
    removed) echo "removed config-files" ;;
    *) status=1 ;;
  esac
done
exit $status
FAKE
chmod +x "$scratch/dpkg-query"
. "$tools/packages.sh"
PATH=$scratch:$PATH

expect() {
  local want=$1 got
  shift
  mapfile -t got < <(missing_packages "$@")
  [ "${got[*]}" = "$want" ] || { echo "missing_packages $*: '${got[*]}' instead of '$want'"; exit 1; }
}
expect "" there
expect "removed" there removed
expect "unknown" there unknown
expect "unknown removed other" unknown there removed other
