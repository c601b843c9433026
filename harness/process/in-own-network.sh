#!/bin/sh
# in-own-network.sh COMMAND [ARGUMENT...]
#
# Runs a command in a network namespace of its own, in which only loopback is up, so that programs
# with a fixed port can run side by side. Where the system permits no namespace, or QUILLMARSH_NO_NAMESPACE
# is set, such commands take turns instead. In the namespace QUILLMARSH_OWN_MOUNTS is set: nobody else sees
# what is mounted there. Exits with the command's exit code; with 125 when the network could not be set up.

[ $# -gt 0 ] || { echo "usage: in-own-network.sh COMMAND [ARGUMENT...]" >&2; exit 125; }

# The names of X displays are taken in the network namespace and in /tmp/.X11-unix: with a folder of its
# own, too, a display server started inside cannot take another's name away. The socket of the display that
# DISPLAY names stays, so that a person's own display can still be reached.
enter='
ip link set lo up || exit 125
[ -d /tmp/.X11-unix ] || mkdir -m 1777 /tmp/.X11-unix 2>/dev/null
number=${DISPLAY#unix}; number=${number#:}; socket=/tmp/.X11-unix/X${number%%.*}
held=
if [ -S "$socket" ]; then
    held=$(mktemp) && mount --bind "$socket" "$held" || exit 125
fi
mount -t tmpfs -o mode=1777 tmpfs /tmp/.X11-unix 2>/dev/null
if [ -n "$held" ]; then
    [ -S "$socket" ] || { : >"$socket" && mount --bind "$held" "$socket"; } || exit 125
    umount "$held" && rm -f "$held"
fi
export QUILLMARSH_OWN_MOUNTS=1
exec "$@"'

for as in "" "--user --map-current-user --keep-caps" "--user --map-root-user"; do
    [ -n "$QUILLMARSH_NO_NAMESPACE" ] && break
    # shellcheck disable=SC2086 # several options
    if unshare $as --net --mount ip link set lo up 2>/dev/null; then
        exec unshare $as --net --mount sh -c "$enter" in-own-network.sh "$@"
    fi
done

# Closed for the command: what it leaves running must not keep the others waiting.
exec flock --close --conflict-exit-code 125 "${TMPDIR:-/tmp}/quillmarsh-own-network.lock" "$@"
