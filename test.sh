#!/usr/bin/env bash
# Builds and runs all tests, then the same tests under AddressSanitizer and UndefinedBehaviorSanitizer.
# Installs what they need on Debian 12. Ends with one line: N passed, N failed[, N skipped].
#   ./test.sh           both passes
#   ./test.sh release   one pass: release, asan, tsan or dev (names of the presets)
set -uo pipefail
cd "$(dirname "$0")" || exit 1
. tools/packages.sh
install_missing "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" || exit 1

presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(release asan)
passed=0 failed=0 skipped=0

# The figure of the report's first element, whose attributes stand on lines of their own.
attribute() { sed -n "1,12s/.*$1=\"\([0-9]*\)\".*/\1/p" "$2" | head -n 1; }

# Runs one preset's tests and adds its counts. A build that fails counts as one failed test.
run_preset() {
  local preset=$1 report=$PWD/build/$1/junit.xml total bad skip
  echo "== $preset: build"
  cmake --preset "$preset" -DQUILLMETER_BENCH=OFF >"/tmp/quillmeter-configure.$$" 2>&1 || { cat "/tmp/quillmeter-configure.$$"; failed=$((failed + 1)); return; }
  cmake --build --preset "$preset" || { failed=$((failed + 1)); return; }
  echo "== $preset: test"
  rm -f "$report"
  ctest --preset "$preset" --output-junit "$report" --parallel 2 --progress --no-tests=error >"build/$preset/ctest.log" 2>&1
  grep -vE '^\[?[0-9]+/[0-9]+|^ *[0-9]+/[0-9]+ Test|^ *Start ' "build/$preset/ctest.log" | tail -n 200
  if [ ! -s "$report" ]; then failed=$((failed + 1)); return; fi
  total=$(attribute tests "$report") bad=$(attribute failures "$report") skip=$(attribute skipped "$report")
  passed=$((passed + total - bad - skip)) failed=$((failed + bad)) skipped=$((skipped + skip))
}

for preset in "${presets[@]}"; do run_preset "$preset"; done
rm -f "/tmp/quillmeter-configure.$$"
summary="$passed passed, $failed failed"
[ "$skipped" -eq 0 ] || summary="$summary, $skipped skipped"
echo "$summary"
[ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
