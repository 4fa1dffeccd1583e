#!/usr/bin/env bash
# What programs cost while they run unattended: processor time, wake-ups and memory, all measured over the same time.
#
#   tools/measure_cost.sh QUILLMETERCTL [HOME_DIR]    `watch --interval 2` beside i3status, with the targets
#   tools/measure_cost.sh --app QUILLMETER [HOME_DIR] the desktop application idle in a tray, with its targets (measure_app_cost.sh)
#   tools/measure_cost.sh --pid PID                   a process that runs already
#
# HOME_DIR is one that generate_log_home made: its .codex and .claude are connected. SECONDS_MEASURED (60) and SECONDS_SETTLED (45, which
# holds the first scan and the one after) may be set. Wake-ups are the voluntary context switches of all threads (a preemption by other load
# wakes nobody up; a thread that ends meanwhile takes its own with it); RSS and PSS are those at the end. The view draws on a pseudo terminal
# that nobody reads. Exit status 1 when a target is missed.
set -euo pipefail
seconds=${SECONDS_MEASURED:-60}
settle=${SECONDS_SETTLED:-45}

# reading PID -> "CPU_TICKS SWITCHES RSS_KB PSS_KB"
reading() {
  local stat ticks switches rss pss
  stat=$(cat "/proc/$1/stat")
  read -r -a fields <<<"${stat##*) }"
  ticks=$((fields[11] + fields[12]))
  switches=$(cat /proc/"$1"/task/*/status | awk '/^voluntary_ctxt_switches/ { n += $2 } END { print n }')
  rss=$(awk '/^VmRSS/ { print $2 }' "/proc/$1/status")
  pss=$(awk '/^Pss:/ { print $2 }' "/proc/$1/smaps_rollup")
  echo "$ticks $switches $rss $pss"
}

# report NAME FIRST LAST: a line for people; the three figures that have targets go to the named variables.
report() {
  local -a a b
  read -r -a a <<<"$2"
  read -r -a b <<<"$3"
  cpu=$(awk -v t=$((b[0] - a[0])) -v hz="$(getconf CLK_TCK)" -v s="$seconds" 'BEGIN { printf "%.3f", t / hz * 60 / s }')
  wakeups=$(awk -v n=$((b[1] - a[1])) -v s="$seconds" 'BEGIN { printf "%.2f", n / s }')
  rss=${b[2]}
  pss=${b[3]}
  growth=$((b[2] - a[2]))
  printf '%-12s %6s CPU s a minute  %5s wake-ups a second  RSS %6d kB (%+d)  PSS %6d kB\n' "$1" "$cpu" "$wakeups" "$rss" "$growth" "${b[3]}"
}

if [ "${1:-}" = --pid ]; then
  first=$(reading "$2")
  sleep "$seconds"
  report "$(cat "/proc/$2/comm")" "$first" "$(reading "$2")"
  exit 0
fi

missed=0
target() {  # target NAME VALUE BOUND UNIT
  awk -v v="$2" -v b="$3" 'BEGIN { exit !(v > b) }' || return 0
  echo "missed: $1 is $2 $4, at most $3" >&2
  missed=1
}

scratch=$(mktemp -d)
memory=$(mktemp -d -p /dev/shm)  # runtime directories lie in memory; on a disk each record would wait for it
children=()
finish() {
  for child in "${children[@]}"; do kill "$child" 2>/dev/null || true; done
  wait
  rm -rf "$scratch" "$memory"
}
trap finish EXIT

if [ "${1:-}" = --app ]; then
  shift
  . "$(dirname "${BASH_SOURCE[0]}")/measure_app_cost.sh"
  exit $missed
fi

tool=$(realpath "$1")
home=${2:+$(realpath "$2")}
export XDG_CONFIG_HOME=$scratch/config XDG_RUNTIME_DIR=$memory XDG_STATE_HOME=$scratch/state XDG_DATA_HOME=$scratch/data
if [ -n "$home" ]; then
  "$tool" connect codex "$home/.codex" >/dev/null
  "$tool" connect claude "$home/.claude" >/dev/null
fi

# The master side stays open and is never read.
cat >"$scratch/unread_terminal.py" <<'PYTHON'
import fcntl, os, pty, struct, sys, termios
pid, master = pty.fork()
if pid == 0:
    os.execv(sys.argv[2], sys.argv[2:])
fcntl.ioctl(master, termios.TIOCSWINSZ, struct.pack("HHHH", 40, 120, 0, 0))
with open(sys.argv[1], "w") as file:
    file.write(str(pid))
os.waitpid(pid, 0)
PYTHON
start_unread() {  # start_unread PIDFILE COMMAND...
  TERM=xterm python3 "$scratch/unread_terminal.py" "$@" &
  children+=($!)
  until [ -s "$1" ]; do sleep 0.1; done
}
start_unread "$scratch/watch.pid" "$tool" watch --interval 2
watched=$(cat "$scratch/watch.pid")
children+=("$watched")
bar=
if command -v i3status >/dev/null; then
  printf 'general { interval = 2 }\norder += "memory"\norder += "cpu_usage"\norder += "disk /"\norder += "time"\nmemory { format = "%%used" }\ncpu_usage { format = "%%usage" }\ndisk "/" { format = "%%avail" }\ntime { format = "%%H:%%M" }\n' >"$scratch/i3status"
  start_unread "$scratch/bar.pid" "$(command -v i3status)" -c "$scratch/i3status"
  bar=$(cat "$scratch/bar.pid")
  children+=("$bar")
fi

sleep "$settle"
watch_first=$(reading "$watched")
[ -z "$bar" ] || bar_first=$(reading "$bar")
sleep "$seconds"
watch_last=$(reading "$watched")
[ -z "$bar" ] || report i3status "$bar_first" "$(reading "$bar")"
report watch "$watch_first" "$watch_last"

target "processor time" "$cpu" 0.06 "s a minute"
target "wake-ups" "$wakeups" 1 "a second"
target "resident memory" "$rss" 16384 kB
exit $missed
