#!/bin/bash
# Remakes docs/screenshots: every page in Chinese and light colours, the main ones in English and dark ones as well, on the
# machine of tools/screenshots/machine.json. The same pictures on every computer: one font, no display, no settings of the user.
# Usage: tools/make_screenshots.sh [BUILD]   (a build with tests; build/release by default). Needs the package fonts-wqy-microhei.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/release}
program=$build/tools/screenshots/quillmeter_screenshots
fonts=/usr/share/fonts/truetype/wqy
[ -x "$program" ] || { echo "no $program: build it first (cmake --preset release && cmake --build --preset release)" >&2; exit 1; }
[ -d "$fonts" ] || { echo "no $fonts: install the package fonts-wqy-microhei" >&2; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cat >"$work/fonts.conf" <<XML
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <dir>$fonts</dir>
  <cachedir>$work/cache</cachedir>
  <match target="pattern"><edit name="family" mode="append_last"><string>WenQuanYi Micro Hei</string></edit></match>
</fontconfig>
XML
export FONTCONFIG_FILE=$work/fonts.conf

take() { QT_LOGGING_RULES="qt.qpa.*=false" "$program" --scale=2 --machine tools/screenshots/machine.json "$@"; }
take "$work/new"
take --language en --theme dark --prefix dark-en- "$work/new" dashboard-overview dashboard-agents dashboard-screentime settings-menubar popover

mkdir -p docs/screenshots
rm -f docs/screenshots/*.png
mv "$work"/new/*.png docs/screenshots/
du -cb docs/screenshots/*.png | awk 'END { printf "%d pictures, %d kB\n", NR - 1, $1 / 1000 }'
