#!/usr/bin/env bash
# Runs a command on a session bus of its own where the bus of assistive tools is up.
set -euo pipefail
runtime=$(mktemp -d)
trap 'rm -rf "$runtime"' EXIT
export XDG_RUNTIME_DIR=$runtime QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 TEST_DISPLAY=${DISPLAY:-}
# The bus would leave its address on the display, for all that run there later.
env -u DISPLAY dbus-run-session -- bash -c '
  # Qt looks for the bus once; asking for its address starts it.
  dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress \
    >/dev/null || exit 1
  DISPLAY=$TEST_DISPLAY "$@"' run "$@"
