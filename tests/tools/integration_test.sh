#!/usr/bin/env bash
# What the desktop reads of an installation: entry, metadata, icons, service, manual pages, completions.
#   integration_test.sh SOURCE BUILD VERSION
set -uo pipefail
source=$1 build=$2 version=$3
id=com.kesto.Quillmeter
failures=0
fail() {
  echo "failed: $1" >&2
  failures=$((failures + 1))
}
# quiet WHAT COMMAND...: succeeds and has nothing to say.
quiet() {
  local what=$1 said
  shift
  said=$("$@" 2>&1) || fail "$what ($* ended with $?)"
  [ -z "$said" ] || fail "$what: $said"
}

entry=$source/data/desktop/$id.desktop
quiet "desktop entry" desktop-file-validate "$entry"
metainfo=$build/integration/$id.metainfo.xml
appstreamcli validate --no-net "$metainfo" || fail "metadata"
grep -q "<release version=\"$version\"" "$metainfo" || fail "the metadata tell of another version"
head -n 1 "$source/data/debian/changelog" | grep -qF "($version)" || fail "the package's changelog ends with another version"

# Every action of the entry is one that the program knows, and the other way round, but for those of a key binding.
listed=$(sed -n 's/^Actions=//p' "$entry" | tr ';' '\n' | sed '/^$/d' | sort)
known=$(sed -n 's/^    {"\([a-z-]*\)", AppAction::.*/\1/p' "$source/src/app/AppAction.h" | grep -vx toggle-popover | sort)
[ "$listed" = "$known" ] || fail "actions: the entry lists [${listed//$'\n'/ }], the program knows [${known//$'\n'/ }]"
for action in $known toggle-popover; do
  for file in data/man/quillmeter.1 data/completions/quillmeter.bash data/completions/_quillmeter data/completions/quillmeter.fish; do
    sed 's/\\-/-/g' "$source/$file" | grep -qw -- "$action" || fail "$file does not tell of $action"
  done
done
grep -q '^Exec=/.*/quillmeter --hidden$' "$build/integration/$id.service" || fail "the service starts no absolute path"

theme=$build/icons/hicolor
for picture in "$theme/scalable/apps/$id.svg" "$theme/symbolic/apps/$id-symbolic.svg"; do
  quiet "$picture" /usr/bin/python3 -c 'import sys, xml.etree.ElementTree as t; assert t.parse(sys.argv[1]).getroot().tag == "{http://www.w3.org/2000/svg}svg"' "$picture"
done
for size in 16 22 24 32 48 64 128 256 512; do
  quiet "icon of $size pixels" /usr/bin/python3 -c 'import struct, sys; b = open(sys.argv[1], "rb").read(24); assert b[1:4] == b"PNG" and struct.unpack(">II", b[16:24]) == (int(sys.argv[2]),) * 2' \
    "$theme/${size}x$size/apps/$id.png" "$size"
done

for page in "$source"/data/man/*.1; do quiet "$page" groff -man -ww -b -z -K utf8 -T utf8 "$page"; done
for file in "$source"/data/completions/*.bash; do quiet "$file" bash -n "$file"; done
exit $((failures > 0))
