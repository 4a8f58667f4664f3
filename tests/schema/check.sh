#!/bin/sh
# check.sh SOURCE_FOLDER BUILD_FOLDER: kobctl schema and what --json prints, judged by other programs, with a daemon of
# its own. Exit status 77: skipped.
set -eu
export source_folder="$1" build_folder="$2"
skip() { echo "skipped: $1"; exit 77; }
for tool in node yanglint unshare; do
    command -v "$tool" >/dev/null || skip "there is no $tool"
done
[ -d "$source_folder/.cache/schema-checkers" ] || skip "scripts/fetch-schema-checkers was not run"
unshare --ipc --mount --pid --fork --user --map-root-user true 2>/dev/null || skip "namespaces are not allowed"
exec unshare --ipc --mount --pid --fork --user --map-root-user sh -eu <<'END'
# All that is needed goes to /mnt, because the folders may lie below /tmp, which has to be empty.
mount -t tmpfs none /mnt
cp -P "$build_folder"/kobd "$build_folder"/kobctl "$build_folder"/libkobd_*.so* "$source_folder"/tests/schema/*.mjs "$source_folder"/docs/json.* /mnt
cp -r "$source_folder/.cache/schema-checkers/node_modules" /mnt
mount -t tmpfs none /tmp
cd /mnt
mkdir state
KOBD_STATE_DIR=/mnt/state ./kobd -F >log 2>&1 &
./kobctl wait
./kobctl schema >schema.json
./kobctl export --json >export.json
./kobctl schema --openapi >openapi.json
./kobctl schema --yang >kobd.yang
yanglint kobd.yang
node check.mjs schema.json export.json openapi.json
# An example ends with Ctrl-C, which a shell in the background lets its programs ignore.
PATH=/mnt:$PATH env --default-signal=INT node json.mjs json.md json.schema.json
END
