# shellcheck shell=bash
# A clean Debian system in a folder, to install the package into. Sourced, with FOLDER as the first argument of the
# script: `base.tar`, the system as it comes, and `archives`, its downloads, are kept there; `root` is the system.
source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

folder=$1
root=$folder/root
readonly skipped=77

if ((EUID != 0)); then
    printf 'skipped: a clean system can be made and entered by root only\n' >&2
    exit "$skipped"
fi

# in_root COMMAND...: runs it in the system. What it leaves running ends with it, and so do its mounts.
in_root() {
    # shellcheck disable=SC2016 # the inner shell expands it
    unshare --mount --pid --fork --kill-child sh -c '
        root=$1 archives=$2
        shift 2
        mount -t proc proc "$root/proc" && mount --bind "$archives" "$root/var/cache/apt/archives" &&
            exec env -i HOME=/root PATH=/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 \
                QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=/root chroot "$root" "$@"
    ' sh "$root" "$folder/archives" "$@"
}

# install_in_root PACKAGES...: nothing that is merely recommended comes with them.
install_in_root() {
    in_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o APT::Sandbox::User=root \
        install -y --no-install-recommends "$@"
}

# shows_example HOW COMMAND...: runs the command in the system, which starts the viewer on an example, and waits until
# the zone that the examples name is opened in the viewer's own folder. Then everything there ends.
shows_example() {
    local how=$1 scratch line events watch run hold
    shift
    scratch=$(mktemp -d)
    mkfifo "$scratch/hold"
    exec {events}< <(exec inotifywait -e open --timeout 60 "$root/usr/lib/fvqa300/zoneinfo/America/Denver" 2>&1)
    watch=$!
    while read -r -u "$events" line && [[ $line != "Watches established." ]]; do :; done
    # The system runs for as long as somebody holds its standard input open.
    # shellcheck disable=SC2016 # the inner shell expands it
    in_root sh -c '"$@" </dev/null & cat' sh "$@" <"$scratch/hold" >"$scratch/output" 2>&1 &
    run=$!
    exec {hold}>"$scratch/hold"
    wait "$watch" || wrong "$how: the viewer does not open its time zones"
    exec {hold}>&- {events}<&-
    wait "$run" || true
    # The platform without a screen says so of every window.
    same "what the viewer prints, started $how" "" "$(grep -v 'propagateSizeHints' "$scratch/output")"
    rm -r "$scratch"
}
