#!/bin/sh
# Runs all steps of the analysis in their order, each from this folder, and ends at the first that fails.
set -eu
cd "$(dirname "$0")"
found=0
for step in Steps/*; do
    [ -f "$step" ] || continue
    case $step in
    *.py) set -- python3 "$step" ;;
    *.R | *.r) set -- Rscript "$step" ;;
    *.sh) set -- sh "$step" ;;
    *) continue ;;
    esac
    found=$((found + 1))
    echo "== $step"
    "$@"
done
echo "$found steps done"
