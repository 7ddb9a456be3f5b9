#!/usr/bin/env bash
# Installs the package in a clean root of the system that this machine runs, works with it as a new user, takes it away again and
# looks for what it left. Needs root, debootstrap, and the archive that the machine's own apt uses. Takes some minutes.
#
#   tests/package/install_test.sh [--cache FOLDER] [--pictures FOLDER] PACKAGE.deb
#
#   --cache FOLDER      keeps the packages that are fetched for the next time
#   --pictures FOLDER   gets pictures of the windows (xwd, and PNG where ImageMagick is)
#
# The root is a file system in memory, seen by this script's processes alone; all of them live in a namespace of their own. Whatever
# ends the script, the kernel ends these with it and takes root and mounts away: nothing is left to be cleaned up.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
export LC_ALL=C.UTF-8

fail() {
    printf 'install_test: %s\n' "$*" >&2
    exit 1
}

usage() {
    sed -n '2,/^set/{/^#/s/^# \{0,1\}//p}' "${BASH_SOURCE[0]}" >&2
    exit 2
}

cache='' pictures='' package=''
while [ $# -gt 0 ]; do
    case $1 in
    --cache) cache=${2:?a folder} && shift 2 ;;
    --pictures) pictures=${2:?a folder} && shift 2 ;;
    -*) usage ;;
    *) package=$1 && shift ;;
    esac
done
[ -f "$package" ] || usage
[ "$(id -u)" -eq 0 ] || fail "a root of its own takes root"
command -v debootstrap >/dev/null || fail "debootstrap is not installed"

if [ "${ORVANE_TEST_ROOT-}" != inside ]; then
    arguments=("$(realpath "$package")")
    if [ -n "$cache" ]; then
        mkdir -p "$cache"
        arguments=(--cache "$(realpath "$cache")" "${arguments[@]}")
    fi
    if [ -n "$pictures" ]; then
        mkdir -p "$pictures"
        arguments=(--pictures "$(realpath "$pictures")" "${arguments[@]}")
    fi
    ORVANE_TEST_ROOT=inside exec unshare --mount --pid --fork --kill-child --mount-proc "$here/install_test.sh" "${arguments[@]}"
fi

trap 'exit 130' INT
trap 'exit 143' TERM
# shellcheck source-path=SCRIPTDIR source=checks.sh
. "$here/checks.sh"
place=/mnt
root=$place/root
user=tester
mount -t tmpfs -o size=4G,mode=755 orvane-test "$place"

# The root --------------------------------------------------------------------------------------------------------------

# Lines "URI RELEASE COMPONENT" of the distribution's own archives that apt uses here.
archives() {
    # shellcheck disable=SC2016 # apt fills these in
    apt-get indextargets --format '$(ORIGIN) $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' | sed -n 's/^Debian //p' | sort -u
}

in_root() { chroot "$root" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }
as_user() {
    chroot --userspec="$user:$user" "$root" env -i --chdir="/home/$user" HOME="/home/$user" USER="$user" PATH=/usr/bin:/bin LC_ALL=C.UTF-8 \
        XDG_RUNTIME_DIR=/run/user/1000 "$@"
}
install() { in_root apt-get install --yes --quiet --no-install-recommends "$@"; }

# quietly COMMAND...: output is shown when the command fails, which ends the test.
quietly() {
    local status=0
    "$@" >"$place/log" 2>&1 </dev/null || status=$?
    [ "$status" -eq 0 ] || {
        tail -n 60 "$place/log" >&2
        fail "'$*' ended with status $status"
    }
}

make_devices() {
    local name
    mount -t tmpfs -o mode=755 orvane-test "$root/dev"
    for name in null zero full random urandom tty; do
        touch "$root/dev/$name"
        mount --bind "/dev/$name" "$root/dev/$name"
    done
    mkdir -m 1777 "$root/dev/shm"
    ln -s /proc/self/fd "$root/dev/fd"
    ln -s /proc/self/fd/0 "$root/dev/stdin"
    ln -s /proc/self/fd/1 "$root/dev/stdout"
    ln -s /proc/self/fd/2 "$root/dev/stderr"
}

make_root() {
    local suite mirror options=() uri release component
    suite=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
    mirror=$(archives | awk -v suite="$suite" '$2 == suite && $3 == "main" { print $1; exit }')
    [ -n "$mirror" ] || fail "apt uses no archive of Debian's '$suite' here; run apt-get update"
    printf 'A clean root of %s\n' "$suite"
    if [ -n "$cache" ]; then
        mkdir -p "$cache/base" "$cache/archives/partial"
        options=(--cache-dir="$cache/base")
    fi
    quietly debootstrap --variant=minbase "${options[@]}" "$suite" "$root" "$mirror"
    archives | while read -r uri release component; do
        printf 'deb %s %s %s\n' "$uri" "$release" "$component"
    done >"$root/etc/apt/sources.list"
    # Names are looked up and archives reached as this machine does it.
    cp /etc/resolv.conf /etc/hosts "$root/etc/" 2>/dev/null || true
    apt-config shell http Acquire::http::Proxy | sed -n "s/^http='\(.*\)'$/Acquire::http::Proxy \"\1\";/p" >"$root/etc/apt/apt.conf.d/90test"
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d" # no service starts
    chmod 755 "$root/usr/sbin/policy-rc.d"
    mount -t proc proc "$root/proc"
    make_devices
    if [ -n "$cache" ]; then
        mount --bind "$cache/archives" "$root/var/cache/apt/archives"
        printf 'Binary::apt-get::APT::Keep-Downloaded-Packages "true";\n' >>"$root/etc/apt/apt.conf.d/90test"
    fi
    quietly in_root apt-get update
    in_root useradd --create-home --shell /bin/bash "$user"
    mkdir -p "$root/run/user/1000"
    in_root chown "$user:$user" /run/user/1000
    chmod 700 "$root/run/user/1000"
    cp "$package" "$root/root/orvane.deb"
    mkdir "$root/opt/test"
    cp "$here/checks.sh" "$here/session.sh" "$here/user_manager.sh" "$root/opt/test/"
}

# Looking ---------------------------------------------------------------------------------------------------------------

# Every file with its kind, mode, owner and contents. Left out is what says what was installed when: records and caches of apt and
# dpkg, logs; and the user's own folder.
snapshot() {
    local left_out=(./proc ./dev ./run ./home ./root ./var/log ./var/cache/apt ./var/lib/apt ./var/lib/dpkg ./var/cache/ldconfig ./tmp/.X11-unix)
    local options=() each
    for each in "${left_out[@]}"; do options+=(-path "$each" -o); done
    (
        cd "$root"
        find . \( "${options[@]}" -false \) -prune -o -printf '%P\t%y %m %U:%G %l\n'
        find . \( "${options[@]}" -false \) -prune -o -type f -print0 | xargs -0 sha256sum | sed -E 's/^\\?([0-9a-f]+)  \.\/(.*)$/\2\t\1/'
        find var/lib/dpkg -name 'orvane*' -printf '%P\trecord of the package\n'
    ) | sort >"$1"
}

# same ONE OTHER: prints what differs.
same() { diff --unified=0 "$1" "$2" | sed -n '3,$p' | { if IFS= read -r line; then printf '%s\n' "$line" && head -n 60 && return 1; fi; }; }

home_files() { (cd "$root/home/$user" && find . -type f ! -path './pictures/*' ! -path '*/screen/*' -print0 | sort -z | xargs -0 sha256sum); }

# The packages that would come with this one, without it.
dependencies() {
    in_root apt-get install --simulate --quiet --no-install-recommends /root/orvane.deb | sed -n 's/^Inst \([^ ]*\) .*/\1/p' | { grep -vx orvane || true; }
}

recommended() { in_root dpkg-deb --field /root/orvane.deb Recommends | tr ',' '\n' | sed 's/|.*//; s/(.*//; s/ //g'; }

# Programs and libraries of the package that lack something.
unresolved() {
    local file missing=0
    for file in /usr/bin/orvane /usr/bin/orvane-helper /usr/bin/orvane-settings /usr/libexec/orvane/orvane-bus; do
        if in_root ldd -r "$file" 2>&1 | grep -E 'not found|undefined symbol'; then
            missing=1
        fi
    done
    return "$missing"
}

# On the command line ---------------------------------------------------------------------------------------------------

sample=/usr/share/orvane/presets/film-production/film-production.orvpreset

made_by_command_line() {
    [ -f "$1/Slate.txt" ] && [ "$(find "$1" -mindepth 1 | wc -l)" -gt 20 ] && [ "$(stat -c %U "$1")" = "$(stat -c %U "$root/home/$user")" ]
}

command_line() {
    local made version
    version=$(in_root dpkg-query --show orvane | cut -f 2)
    check "nothing that the programs link is missing" unresolved
    check "orvane --version says $version" [ "$(as_user orvane --version)" = "orvane $version" ]
    check "orvane-helper starts without a display" as_user env QT_QPA_PLATFORM=offscreen orvane-helper --version
    check "orvane-settings starts without a display" as_user env QT_QPA_PLATFORM=offscreen orvane-settings --version
    check "the platform for X11 has its libraries" fails in_root sh -c 'ldd /usr/lib/*/qt6/plugins/platforms/libqxcb.so | grep "not found"'
    check "orvane add takes a ready-made preset" as_user orvane add "$sample"
    check "which orvane list shows" grep -q 'Film production' <(as_user orvane list)
    check "and orvane check finds nothing wrong with" as_user orvane check "Film production"
    as_user mkdir -p Work
    made=$(as_user orvane create "Film production" --in "/home/$user/Work" --set Client=Acme --set "Production=Night Train" --no-input --no-open) ||
        made=/nowhere
    check "orvane create makes the folder and runs its script" made_by_command_line "$root$made"
    # shellcheck disable=SC2016 # for the shell in there
    check "orvane speaks German and French" in_root bash -c '[[ $(LANGUAGE=de orvane --help) = Aufruf:* && $(LANGUAGE=fr orvane --help) = Utilisation* ]]'
    check "there are manual pages" test -s "$root/usr/share/man/man1/orvane.1.gz" -a -s "$root/usr/share/man/man1/orvane-helper.1.gz" \
        -a -s "$root/usr/share/man/man1/orvane-settings.1.gz"
    # shellcheck disable=SC2016 # for the shell in there
    check "bash completes its commands" in_root bash -c '. /usr/share/bash-completion/completions/orvane &&
        COMP_WORDS=(orvane cre) COMP_CWORD=1 && f=$(complete -p orvane | sed "s/.*-F \([^ ]*\) .*/\1/") && $f orvane cre orvane && [[ " ${COMPREPLY[*]} " = *" create "* ]]'
    check "no file of the package is changed by this" in_root dpkg --verify orvane
    check "the programs are hardened" "$here/../lint/hardening.sh" --release "$root"/usr/bin/orvane{,-helper,-settings} "$root"/usr/libexec/orvane/orvane-bus
}

take_pictures() {
    local each name
    [ -n "$pictures" ] || return 0
    for each in "$root/home/$user/pictures"/*.xwd; do
        [ -f "$each" ] || continue
        name=$(basename "$each" .xwd)
        cp "$each" "$pictures/"
        if command -v convert >/dev/null; then
            convert "xwd:$each" "$pictures/$name.png" 2>/dev/null || true
        fi
    done
}

# A stage that counts for itself, in the root.
stage() {
    local words=$1 status=0
    shift
    "$@" >"$place/stage" 2>&1 </dev/null || status=$?
    sed 's/^/    /' "$place/stage"
    check "$words ($(tail -n 1 "$place/stage"))" [ "$status" -eq 0 ]
}

# ------------------------------------------------------------------------------------------------------------------------

make_root

printf 'With what it depends on, and nothing else\n'
mapfile -t needed < <(dependencies)
[ ${#needed[@]} -gt 0 ] || fail "apt names no dependencies: $(in_root apt-get install --simulate --no-install-recommends /root/orvane.deb 2>&1 | tail -n 5)"
quietly install "${needed[@]}"
snapshot "$place/before"
check "apt installs the package" install /root/orvane.deb
command_line
home_files >"$place/home-before"
check "apt purges the package" in_root apt-get purge --yes --quiet orvane
snapshot "$place/after"
check "and nothing is left of it" same "$place/before" "$place/after"
home_files >"$place/home-after"
check "but the user's own files" same "$place/home-before" "$place/home-after"

printf 'With what it recommends, on a desktop\n'
mapfile -t more < <(recommended)
tools=(xvfb openbox xdotool x11-utils dbus dbus-daemon dbus-bin libglib2.0-bin shared-mime-info desktop-file-utils hicolor-icon-theme fonts-dejavu-core procps)
quietly install "${more[@]}" "${tools[@]}"
snapshot "$place/before"
check "apt installs the package once more" install /root/orvane.deb
mkdir -p "$root/tmp/.X11-unix" && chmod 1777 "$root/tmp/.X11-unix"
stage "a session on X11" as_user dbus-run-session -- /opt/test/session.sh
take_pictures
if why=$("$here/user_manager.sh" --can 2>&1); then
    stage "a session under systemd" "$here/user_manager.sh" --outside "$root" "$user"
else
    printf 'Left out: a session under systemd, since %s\n' "$why"
fi
check "the Wayland platform of Qt came along" in_root sh -c 'ls /usr/lib/*/qt6/plugins/platforms/libqwayland-generic.so'
check "no file of the package is changed by all this" in_root dpkg --verify orvane
home_files >"$place/home-before"
check "apt removes the package" in_root apt-get remove --yes --quiet orvane
check "its autostart entry, which the administrator may have changed, stays" test -f "$root/etc/xdg/autostart/org.orvane.Helper.desktop"
check "apt purges what is left" in_root apt-get purge --yes --quiet orvane
snapshot "$place/after"
check "and nothing is left of it" same "$place/before" "$place/after"
home_files >"$place/home-after"
check "but the user's own files" same "$place/home-before" "$place/home-after"
printf 'The user keeps, besides the folders made:\n'
(cd "$root/home/$user" && find . -type f -newer "$root/root/orvane.deb" ! -path './Work/*' ! -path './Jobs/*' ! -path './pictures/*' ! -path '*/screen/*' | sort | sed 's/^/    /')
results
