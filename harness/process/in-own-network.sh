#!/bin/sh
# in-own-network.sh COMMAND [ARGUMENT...]
#
# Runs a command in a network namespace of its own, in which only loopback is up, so that programs
# with a fixed port can run side by side. If the system does not allow namespaces, or QUILLMARSH_NO_NAMESPACE
# is set, such commands run one after the other instead. QUILLMARSH_OWN_MOUNTS is set inside the namespace:
# what is mounted there is invisible outside. Exits with the command's exit code, or with 125 if the network
# could not be set up.

[ $# -gt 0 ] || { echo "usage: in-own-network.sh COMMAND [ARGUMENT...]" >&2; exit 125; }

# X displays have their names in the network namespace and in /tmp/.X11-unix. A folder of its own keeps a
# display server inside from using the name of one outside. The socket of the display that DISPLAY names is
# kept, so that the user's display can still be used.
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

# The command does not inherit the lock: processes that it leaves running must not block the others.
exec flock --close --conflict-exit-code 125 "${TMPDIR:-/tmp}/quillmarsh-own-network.lock" "$@"
