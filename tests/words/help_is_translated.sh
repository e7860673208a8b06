#!/usr/bin/env bash
# Fails when what the program says of its arguments stays as it is written, though there is a catalogue
# for the user's language: arguments are the program, the tool that compiles catalogues, and the
# catalogue without translations.
set -euo pipefail
program=$1 tool=$2 catalogue=$3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$folder/bin" "$folder/share/vantrel/translations"
# Where the program lies, it looks for its catalogues.
cp "$program" "$folder/bin/vantrel"
sed -E '/<source>/{h;s/.*<source>(.*)<\/source>.*/\1/;x};/type="unfinished"/{x;s/.*/<translation>«&»<\/translation>/}' \
  "$catalogue" >"$folder/vantrel_de.ts"
"$tool" -silent "$folder/vantrel_de.ts" -qm "$folder/share/vantrel/translations/vantrel_de.qm"
said=$(LC_ALL=de_DE.UTF-8 LANGUAGE=de "$folder/bin/vantrel" --help 2>/dev/null)
grep -F '«Files to open.»' <<<"$said" >/dev/null || {
  echo "$said" >&2
  exit 1
}
