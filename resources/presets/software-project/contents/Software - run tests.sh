#!/bin/sh
# All tests. Each prints what it tests; the first that fails ends them.
set -eu
cd "$(dirname "$0")/.."

printf 'the program greets … '
output=$(sh src/main.sh)
case $output in
"Hello from "?*) echo passed ;;
*)
    echo "FAILED: it said '$output'"
    exit 1
    ;;
esac
