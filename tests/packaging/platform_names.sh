#!/bin/sh
# scripts/platform-names over library folders that have all, some and none of the names.
. "$(dirname "$0")/check.sh"

names() {
    "$source_folder/scripts/platform-names" "$@" >"$work/out" 2>"$work/errors"
    status=$?
}
names "$build_folder" "$build_folder"
expect "the host platform has all" "0" "$status"
needed=$(sed -n 's/^\([0-9]*\) names needed, \1 there, 0 missing$/\1/p' "$work/out")
[ "${needed:-0}" -gt 2500 ] || fail "needed: $(cat "$work/out")"

compiler=$(sed -n 's/^CMAKE_C_COMPILER:[A-Z]*=//p' "$build_folder/CMakeCache.txt")
mkdir -p "$work/some/deep" "$work/none"
echo 'int webHttpPortSet(const char* value) { return value != 0; } int notNeeded; static int hidden;
int useHidden(void) { return hidden; }' >"$work/some.c"
echo 'int nvram_set(const char* key, const char* value) { return key != value; }' >"$work/deep.c"
"$compiler" -shared -fPIC -o "$work/some/libsome.so" "$work/some.c" || fail "no library"
"$compiler" -shared -fPIC -o "$work/some/deep/libdeep.so.1" "$work/deep.c" || fail "no library"
echo "a text" >"$work/some/libtext.so"
names "$build_folder" "$work/some"
expect "some are missing, and are listed" "1
WebHttpPortGet
$needed names needed, 2 there, $((needed - 2)) missing" \
    "$(echo "$status"; grep -x 'webHttpPortSet\|nvram_set\|WebHttpPortGet' "$work/out"; tail -n 1 "$work/out")"
grep -q "left out.*libtext.so" "$work/errors" || fail "a file that is no library is not spoken of: $(cat "$work/errors")"
names --all "$build_folder" "$work/some"
expect "who has what" "WebHttpPortGet missing
nvram_set $work/some/deep/libdeep.so.1
webHttpPortSet $work/some/libsome.so" "$(grep '^[Ww]ebHttpPort[GS]et \|^nvram_set ' "$work/out")"

for wrong in "$build_folder" "$build_folder $work/none" "$work/none $work/some" "$build_folder $work/nowhere" ""; do
    # shellcheck disable=SC2086 # a list of words
    names $wrong
    expect "wrong use '$wrong'" "2 0" "$status $(wc -l <"$work/out" | tr -d ' ')"
    [ -s "$work/errors" ] || fail "nothing is said about '$wrong'"
done
finish
