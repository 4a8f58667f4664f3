#!/bin/sh
# run.sh TEST SOURCE_FOLDER BUILD_FOLDER: runs a test of this folder beside a daemon of its own, in namespaces of
# its own with an empty /tmp, as the tests in C++ do.
set -u
test=$1
skip() { echo "skipped: $*"; exit 77; }
case $test in
    types) command -v mypy >/dev/null || skip "no mypy" ;;
    example) pytest=$(command -v pytest-3 || command -v pytest) || skip "no pytest" ;;
esac
if [ -z "${4-}" ]; then
    unshare --ipc --mount true 2>/dev/null || skip "needs IPC and mount namespaces of its own"
    exec unshare --ipc --mount sh "$0" "$1" "$2" "$3" inside
fi

exec 3<"$2" 4<"$3" # before the empty /tmp may hide them
mount -t tmpfs none /tmp && mkdir /tmp/state /tmp/source /tmp/build && mount --bind /proc/self/fd/3 /tmp/source &&
    mount --bind /proc/self/fd/4 /tmp/build && cd /tmp/source/tests/python || exit 1
export KOBD_STATE_DIR=/tmp/state PATH="/tmp/build:$PATH" LD_LIBRARY_PATH=/tmp/build
export PYTHONPATH=/tmp/source/python PYTHONDONTWRITEBYTECODE=1
if [ "$test" = types ]; then
    # as the oldest Python that mypy knows and the package supports
    exec mypy --strict --python-version 3.9 --cache-dir /tmp/mypy ../../python/kobd ../../python/examples
fi
kobd -F >/tmp/out 2>&1 &
daemon=$!
trap 'kill $daemon' EXIT
kobctl wait || exit 1
case $test in
    example) "$pytest" -q -p no:cacheprovider ../../python/examples ;;
    *) python3 -m unittest -q "test_$test" ;;
esac
