#!/usr/bin/env bash
# scripts/lib/show.sh DIRECTORY: runs the demo with the programs in DIRECTORY. Exits with 0 if every step succeeded.
set -euo pipefail
bin=$1

BINDER_RUNTIME_DIR=$(mktemp -d)
export BINDER_RUNTIME_DIR
# Keeps log lines out of the application's output.
export ANDROID_LOG_TAGS='*:S'
device=
application=

end() {
  local pid
  for pid in $device $application; do
    kill -KILL "$pid" 2>/dev/null || true
  done
  rm -rf "$BINDER_RUNTIME_DIR"
}
trap end EXIT

start_device() {
  local line
  exec {output}< <(exec "$bin/vesk-device" --speed 2 </dev/null)
  device=$!
  read -r -t 20 -u "$output" line || line=
  exec {output}<&-
  if [ "$line" != ready ]; then
    echo "vesk-device did not start" >&2
    exit 1
  fi
}

echo "== starting vesk-device, then the application"
start_device
exec {events}< <(exec "$bin/phone_call" --outage)
application=$!
killed=
while true; do
  status=0
  IFS= read -r -t 60 -u "$events" line || status=$?
  if [ "$status" -gt 128 ]; then
    echo "the application hangs" >&2
    exit 1
  fi
  [ "$status" -eq 0 ] || break
  printf '%s\n' "$line"
  if [[ $line == *'may die'* ]]; then
    echo "== kill -KILL $device, the vesk-device"
    kill -KILL "$device"
    killed=$device
    sleep 1
    echo "== starting vesk-device again"
    start_device
  fi
done
wait "$application"
application=

if [ -z "$killed" ]; then
  echo "the application ended before the outage" >&2
  exit 1
fi

echo
echo "== another application, which uses all six services"
timeout 60 "$bin/device_tour"

kill -TERM "$device"
wait "$device"
device=
echo "== vesk-device has ended on SIGTERM"
