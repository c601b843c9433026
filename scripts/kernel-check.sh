#!/usr/bin/env bash
# Installs the package into a system of this distribution's release, boots that with the distribution's kernel
# in QEMU, and updates HID gadgets there with the window and with quillmarsh-cli, as an ordinary user who sits
# at the machine: the kernel's own USB and hidraw, udevd, and the package's rules. Needs root.
# Usage: scripts/kernel-check.sh PACKAGE HARNESS_BUILD [BASE]
# With QUILLMARSH_BUS_FACTS set it also prints what libusb and hidapi meet there; on the simulated bus
# "HARNESS_BUILD/bin/quillmarsh-bus-facts simulated" prints the same.
# HARNESS_BUILD is a build folder with the test harness; BASE a minimal system to copy instead of fetching one.
set -euo pipefail
cd "$(dirname "$0")/.."
package=$(realpath "$1") harness=$(realpath "$2") base=${3-}
# shellcheck source=/dev/null
release=$(. /etc/os-release && echo "$VERSION_CODENAME")
booted_limit=5400
user=tester
home=/home/$user

scripts/install-dependencies.sh qemu-system-x86 debootstrap busybox-static cpio kmod e2fsprogs xz-utils
work=$(mktemp -d --tmpdir quillmarsh-kernel.XXXXXX)
trap '[ $? -eq 0 ] || tail -n 20 "$work/log" || true; rm -rf --one-file-system "$work"' EXIT
chmod 755 "$work"
root=$work/root stage=/srv/stage
step() { printf '\n== %s\n' "$*"; }
in_root() {
    unshare --mount --pid --fork --mount-proc="$root/proc" \
        chroot "$root" env DEBIAN_FRONTEND=noninteractive LC_ALL=C "$@"
}

step "A system of $release with its kernel"
if [ -n "$base" ]; then
    cp -a "$base" "$root"
else
    debootstrap --variant=minbase "$release" "$root" >"$work/log"
fi
cp /etc/resolv.conf "$root/etc/resolv.conf"
printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
chmod 755 "$root/usr/sbin/policy-rc.d"
cp "$package" "$root/tmp/quillmarsh.deb"
{
    in_root apt-get update -q
    in_root apt-get install -q -y --no-install-recommends \
        systemd-sysv udev dbus libpam-systemd kmod iproute2 procps nginx-core ca-certificates xvfb fonts-dejavu-core
    in_root apt-get satisfy -q -y --no-install-recommends "$(dpkg-deb -f "$package" Depends)"
} >>"$work/log" 2>&1
# Unpacked only: an installed kernel would build an initial file system of its own.
kernel=$(in_root apt-cache depends linux-image-amd64 | sed -nE 's/^ *Depends: (linux-image-[^ ]+)$/\1/p' | head -n 1)
in_root sh -c "cd /tmp && apt-get download -q $kernel" >>"$work/log" 2>&1
dpkg-deb --fsys-tarfile "$root"/tmp/linux-image-*.deb |
    tar -x -C "$work" --wildcards './boot/vmlinuz-*' './lib/modules' './usr/lib/modules' 2>>"$work/log" || true
rm "$root"/tmp/linux-image-*.deb
[ -d "$work/lib/modules" ] || { mkdir -p "$work/lib" && mv "$work/usr/lib/modules" "$work/lib/modules"; }
version=$(ls "$work/lib/modules")
depmod -b "$work" "$version"
mkdir -p "$root/lib/modules"
cp -a "$work/lib/modules/." "$root/lib/modules/"
echo "$version"

step 'A user, a firmware server, and the maker'\''s flasher'
in_root useradd --user-group --create-home --home-dir "$home" --shell /bin/sh "$user"
scripts/prepare-release-server.sh "$work/stage" DevMaa >>"$work/log" 2>&1
docs/firmware-server/add-model.sh "$work/stage/served" "$(scripts/print-server-address.sh)" DevMah "$work/stage/image" \
    >>"$work/log"
sed -i "s|$work/stage|$stage|" "$work/stage/nginx/nginx.conf"
cp -r "$work/stage" "$root$stage"
cp "$root$stage/authority.crt" "$root/usr/local/share/ca-certificates/"
in_root update-ca-certificates >>"$work/log" 2>&1
echo "127.0.0.1 localhost $(cat "$root$stage/host")" >"$root/etc/hosts"
mkdir -p "$root$stage/tools" "$root/usr/local/lib/quillmarsh" "$root$stage/harness/bin"
cp "$harness/bin/quillmarsh-standin" "$root$stage/tools/upgcmd.exe"
ln -s "$stage/tools/upgcmd.exe" "$root/usr/local/lib/quillmarsh/upgcmd.exe"
cp "$harness"/bin/quillmarsh-{kernel-check,bus-facts,sim-bus-gadget,standin} "$root$stage/harness/bin/"
cp -r "$harness/plugins" "$root$stage/"
[ -z "${QUILLMARSH_BUS_FACTS-}" ] || touch "$root$stage/print-facts"
in_root chown -R "$user:$user" "$stage"
in_root dpkg -i /tmp/quillmarsh.deb >>"$work/log" 2>&1

# The user sits at the first console, which is what the package's rules ask for.
mkdir -p "$root/etc/systemd/system/getty@tty1.service.d"
cat >"$root/etc/systemd/system/getty@tty1.service.d/user.conf" <<UNIT
[Service]
ExecStart=
ExecStart=-/sbin/agetty --autologin $user --noclear %I linux
UNIT
cp scripts/linux/kernel-guest.sh "$root$stage/guest.sh"
cat >"$root/etc/systemd/system/quillmarsh-check.service" <<UNIT
[Unit]
After=multi-user.target
[Service]
Type=oneshot
TimeoutStartSec=infinity
StandardOutput=tty
StandardError=inherit
TTYPath=/dev/ttyS0
ExecStart=/bin/bash $stage/guest.sh $stage $user $home
ExecStopPost=/sbin/poweroff -f
UNIT
ln -s ../quillmarsh-check.service "$root/etc/systemd/system/" 2>/dev/null || true
mkdir -p "$root/etc/systemd/system/multi-user.target.wants"
ln -s ../quillmarsh-check.service "$root/etc/systemd/system/multi-user.target.wants/"
for unit in serial-getty@ttyS0.service nginx.service apt-daily.timer apt-daily-upgrade.timer fstrim.timer; do
    ln -sf /dev/null "$root/etc/systemd/system/$unit"
done

# The initial file system: what mounts the disk.
mkdir -p "$work/initial"/{bin,modules,dev,proc,sys,root}
cp "$(command -v busybox)" "$work/initial/bin/"
for module in virtio_pci virtio_blk ext4; do
    modprobe -d "$work" -S "$version" --show-depends "$module" | sed -nE 's/^insmod ([^ ]+).*/\1/p'
done | awk '!seen[$0]++' | while read -r file; do
    # Newer kernels' modules are compressed.
    name=$(basename "${file%.xz}")
    case $file in
    *.xz) xz -dc "$file" >"$work/initial/modules/$name" ;;
    *) cp "$file" "$work/initial/modules/" ;;
    esac
    echo "$name" >>"$work/initial/order"
done
cat >"$work/initial/init" <<'INIT'
#!/bin/busybox sh
busybox() { /bin/busybox "$@"; }
busybox mount -t devtmpfs dev /dev
busybox mount -t proc proc /proc
busybox grep -q quillmarsh.probe /proc/cmdline && { echo THE MACHINE RUNS; busybox poweroff -f; }
while read -r module; do busybox insmod "/modules/$module" 2>/dev/null; done </order
busybox mount -t ext4 /dev/vda /root || busybox poweroff -f
busybox umount /proc
exec /bin/busybox switch_root /root /sbin/init
INIT
chmod 755 "$work/initial/init"
ln -s busybox "$work/initial/bin/sh"
(cd "$work/initial" && find . | cpio -o -H newc --quiet | gzip -1) >"$work/initial.gz"
mke2fs -q -t ext4 -d "$root" "$work/disk" 3G 2>>"$work/log"
rm -rf --one-file-system "$root"

boot() {
    timeout --foreground "$1" qemu-system-x86_64 -machine "accel=$2" -cpu "$3" -smp 2 -m 1536 -nographic -no-reboot \
        -nic none -kernel "$work"/boot/vmlinuz-* -initrd "$work/initial.gz" \
        -append "console=ttyS0 quiet panic=-1 no_timer_check $4" -drive "file=$work/disk,if=virtio,format=raw" </dev/null 2>&1
}
# A machine may have a KVM that cannot run this kernel. An emulated one may be too slow for its timer check.
accelerator=tcg processor=qemu64
if [ -w /dev/kvm ] && (boot 30 kvm host quillmarsh.probe) 2>>"$work/log" | grep -aq 'THE MACHINE RUNS'; then
    accelerator=kvm processor=host
fi

step "The programs on the kernel's bus ($accelerator)"
boot "$booted_limit" "$accelerator" "$processor" '' >"$work/console" || true
tr -d '\r' <"$work/console" | sed -n '/CHECK BEGINS/,/^CHECK ENDS/p' | sed '1d;$d'
if ! tr -d '\r' <"$work/console" | grep -aqx 'CHECK ENDS with 0'; then
    [ -z "${QUILLMARSH_KEEP_CONSOLE-}" ] || cp "$work/console" "$QUILLMARSH_KEEP_CONSOLE"
    tail -n 40 "$work/console"
    exit 1
fi
