#!/usr/bin/env bash
# Renders the PNG images from the SVG files beside them. The PNGs are kept in the repository, so that
# a build needs neither this script nor the fonts (Noto Sans CJK SC, DejaVu Sans).
set -eu
cd "$(dirname "$0")/images"

for svg in *.svg; do
    name=${svg%.svg}
    case $name in
    quillmarsh*) continue ;;
    esac
    rsvg-convert "$svg" -o "$name.png"
    rsvg-convert --zoom 2 "$svg" -o "$name@2x.png"
done

# The program's icon; there is a separate drawing for the two smallest sizes.
for size in 16 24; do
    rsvg-convert -w "$size" -h "$size" quillmarsh-small.svg -o "quillmarsh-$size.png"
done
for size in 32 48 64 128 256; do
    rsvg-convert -w "$size" -h "$size" quillmarsh.svg -o "quillmarsh-$size.png"
done

# All sizes in one file, which Windows uses for the executable and the installer.
convert quillmarsh-{16,24,32,48,64,128,256}.png quillmarsh.ico

# The picture on the installer's last page.
cd ../../packaging/windows
rsvg-convert finish.svg | convert png:- -type Palette -compress None bmp3:finish.bmp
