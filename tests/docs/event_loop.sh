#!/usr/bin/env bash
# event_loop.sh DIRECTORY: the example event_loop waits for the device, survives its death, and ends on SIGTERM.
set -euo pipefail
bin=$1

work=$(mktemp -d)
export BINDER_RUNTIME_DIR="$work" ANDROID_LOG_TAGS='*:S'
device=
application=
end() {
  local pid
  for pid in $device $application; do
    kill -KILL "$pid" 2>/dev/null || true
  done
  rm -rf "$work"
}
trap end EXIT

start_device() {
  "$bin/vesk-device" </dev/null >"$work/device.log" &
  device=$!
}

# wait_for LINE
wait_for() {
  local line
  while IFS= read -r -t 30 -u "$output" line; do
    printf '%s\n' "$line"
    [ "$line" != "$1" ] || return 0
  done
  echo "timed out waiting for: $1"
  return 1
}

mkfifo "$work/events"
"$bin/event_loop" 202 >"$work/events" &
application=$!
exec {output}<"$work/events"
for round in 1 2; do
  echo "== round $round"
  start_device
  wait_for 'calling 202 on channel 1'
  wait_for 'news of the call to Zoë Lindqvist'
  [ "$round" = 1 ] || break
  kill -KILL "$device"
  wait "$device" || true
  wait_for 'the call service has died'
done
kill -TERM "$application"
wait_for bye
wait "$application"
application=
