#!/bin/sh
# kobd-web before a real daemon, in namespaces of its own:  run.sh SOURCE BUILD api|page [ARGUMENT...]
set -u
source_folder=$1 build_folder=$2 test=$3
shift 3
skip() {
    echo "skipped: $*"
    exit 77
}
if [ "${KOBD_WEB_ALONE-}" != yes ]; then
    unshare --ipc --mount true 2>/dev/null || skip "needs IPC and mount namespaces of its own to start the daemon"
    if [ "$test" = page ]; then
        command -v node >/dev/null || skip "needs node"
        command -v chromium >/dev/null || skip "needs chromium"
        [ -f "$source_folder/.cache/browser-driver/package.json" ] || skip "needs what scripts/fetch-browser-driver fetches"
    fi
    export KOBD_WEB_ALONE=yes
    exec unshare --ipc --mount --pid --fork --kill-child --mount-proc sh "$0" "$source_folder" "$build_folder" "$test" "$@"
fi
mount --make-rprivate / && mount --bind "$build_folder" /mnt && mount -t tmpfs none /tmp || exit 1
export KOBD_STATE_DIR=/tmp/state PATH="/mnt:$PATH" HOME=/tmp
kobd -F >/tmp/kobd.out 2>&1 &
export KOBD_PROCESS=$!
kobctl wait --timeout 10 || exit 1
kobd-web --port 0 >/tmp/address 2>&1 &
gateway=$!
for _ in $(seq 100); do
    [ -s /tmp/address ] && break
    sleep 0.1
done
if [ "$test" = api ]; then
    python3 "$source_folder/tests/web/api_test.py" "$(cat /tmp/address)" || exit 1
else
    node "$source_folder/tests/web/page_test.mjs" "$source_folder" "$(cat /tmp/address)" "$@" || exit 1
fi
kill $gateway
wait $gateway || { echo "FAILED: kobd-web ended with $?"; exit 1; }
