#!/bin/sh
# The OpenWrt init script over procd's functions that only write down how they are called.
# shellcheck disable=SC2317 # called by the init script
. "$(dirname "$0")/check.sh"

record() { printf '%s\n' "$*" >>"$work/calls"; }
for name in open_instance set_param append_param add_reload_trigger close_instance; do
    eval "procd_$name() { record procd_$name \"\$@\"; }"
done
# A script that touches the disk would be seen, not obeyed.
mkdir() { record mkdir "$@"; }

. "$source_folder/packaging/openwrt/kobd/files/kobd.init"
expect "nothing happens before start_service" "" "$(cat "$work/calls" 2>/dev/null)"
expect "first line" "#!/bin/sh /etc/rc.common" "$(head -n 1 "$source_folder/packaging/openwrt/kobd/files/kobd.init")"
expect "procd; after boot (10), before the network (20)" "1 15 85" "$USE_PROCD $START $STOP"
start_service
expect "calls" "procd_open_instance
procd_set_param command /usr/sbin/kobd -F
procd_set_param env KOBD_STATE_DIR=/etc/kobd
procd_set_param respawn 3600 5 0
procd_set_param stdout 0
procd_set_param stderr 1
procd_set_param term_timeout 10
procd_close_instance" "$(cat "$work/calls")"
finish
