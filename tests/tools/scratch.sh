#!/usr/bin/env bash
# For the scripts that make a desktop: taking its folder away again.

# remove_scratch FOLDER: also when programs of the session that ends are still at it. The portals' document service mounts a folder
# there. What cannot be taken away within two seconds stays: it is no fault of the command that was run.
remove_scratch() {
    local i
    for ((i = 0; i < 40; i++)); do
        umount --lazy "$1/run/doc" 2>/dev/null || fusermount3 -u -z "$1/run/doc" 2>/dev/null || true
        if rm -rf "$1" 2>/dev/null; then
            return 0
        fi
        sleep 0.05
    done
    printf 'left behind: %s\n' "$1" >&2
}

# end_program PID: asks a child to end, and ends it when it has not done so within five seconds: compositors can hang in their own end.
end_program() {
    local i
    kill "$1" 2>/dev/null || true
    for ((i = 0; i < 100; i++)); do
        kill -0 "$1" 2>/dev/null || break
        sleep 0.05
    done
    kill -KILL "$1" 2>/dev/null || true
    wait "$1" 2>/dev/null || true
}
