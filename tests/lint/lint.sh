#!/usr/bin/env bash
# Checks of the sources as text. Each prints what is wrong, with file and line, and ends with status 1 if anything is.
#
#   tests/lint/lint.sh [-C FOLDER] CHECK...
#
# FOLDER is the top of the tree to check (this one unless told), CHECK one of
#   includes   the core, the ports and the model of the settings include the standard library and each other, nothing else;
#              adapters include nothing of the core or of what wires them; nothing includes what makes programs start slowly
#   words      no leftovers in the text: notes to oneself, switched-off tests, paths of somebody's machine
#   length     no source is longer than 600 lines
#   format     clang-format would change nothing (asked only of Debian 12's version, since each lays out a little otherwise;
#              status 77 where it was to be the only check and there is another one)
#   shell      shellcheck has nothing to say
#   presets    the packed presets are what their folders give
#   all        all of these
set -euo pipefail

longest=600
format_version=14
unchecked=

# Files of the project: in version control, or new and not ignored; without version control all but build folders.
files() {
    local repository
    repository=$(git -c safe.directory='*' rev-parse --show-toplevel 2>/dev/null || true)
    if [ "$repository" = "$PWD" ]; then
        git -c safe.directory='*' ls-files -z --cached --others --exclude-standard
    else
        find . \( -path ./build -o -path ./.git \) -prune -o -type f -printf '%P\0'
    fi | while IFS= read -r -d '' file; do
        # Version control may still list what has just been deleted.
        if [ -f "$file" ] && [ ! -L "$file" ]; then
            printf '%s\0' "$file"
        fi
    done
}

# Those whose path matches an extended regular expression.
files_like() {
    files | grep -zE "$1" || true
}

# Prints the lines that arrive, each as a problem; status 1 when there were any.
problems() {
    local found=0 line
    while IFS= read -r line; do
        printf '%s: %s\n' "$1" "$line"
        found=1
    done
    return "$found"
}

# Lines of the form FILE:LINE:TEXT for each match, status 0 whether or not there is one.
matches() {
    xargs -0 -r grep -HnEI "$@" || true
}

standard_headers() {
    local list=(
        algorithm any array atomic barrier bit bitset cassert cctype cerrno cfloat charconv chrono cinttypes climits cmath
        compare concepts condition_variable coroutine csignal cstdarg cstddef cstdint cstdio cstdlib cstring ctime deque
        exception execution forward_list functional future initializer_list iterator latch limits list map memory
        memory_resource mutex new numbers numeric optional queue random ranges ratio semaphore set shared_mutex
        source_location span stack stdexcept stop_token string string_view syncstream system_error thread tuple
        type_traits typeindex typeinfo unordered_map unordered_set utility valarray variant vector version
    )
    local IFS='|'
    printf '%s' "${list[*]}"
}

check_includes() {
    local status=0 allowed
    allowed="<($(standard_headers))>"
    files_like '^HelperSource/ports/.*\.(h|cpp)$' | matches '^[[:space:]]*#[[:space:]]*include' |
        { grep -vE "include[[:space:]]+($allowed|\"ports/)" || true; } |
        problems "ports include the standard library and ports only" || status=1
    files_like '^HelperSource/(presets|menubar|hotkeys)/.*\.(h|cpp)$' | matches '^[[:space:]]*#[[:space:]]*include' |
        { grep -vE "include[[:space:]]+($allowed|\"(ports|presets|menubar|hotkeys)/)" || true; } |
        problems "the core includes the standard library, ports and core only" || status=1
    files_like '^HelperSource/platform/.*\.(h|cpp)$' |
        matches '^[[:space:]]*#[[:space:]]*include[[:space:]]+("|<(presets|menubar|hotkeys|wiring)/)' |
        { grep -vE 'include[[:space:]]+"(ports|platform)/' || true; } |
        problems "adapters include headers of the system and of libraries, ports and adapters only" || status=1
    files_like '^PreferencePane/model/.*\.(h|cpp)$' | matches '^[[:space:]]*#[[:space:]]*include' |
        { grep -vE "include[[:space:]]+($allowed|\"((ports|presets|menubar|hotkeys)/)?[A-Za-z0-9_]+\.h\")" || true; } |
        problems "what the settings know includes the standard library, ports and core only" || status=1
    # Each of these initialises a good deal before main, or brings much code along.
    files_like '^(HelperSource|PresetFiles|CommandLine)/.*\.(h|cpp)$' |
        matches '^[[:space:]]*#[[:space:]]*include[[:space:]]+<(iostream|fstream|sstream|iomanip|regex|locale|filesystem)>' |
        problems "header that costs start-up time" || status=1
    return "$status"
}

check_words() {
    # The words are put together here, so that this file passes its own check.
    local status=0 notes off paths drafts hosts
    notes="\\b(TO""DO|FIX""ME|XX""X|HA""CK)\\b"
    off="GTEST_""SKIP|\\bDIS""ABLED_"
    paths="(^|[^[:alnum:]._/-])(/wo""rk/|/tmp/bui""ld-|/home/[a-z]+/src/)"
    drafts="\\b[Ss]pec(s|ification|ifications)?\\b|\\bPart [0-9]|\\b[Ii]ssues? #?[0-9]"
    hosts="deb\\.deb""ian\\.org|registry\\.npm""js|pypi\\.o""rg|crates\\.i""o|proxy\\.gol""ang|pythonho""sted"
    # A packed preset is text in base64; its folder is checked instead.
    files_like '^' | { grep -zvE '\.orvpreset$' || true; } |
        matches "$notes|$off|$paths|$drafts|$hosts" |
        problems "leftover" || status=1
    return "$status"
}

check_length() {
    local file lines
    files_like '\.(h|cpp|sh|py|cmake)$' | while IFS= read -r -d '' file; do
        lines=$(wc -l <"$file")
        if [ "$lines" -gt "$longest" ]; then
            printf '%s:%s\n' "$file" "$lines"
        fi
    done | problems "longer than $longest lines"
}

check_format() {
    local version
    version=$(clang-format --version | sed -n 's/.*version \([0-9]*\)\..*/\1/p')
    if [ "$version" != "$format_version" ]; then
        printf 'format: not checked, this is clang-format %s and not %s\n' "$version" "$format_version" >&2
        unchecked=format
        return 0
    fi
    files_like '\.(h|cpp)$' | xargs -0 -r clang-format --dry-run --Werror
}

check_shell() {
    local file first
    files_like '(^|/)(dev|run|[^/.]+|[^/]+\.sh)$' | while IFS= read -r -d '' file; do
        IFS= read -r first <"$file" 2>/dev/null || true
        case $first in
        '#!'*[/\ ]sh | '#!'*[/\ ]bash | '#!'*[/\ ]dash) printf '%s\0' "$file" ;;
        *)
            if [ "${file%.sh}" != "$file" ]; then
                printf '%s: no interpreter line\n' "$file" >&2
                printf '%s\0' "$file"
            fi
            ;;
        esac
    done | xargs -0 -r shellcheck
}

check_presets() {
    local status=0 plist folder
    while IFS= read -r -d '' plist; do
        folder=${plist%/preset.plist}
        python3 -B resources/tools/pack_preset.py --check "$folder" "$folder/${folder##*/}.orvpreset" || status=1
    done < <(files_like '^resources/presets/[^/]+/preset\.plist$')
    return "$status"
}

usage() {
    sed -n '2,/^set/{/^#/s/^# \{0,1\}//p}' "$0" >&2
    exit 2
}

top=$(cd "$(dirname "$0")/../.." && pwd -P)
if [ "${1-}" = -C ]; then
    [ $# -ge 2 ] || usage
    top=$(cd "$2" && pwd -P)
    shift 2
fi
[ $# -gt 0 ] || usage
cd "$top"

if [ "$*" = all ]; then
    set -- includes words length format shell presets
fi
result=0
for check in "$@"; do
    case $check in
    includes) check_includes || result=1 ;;
    words) check_words || result=1 ;;
    length) check_length || result=1 ;;
    format) check_format || result=1 ;;
    shell) check_shell || result=1 ;;
    presets) check_presets || result=1 ;;
    *) usage ;;
    esac
done
if [ "$result" = 0 ] && [ "$unchecked" = "$*" ]; then
    exit 77
fi
exit "$result"
