#!/usr/bin/env bash
# Prints the udev rules for the models in devices/ModelIds.inc. Run it after a change there:
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
# "NAME VENDOR PRODUCT" of each model; the last one has the bootloader's ids.
sed -nE '
    s/^VENDOR\(([A-Za-z0-9]+), 0x([0-9A-Fa-f]{4})\).*/vendor \1 \2/p
    s/^MODEL\([0-9]+, "([^"]+)", ([A-Za-z0-9]+), 0x([0-9A-Fa-f]{4}),.*/model \1 \2 \3/p' devices/ModelIds.inc |
    awk '$1 == "vendor" { id[$2] = $3 } $1 == "model" { print $2, id[$3], $4 }' |
    while read -r name vendor product; do
        printf '\n# %s\n' "$name"
        printf 'SUBSYSTEM=="usb", ENV{DEVTYPE}=="usb_device", ATTR{idVendor}=="%s", ATTR{idProduct}=="%s", TAG+="uaccess"\n' \
            "${vendor,,}" "${product,,}"
        # The HID device above the interface bears the ids in its name, in capitals.
        printf 'SUBSYSTEM=="hidraw", KERNELS=="0003:%s:%s.*", TAG+="uaccess"\n' "${vendor^^}" "${product^^}"
    done
printf '\nLABEL="quillmarsh_end"\n'
