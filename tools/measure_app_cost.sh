# The desktop application's part of measure_cost.sh, which sources it: QUILLMETER [HOME_DIR].
#
# Measured on a private X server with a tray (trayer), a session bus of its own and default settings: the time from start to the icon in the tray, the
# cost over a minute in which nothing is open, and the memory after ROUNDS (200) openings and closings of the dashboard and the popover. Offscreen the
# cost with the dashboard open. Needs xvfb openbox trayer xdotool wmctrl dbus-daemon libglib2.0-bin; other load falsifies the times.
rounds=${ROUNDS:-200}
starts=${STARTS:-9}
application=$(realpath "$1")
tool=$(dirname "$application")/quillmeterctl
[ -x "$tool" ] || tool=$(dirname "$application")/../ctl/quillmeterctl
home=${2:+$(realpath "$2")}
chmod 700 "$memory"
unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS DBUS_SYSTEM_BUS_ADDRESS
export HOME=$scratch XDG_CONFIG_HOME=$scratch/config XDG_RUNTIME_DIR=$memory XDG_STATE_HOME=$scratch/state XDG_DATA_HOME=$scratch/data
# Not a first start, so that a start without --hidden shows the dashboard.
"$tool" settings set onboarding.completedVersion 999 >/dev/null
if [ -n "$home" ]; then
  "$tool" connect codex "$home/.codex" >/dev/null
  "$tool" connect claude "$home/.claude" >/dev/null
fi

start_bus() {
  local address=$memory/bus
  rm -f "$address"
  dbus-daemon --session --nofork --address="unix:path=$address" 2>/dev/null &
  children+=($!)
  until [ -S "$address" ]; do sleep 0.05; done
  export DBUS_SESSION_BUS_ADDRESS=unix:path=$address
}

act() {
  gdbus call --session --dest com.kesto.Quillmeter --object-path /com/kesto/Quillmeter \
    --method org.freedesktop.Application.ActivateAction "$1" '[]' '{}' >/dev/null
}

start_application() {
  "$application" --hidden 2>"$scratch/messages" &
  app=$!
  children+=("$app")
}

end_application() {
  kill "$app" 2>/dev/null || true
  wait "$app" 2>/dev/null || true
}

start_display() {
  local number=$scratch/display
  Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$number" >/dev/null 2>&1 &
  children+=($!)
  until [ -s "$number" ]; do sleep 0.05; done
  export DISPLAY=:$(cat "$number")
  openbox --sm-disable >/dev/null 2>&1 &
  children+=($!)
  trayer --edge top --align right --widthtype request --height 28 >/dev/null 2>&1 &
  children+=($!)
  until xdotool search --onlyvisible --class trayer >/dev/null 2>&1; do sleep 0.1; done
}

# Until its window in the tray is mapped; looked for as often as possible.
milliseconds_to_icon() {
  local begin end
  begin=$(date +%s%N)
  start_application
  until xdotool search --onlyvisible --class quillmeter >/dev/null 2>&1; do
    kill -0 "$app" 2>/dev/null || { cat "$scratch/messages" >&2; exit 1; }
  done
  end=$(date +%s%N)
  echo $(((end - begin) / 1000000)) >>"$scratch/starts"
}

cost() {  # cost NAME
  local first
  sleep "$settle"
  first=$(reading "$app")
  sleep "$seconds"
  report "$1" "$first" "$(reading "$app")"
}

idle_cost() {  # idle_cost NAME
  cost "$1"
  target "$1: processor time" "$cpu" 0.10 "s a minute"
  target "$1: wake-ups" "$wakeups" 2 "a second"
  target "$1: memory (PSS)" "$pss" 28672 kB
}

pss_now() { awk '/^Pss:/ { print $2 }' "/proc/$app/smaps_rollup"; }
# What no other program shares; PSS also moves when other programs of the same libraries start and end.
private_now() { awk '/^Private_/ { n += $2 } END { print n }' "/proc/$app/smaps_rollup"; }

windows() { wmctrl -l -x 2>/dev/null | awk '$3 ~ /quillmeter/ { print $1 }'; }

shows() { [ -n "$(windows)" ]; }
shows_not() { ! shows; }
# wait_for CONDITION: up to half a second.
wait_for() {
  for _ in $(seq 25); do
    "$1" && return
    sleep 0.02
  done
  return 1
}

open_and_close() {
  act open-dashboard
  until wait_for shows; do :; done
  until shows_not; do
    for window in $(windows); do wmctrl -i -c "$window"; done
    wait_for shows_not || true
  done
  # A toggle just after the popover was closed is taken for the click that closed it.
  act toggle-popover
  until wait_for shows; do act toggle-popover; done
  act toggle-popover
  until wait_for shows_not; do act toggle-popover; done
}

growth_after_rounds() {
  local before warm after private
  before=$(pss_now) private=$(private_now)
  for _ in 1 2 3; do open_and_close; done
  sleep 40
  warm=$(pss_now)
  for _ in $(seq "$rounds"); do open_and_close; done
  sleep 40  # until the threads that painting took part in have ended
  after=$(pss_now)
  printf 'PSS: %d kB before the first opening, %d after three, %d after %d more (%+d kB, %+d since the third)\n' \
    "$before" "$warm" "$after" "$rounds" $((after - before)) $((after - warm))
  printf 'private memory: %d kB before, %d after (%+d kB)\n' "$private" "$(private_now)" $(($(private_now) - private))
  target "memory that $rounds openings leave" $((after - before)) 2048 kB
}

# Offscreen there is no tray, so that the dashboard opens by itself; told without targets.
start_bus
QT_QPA_PLATFORM=offscreen start_application
cost "offscreen, dashboard open"
end_application

start_display
export QT_QPA_PLATFORM=xcb
: >"$scratch/starts"
for _ in $(seq "$starts"); do
  milliseconds_to_icon
  [ "$(wc -l <"$scratch/starts")" -eq "$starts" ] || end_application
done
median=$(sort -n "$scratch/starts" | sed -n "$(((starts + 1) / 2))p")
echo "start to tray icon: $median ms (median of $starts: $(sort -n "$scratch/starts" | tr '\n' ' '))"
target "start to tray icon" "$median" 250 ms
idle_cost tray
growth_after_rounds
end_application
