#!/usr/bin/env bash
# What scripts/kernel-check.sh runs inside the virtual machine, as root.
# Usage: kernel-guest.sh STAGE USER HOME
set -u
stage=$1 user=$2 home=$3
run() {
    uname -sr
    modprobe dummy_hcd num=4
    modprobe libcomposite
    mount -t configfs configfs /sys/kernel/config 2>/dev/null
    # The rules give the devices to whoever sits at the machine.
    for _ in $(seq 120); do
        loginctl --no-legend list-sessions | grep -q "$user.*seat0" && break
        sleep 1
    done
    loginctl --no-legend list-sessions
    (cd "$stage" && nginx -p "$stage/nginx" -c nginx.conf -e error.log)
    export QUILLMARSH_HARNESS_BUILD=$stage/harness
    [ ! -e "$stage/print-facts" ] || "$stage/harness/bin/quillmarsh-bus-facts" gadget
    "$stage/harness/bin/quillmarsh-kernel-check" --stage "$stage" --user "$user" --home "$home"
}
echo 'CHECK BEGINS'
run
echo "CHECK ENDS with $?"
