#!/bin/sh
# scripts/configure in a clone that was moved, and scripts/with-progress with a command that fails.
. "$(dirname "$0")/check.sh"

mkdir "$work/clone"
cp -r "$source_folder/scripts" "$work/clone"
cd "$work/clone" || exit 1
printf 'cmake_minimum_required(VERSION 3.25)\nproject(small NONE)\n' >CMakeLists.txt
printf '{"version": 6, "configurePresets": [{"name": "host", "binaryDir": "build/host", "generator": "Ninja"}]}' \
    >CMakePresets.json
expect "a first time" "" "$(scripts/configure host 2>&1)"
touch build/host/kept
expect "again" "build/host/kept" "$(scripts/configure host 2>&1; ls build/host/kept)"
mv "$work/clone" "$work/moved"
cd "$work/moved" || exit 1
expect "after a move" "== build/host was made in $work/clone: making it anew" "$(scripts/configure host 2>&1)"
[ ! -e build/host/kept ] || fail "what was made in another place is still there"
echo 'message(FATAL_ERROR "no such thing")' >>CMakeLists.txt
scripts/configure host 2>&1 | grep -q "no such thing" || fail "why it failed is not shown"

expect "a command that fails" "seen
4" "$(scripts/with-progress log sh -c 'echo seen; exit 4' 2>&1; echo $?)"
expect "a quiet one" "4" "$(scripts/with-progress --quiet log sh -c 'echo seen; exit 4' 2>&1; echo $?)"
finish
