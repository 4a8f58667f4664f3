#!/bin/sh
# The installed tree in a folder it was not configured for: everything in its place, programs that
# find their libraries and the uci, a client built against it by pkg-config and by CMake, completion.
. "$(dirname "$0")/check.sh"

DESTDIR=$work/root cmake --install "$build_folder" --prefix /opt/kobd >/dev/null || fail "cmake --install"
prefix=$work/root/opt/kobd
expect "all in the prefix" "opt" "$(ls "$work/root")"
for file in sbin/kobd bin/kobctl libexec/kobd/uci include/kobd_client.h share/bash-completion/completions/kobctl \
    share/man/man1/kobctl.1 share/man/man8/kobd.8 share/man/man5/kobd-protocol.5 share/man/man5/kobd-state.5 \
    share/man/man5/kobd-uci.5 share/man/man5/kobd-simulator.5 share/kobd/scenarios/signal-fade \
    lib/systemd/system/kobd.service lib/tmpfiles.d/kobd.conf libexec/kobd/init; do
    [ -s "$prefix/$file" ] || fail "$file is not installed"
done
library=$(find "$prefix" -name libkobd_client.so.0)
expect "what the library shows is what its header declares" \
    "$(sed -n 's/^[a-z].*[ *]\(kobd_[a-z_]*\)(.*/\1/p' "$prefix/include/kobd_client.h" | LC_ALL=C sort)" \
    "$(nm -D --defined-only "$library" | sed -n 's/^[0-9a-f]* [^A] \([^@]*\).*/\1/p' | LC_ALL=C sort)"

expect "what kobctl loads when a command needs it is no condition for the others" "" \
    "$(objdump -p "$prefix/bin/kobctl" | grep sqlite)"

sh -n "$prefix/libexec/kobd/init" || fail "the init script is broken"
expect "the service runs what stands in the prefix" "/opt/kobd/sbin/kobd -F
-/opt/kobd/bin/kobctl confirm --resume" "$(sed -n 's/^Exec[A-Za-z]*=//p' "$prefix/lib/systemd/system/kobd.service")"
expect "so does the init script" "/opt/kobd/sbin/kobd
/opt/kobd/bin/kobctl wait --timeout 30 || return
/opt/kobd/bin/kobctl confirm --resume || true" "$(sed -n 's/^PROG=//p; s/^ *\(\/.*kobctl\)/\1/p' "$prefix/libexec/kobd/init")"

# Clients, built from the moved tree alone.
cat >"$work/client.c" <<'END'
#include <kobd_client.h>
#include <stdio.h>
int main(void) { return puts(kobd_result_text(2)) < 0; }
END
compiler=$(sed -n 's/^CMAKE_C_COMPILER:[A-Z]*=//p' "$build_folder/CMakeCache.txt")
packages=$(dirname "$(find "$prefix" -name kobd_client.pc)")
if command -v pkg-config >/dev/null; then
    # shellcheck disable=SC2046 # flags are words
    "$compiler" "$work/client.c" -o "$work/by-pkg-config" \
        $(PKG_CONFIG_PATH=$packages pkg-config --cflags --libs kobd_client) || fail "no client by pkg-config"
else
    echo "no pkg-config here: kobd_client.pc was not tried"
fi
mkdir "$work/client"
cat >"$work/client/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(client C)
find_package(kobd_client 0.1 REQUIRED)
add_executable(by-cmake ../client.c)
target_link_libraries(by-cmake PRIVATE kobd::client)
END
if ! { cmake -S "$work/client" -B "$work/client/build" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_C_COMPILER="$compiler" &&
    cmake --build "$work/client/build"; } >"$work/log" 2>&1; then
    fail "no client by CMake: $(cat "$work/log")"
fi

# The daemon, in namespaces of its own. $work is in /tmp, which is another there.
unshare --ipc --mount true 2>/dev/null || skip "needs IPC and mount namespaces of its own to start the daemon"
cat >"$work/session" <<'END'
mount --make-rprivate / && mount --bind "$1" /mnt && mount -t tmpfs none /tmp || exit 1
cd /mnt || exit 1
export KOBD_STATE_DIR=/tmp/state PATH=/usr/bin:/bin LD_LIBRARY_PATH=$2
root/opt/kobd/sbin/kobd -F >/tmp/out 2>&1 &
daemon=$!
root/opt/kobd/bin/kobctl wait --timeout 10
command -v uci && echo 'a uci on PATH hides what is tested'
root/opt/kobd/bin/kobctl get webHttpPort
for client in by-pkg-config client/build/by-cmake; do [ ! -x $client ] || ./$client; done
# a row of a cellular table is kept with uci
root/opt/kobd/bin/kobctl table add CellularInterfaceTable Enable=1
ls /tmp/state/uci
bash -c 'kobctl() { /mnt/root/opt/kobd/bin/kobctl "$@"; }
    . /mnt/root/opt/kobd/share/bash-completion/completions/kobctl
    COMP_LINE="kobctl table dump OnlineD" COMP_POINT=25; _kobctl; echo "${COMPREPLY[*]}"'
kill "$daemon"
wait "$daemon"
echo "ended with $?"
END
clients="Invalid argument"
[ -x "$work/by-pkg-config" ] && clients="$clients
$clients"
expect "a session" "80
$clients
1
tr069_cellular.staged
tr069_interface
OnlineDeviceTable OnlineDeviceTable_24G OnlineDeviceTable_24G_guest OnlineDeviceTable_5G OnlineDeviceTable_5G_guest
ended with 0" "$(unshare --ipc --mount sh "$work/session" "$work" "$(dirname "$library" | sed "s|^$work|/mnt|")" 2>"$work/errors")"
expect "errors of the session" "" "$(cat "$work/errors")"
finish
