#!/usr/bin/env bash
# Fails when the catalogue of texts is not what the sources hold: arguments are the tool that collects
# them, the folder of the sources, the catalogue, and the options of the tool.
set -euo pipefail
tool=$1 sources=$2 catalogue=$3
shift 3
fresh=$(mktemp -d)
trap 'rm -rf "$fresh"' EXIT
# What the tool says of a text without a context is a text that no translation would reach.
if ! said=$("$tool" "$@" "$sources" -ts "$fresh/vantrel.ts" 2>&1) ||
    grep -E 'Q_OBJECT|tr\(\)' <<<"$said"; then
  echo "$said" >&2
  exit 1
fi
diff -u "$catalogue" "$fresh/vantrel.ts" || {
  echo "The catalogue is out of date; ./dev translations brings it up to date." >&2
  exit 1
}
