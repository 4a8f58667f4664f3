#!/bin/sh
# The pages format without a warning, and kobctl's page names every command.
. "$(dirname "$0")/check.sh"

pages=$build_folder/packaging
cat "$source_folder"/client/*/*.cpp "$source_folder"/client/*/*.def >"$work/client"
sed -n 's/^\(COMMAND\|GROUP\)("[A-Z][a-z]*", "\([^"]*\)".*/\2/p' "$work/client" >"$work/commands"
while read -r command; do
    escaped=$(printf '%s' "$command" | sed 's/-/\\\\-/g')
    grep -Eq "^\.B \"$escaped( |\")" "$pages/kobctl.1" || fail "kobctl.1 does not tell of $command"
done <"$work/commands"
[ "$(wc -l <"$work/commands")" -ge 10 ] || fail "found only these commands in client/: $(cat "$work/commands")"
grep -o '"[^"]*"' "$work/client" | grep -o -- '--[a-z][a-z]*' | sed 's/^--//' | sort -u >"$work/options"
while read -r option; do
    grep -q "\\\\-\\\\-$option" "$pages/kobctl.1" || fail "kobctl.1 does not tell of --$option"
done <"$work/options"
[ "$(wc -l <"$work/options")" -ge 5 ] || fail "found only these options in client/: $(cat "$work/options")"

if ! command -v man >/dev/null || ! command -v groff >/dev/null; then
    [ "$failures" = 0 ] && skip "no man or groff here, the pages were not formatted"
    finish
fi
for page in kobctl.1 kobd.8 kobd-state.5 kobd-protocol.5 kobd-rpcd.5 kobd-simulator.5 kobd-uci.5; do
    for width in 80 132; do
        text=$(MANWIDTH=$width LC_ALL=C.UTF-8 man --warnings -l "$pages/$page" 2>"$work/warnings")
        expect "warnings of $page, $width columns" "" "$(cat "$work/warnings")"
        case $text in *'@'[A-Z]*'@'* | *'\f'* | *'](docs'*) fail "$page shows what was to be replaced" ;; esac
    done
done
[ "$(MANWIDTH=80 man -l "$pages/kobd-protocol.5" | grep -c "0x00[0-9A-F]*1 ")" -ge 14 ] || fail "messages are missing in kobd-protocol.5"
finish
