#!/usr/bin/env bash
# Plants one fault for each rule of lint.sh in a small tree of its own and expects the check to find it there, and to
# find nothing before.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd -P)
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failures=0

fresh_tree() {
    find "$tree" -mindepth 1 -delete
    mkdir -p "$tree"/HelperSource/{ports,presets,platform/posix} "$tree"/PreferencePane/model "$tree"/resources/tools "$tree"/resources/presets/small
    printf '#include <string>\n' >"$tree/HelperSource/ports/Port.h"
    printf '#include "ports/Port.h"\n\n#include <vector>\n' >"$tree/HelperSource/presets/Core.cpp"
    printf '#include <unistd.h>\n' >"$tree/HelperSource/platform/posix/Adapter.cpp"
    printf '#include "Model.h"\n#include "presets/Core.h"\n' >"$tree/PreferencePane/model/Model.cpp"
    printf '#!/bin/sh\nexit 0\n' >"$tree/dev"
    cp "$here/../../.clang-format" "$tree/.clang-format"
    cp "$here/../../resources/tools/pack_preset.py" "$tree/resources/tools/"
    printf '<plist version="1.0"><dict><key>label</key><string>Small</string></dict></plist>\n' \
        >"$tree/resources/presets/small/preset.plist"
    (cd "$tree" && python3 -B resources/tools/pack_preset.py resources/presets/small resources/presets/small/small.orvpreset)
}

# expect pass|fail CHECK WHAT
expect() {
    local outcome=pass
    "$here/lint.sh" -C "$tree" "$2" >"$tree/out" 2>&1 || outcome=fail
    if [ "$outcome" != "$1" ]; then
        printf 'expected %s of "%s": %s\n' "$1" "$2" "$3"
        sed 's/^/    /' "$tree/out"
        failures=$((failures + 1))
    fi
    rm -f "$tree/out"
}

# finds CHECK FILE TEXT: with the text added to the file the check fails.
finds() {
    fresh_tree
    printf '%b\n' "$3" >>"$tree/$2"
    expect fail "$1" "'$3' in $2"
}

# accepts CHECK FILE TEXT: with the text added to the file the check passes.
accepts() {
    fresh_tree
    printf '%b\n' "$3" >>"$tree/$2"
    expect pass "$1" "'$3' in $2"
}

fresh_tree
formats=0
"$here/lint.sh" -C "$tree" format >/dev/null 2>&1 || formats=$?
if [ "$formats" != 77 ]; then
    expect pass format "a tree without fault"
fi
for check in includes words length shell presets all; do
    expect pass "$check" "a tree without fault"
done

finds includes HelperSource/ports/Port.h '#include <unistd.h>'
finds includes HelperSource/ports/Port.h '#include "presets/Core.h"'
finds includes HelperSource/ports/Port.h '# include <QString>'
finds includes HelperSource/presets/Core.cpp '#include "platform/posix/Adapter.h"'
finds includes HelperSource/presets/Core.cpp '#include <sys/stat.h>'
finds includes HelperSource/presets/Core.cpp '#include <stringology>'
finds includes HelperSource/platform/posix/Adapter.cpp '#include <iostream>'
finds includes HelperSource/platform/posix/Adapter.cpp '#include <filesystem>'
for folder in presets menubar hotkeys wiring; do
    finds includes HelperSource/platform/posix/Adapter.cpp "#include \"$folder/Core.h\""
    finds includes HelperSource/platform/posix/Adapter.cpp "#  include <$folder/Core.h>"
done
finds includes HelperSource/platform/posix/Adapter.cpp '#include "../../presets/Core.h"'
finds includes PreferencePane/model/Model.cpp '#include <QString>'
finds includes PreferencePane/model/Model.cpp '#include "window/Page.h"'
accepts includes HelperSource/presets/Core.cpp '#include "presets/Core.h"\n#include <string_view>'
accepts includes HelperSource/platform/posix/Adapter.cpp '#include "ports/Port.h"\n#include "platform/posix/Other.h"\n#include <sys/stat.h>'
accepts includes HelperSource/platform/posix/Adapter.cpp '#include <QString>\n#include <xcb/xcb.h>'

# Put together, so that this file passes the check itself.
for leftover in "TO""DO" "FIX""ME:" "XX""X" "HA""CK" "GTEST_""SKIP()" "DIS""ABLED_Test" "the sp""ec" "Sp""ecification" \
    "Par""t 1.2" "iss""ue 3" "Iss""ue #3" "see /wo""rk/main" "/tmp/bui""ld-x" "pypi.o""rg" "https://registry.npm""js.org"; do
    finds words dev "# $leftover"
done
for word in "specific, timespec, inspected" "mktemp name.XXXXXX" "a part of 2" "build/work/list" "an issue of taste"; do
    accepts words dev "# $word"
done

finds length HelperSource/presets/Core.cpp "$(printf '//\\n%.0s' {1..600})"
accepts length HelperSource/presets/Core.cpp "$(printf '//\\n%.0s' {1..590})"
if [ "$formats" = 0 ]; then # not where another clang-format is here, which is not asked
    finds format HelperSource/presets/Core.cpp 'int  f( ) ;'
fi
finds shell dev 'rm *'  # names that begin with a dash
finds presets resources/presets/small/small.orvpreset ' '

fresh_tree
sed -i 's/Small/Smaller/' "$tree/resources/presets/small/preset.plist"
expect fail presets "a preset that was changed and not packed"
fresh_tree
mkdir "$tree/resources/presets/small/contents"
printf 'nobody names me\n' >"$tree/resources/presets/small/contents/Stray.txt"
expect fail presets "a content file that no node names"

fresh_tree
git -C "$tree" init -q
mkdir "$tree/build"
printf 'build/\n' >"$tree/.gitignore"
printf '// TO%s\n' DO >"$tree/build/Generated.cpp"
expect pass words "an ignored file in a repository"
printf '// TO%s\n' DO >"$tree/New.cpp"
expect fail words "a new file in a repository"

if [ "$failures" -ne 0 ]; then
    printf '%d expectations failed\n' "$failures"
    exit 1
fi
