#!/usr/bin/env bash
# Prints the udev rules for the vendors in devices/ModelIds.inc. Run it after a change there:
#   packaging/linux/make-udev-rules.sh > packaging/linux/60-quillmarsh.rules
set -euo pipefail
cd "$(dirname "$0")/../.."

cat <<'RULES'
# Lets whoever sits at the machine open the devices that quillmarsh updates: the USB device for the
# flasher, which meets it as a bootloader (33c3:8899), and the HID interfaces that send it there.
# To be installed in /etc/udev/rules.d; its number must stay below 73, where access is given.
# Made by packaging/linux/make-udev-rules.sh; do not edit.
ACTION=="remove", GOTO="quillmarsh_end"
RULES
sed -nE 's/^VENDOR\(([A-Za-z0-9]+), 0x([0-9A-Fa-f]{4})\).*/\1 \2/p' devices/ModelIds.inc |
    while read -r group id; do
        printf '\n# %s\n' "$group"
        printf 'SUBSYSTEM=="usb", ENV{DEVTYPE}=="usb_device", ATTR{idVendor}=="%s", TAG+="uaccess"\n' "${id,,}"
        # The HID device above the interface bears the ids in its name, in capitals.
        printf 'SUBSYSTEM=="hidraw", KERNELS=="0003:%s:*", TAG+="uaccess"\n' "${id^^}"
    done
printf '\nLABEL="quillmarsh_end"\n'
