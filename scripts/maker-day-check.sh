#!/usr/bin/env bash
# Performs a maker's tasks with signatures on this machine: creates a key, builds the program with it, signs an
# image, publishes it, updates a simulated device, tampers with the image on the server and expects that it is
# refused, then changes the key and updates again. Uses nginx and minisign. Needs no display.
# Usage: scripts/maker-day-check.sh
set -euo pipefail
project=$(cd "$(dirname "$0")/.." && pwd)
cd "$project"
build=$project/build/demo
server=http://127.0.0.1:18099
model=DevMaa

step() { printf '\n== %s\n' "$*"; }
fail() {
    echo "FAILED: $*" >&2
    exit 1
}
make_key() { minisign -G -W -p "$stage/$1.pub" -s "$stage/$1.key" >/dev/null; } # NAME
public_key() { sed -n 2p "$stage/$1.pub"; }                                    # NAME

# Builds quillmarsh-cli with these keys and stores it as $stage/NAME.
build_program() { # NAME [KEY...]
    local name=$1 keys
    shift
    keys=$(for key; do public_key "$key"; done | paste -sd ';' -)
    configure "$keys"
    cp "$build/bin/quillmarsh-cli" "$stage/$name"
}
configure() { # KEYS
    { cmake --preset demo "-DQUILLMARSH_FIRMWARE_KEYS=$1" &&
        cmake --build --preset demo --target quillmarsh-cli quillmarsh-cli-on-bus; } >"$stage/build.log" 2>&1 ||
        { tail -n 30 "$stage/build.log"; fail 'the program was not built'; }
}

# This part needs the port of the firmware server and runs in a network of its own.
if [ "${1-}" = --inside ]; then
    stage=$2
    served=$stage/server/served
    mkdir -p "$served"
    harness/server/nginx-configuration.sh 127.0.0.1:18099 >"$stage/server/nginx.conf"
    nginx -p "$stage/server" -c nginx.conf -e error.log &
    nginx=$!
    trap 'kill "$nginx" && wait "$nginx" || true' EXIT
    until [ -s "$stage/server/nginx.pid" ]; do
        kill -0 "$nginx" || { cat "$stage/server/error.log"; fail 'nginx did not start'; }
        sleep 0.1
    done

    publish() { # KEY VERSION IMAGE
        docs/firmware-server/add-model.sh --key "$stage/$1.key" --version "$2" "$served" "$server" "$model" \
            "$stage/$3.img" >/dev/null
    }
    verify() { "$stage/$1" manifest verify --download; } # PROGRAM
    # What is not verified here is the exit code, which has to be CODE.
    update() { # PROGRAM CODE
        local code=0
        "$build/bin/quillmarsh-cli-on-bus" --program "$stage/$1" --model "$model" --burned "$stage/burned" -- \
            update --yes --log "$stage/log" >"$stage/said" 2>&1 || code=$?
        tail -n 1 "$stage/said"
        [ "$code" -eq "$2" ] || { cat "$stage/said"; fail "the update ended with $code, not with $2"; }
    }
    expect_written() { # PROGRAM IMAGE
        rm -f "$stage/log"
        update "$1" 0
        cmp "$stage/burned" "$stage/$2.img" || fail 'the device has not received the image'
        grep -F 'The signature is valid.' "$stage/log" || fail 'nothing was verified'
    }
    expect_refused() { # PROGRAM REASON
        rm -f "$stage/log"
        update "$1" 4
        [ ! -s "$stage/burned" ] || fail 'the device was written'
        grep "The image is refused: .*$2" "$stage/log" || { cat "$stage/log"; fail 'the reason is another one'; }
    }

    step 'The image is signed and published; a device is updated'
    publish first 1.0.0 one
    verify with-first-key
    expect_written with-first-key one

    step 'Somebody exchanges the image on the server, and its sum in the manifest'
    manifest=$(find "$served" -name '*.json')
    image=$(find "$served" -name '*.img')
    printf 'tampered with' | dd of="$image" bs=1 seek=5000 conv=notrunc status=none
    sum=$(md5sum <"$image" | cut -d ' ' -f 1)
    jq --arg model "$model" --arg sum "$sum" '.CurrentVersion[$model].md5 = $sum' "$manifest" >"$stage/tampered"
    cp "$stage/tampered" "$manifest"
    expect_refused with-first-key 'It is not the image that was signed.'
    ! verify with-first-key >"$stage/said" || fail 'manifest verify has found nothing'
    grep "$model/signed-image" "$stage/said" || fail 'manifest verify has found something else'

    step 'The maker notices when publishing again, removes the image, and publishes it'
    ! publish first 1.0.0 one 2>"$stage/said" || fail 'the exchanged image was kept'
    cat "$stage/said"
    rm "$image"
    publish first 1.0.0 one
    expect_written with-first-key one

    step 'The key is changed: a program that knows both takes images of either'
    expect_written with-both-keys one
    publish second 2.0.0 two
    verify with-both-keys
    expect_written with-both-keys two
    expect_written with-second-key two

    step 'A program that knows only the first key refuses the second, and the other way round'
    expect_refused with-first-key 'which this program does not know.'
    publish first 3.0.0 two
    expect_refused with-second-key 'which this program does not know.'
    exit
fi

scripts/install-dependencies.sh
stage=$(mktemp -d --tmpdir quillmarsh-maker.XXXXXX)
mkdir -p build
# The demo's program has no keys.
trap 'configure ""; rm -rf "$stage"' EXIT

step 'Two keys are made, and the program built: with the first, with both, with the second'
for key in first second; do
    make_key "$key"
    printf '%s key: %s\n' "$key" "$(public_key "$key")"
done
build_program with-first-key first
build_program with-both-keys first second
build_program with-second-key second
head -c 1000007 /dev/urandom >"$stage/one.img"
head -c 1500003 /dev/urandom >"$stage/two.img"
harness/process/in-own-network.sh "$0" --inside "$stage"
step 'The day went as it should'
