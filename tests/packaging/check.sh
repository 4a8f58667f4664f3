# shellcheck shell=sh disable=SC2034 # for those who source it
# Sourced by the tests of this folder, which are called with the source and the build folder: a place
# to work in, and failing with what was seen.
set -u
source_folder=$1
build_folder=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

fail() {
    echo "FAILED: $*" >&2
    failures=$((failures + 1))
}

# expect WHAT WANTED SEEN
expect() {
    [ "$2" = "$3" ] || fail "$1
--- wanted
$2
--- seen
$3"
}

skip() {
    echo "skipped: $*"
    exit 77
}

finish() { exit $((failures > 0)); }
