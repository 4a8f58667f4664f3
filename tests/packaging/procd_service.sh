#!/bin/sh
# The OpenWrt init script over procd's functions that only write down how they are called, under the
# router's own shell where this machine has it.
# shellcheck disable=SC2317 # called by the init script
if [ -z "${KOBD_TEST_SHELL:-}" ] && command -v busybox >/dev/null; then
    KOBD_TEST_SHELL=busybox exec busybox ash "$0" "$@"
fi
. "$(dirname "$0")/check.sh"

record() { printf '%s\n' "$*" >>"$work/calls"; }
for name in open_instance set_param append_param add_reload_trigger close_instance; do
    eval "procd_$name() { record procd_$name \"\$@\"; }"
done
# A script that touches the disk would be seen, not obeyed.
mkdir() { record mkdir "$@"; }
# What rc.common does for `/etc/init.d/kobd start`.
start() {
    : >"$work/calls"
    start_service 2>"$work/errors"
    if type service_started >/dev/null 2>&1; then service_started 2>>"$work/errors"; fi
    expect "status of a start" 0 $?
    expect "errors of a start" "" "$(cat "$work/errors")"
}

init=$source_folder/packaging/openwrt/kobd/files/kobd.init
# shellcheck source=/dev/null # the shell checks of the init script itself are its own
. "$init"
expect "nothing happens before start_service" "" "$(cat "$work/calls" 2>/dev/null)"
expect "first line" "#!/bin/sh /etc/rc.common" "$(head -n 1 "$init")"
expect "procd; after boot (10), before the network (20)" "1 15 85" "$USE_PROCD $START $STOP"
expect "kobctl's place" /usr/bin/kobctl "$KOBCTL"

instance="procd_open_instance
procd_set_param command /usr/sbin/kobd -F
procd_set_param env KOBD_STATE_DIR=/etc/kobd
procd_set_param respawn 3600 5 0
procd_set_param stdout 1
procd_set_param stderr 1
procd_set_param term_timeout 10
procd_close_instance"
KOBCTL=$work/kobctl
start
expect "calls without kobctl" "$instance" "$(cat "$work/calls")"
cat >"$KOBCTL" <<END
#!/bin/sh
echo "kobctl \$* in \$KOBD_STATE_DIR" >>$work/calls
exit 1
END
chmod 755 "$KOBCTL"
start
expect "calls with a kobctl that fails" "$instance
kobctl wait --timeout 10 in ${KOBD_STATE_DIR-}
kobctl confirm --resume in /etc/kobd" "$(cat "$work/calls")"
finish
