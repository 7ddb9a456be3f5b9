#!/bin/sh
# The program. Replace it by one in the language of your choice.
set -eu
cd "$(dirname "$0")/.."
printf 'Hello from %s\n' "$(sed -n '1s/^# //p' README.md)"
