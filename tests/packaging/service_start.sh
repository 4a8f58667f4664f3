#!/bin/sh
# The first request after a start needs no patience: with the router's init script, a hundred times, and with a
# service manager that waits to be told. The init script runs under the router's own shell where this machine has it.
. "$(dirname "$0")/check.sh"
unshare --ipc --mount true 2>/dev/null || skip "needs IPC and mount namespaces of its own to start the daemon"

cp -P "$build_folder"/kobd "$build_folder"/kobctl "$build_folder"/libkobd_*.so* "$source_folder/tests/router/rc.common" "$work/"
init=$source_folder/packaging/openwrt/kobd/files/kobd.init
sed 's|/usr/s*bin|/mnt|; s|/etc/kobd|/tmp/state|' "$init" >"$work/init"
sed 's|^KOBCTL=[^ ]*|KOBCTL=/mnt/none|' "$work/init" >"$work/init-alone"
sed 's|^KOBCTL=[^ ]*|KOBCTL=/mnt/failing|' "$work/init" >"$work/init-failing"
printf '#!/bin/sh\necho "kobctl $*"\nexit 1\n' >"$work/failing"
chmod 755 "$work/failing"
expect "first line" "#!/bin/sh /etc/rc.common" "$(head -n 1 "$init")"
cat >"$work/session" <<'END'
mount --make-rprivate / && mount --bind "$1" /mnt && mount -t tmpfs none /tmp || exit 1
shell=sh
command -v busybox >/dev/null && shell='busybox ash'
for init in init-alone init-failing; do
    $shell /mnt/rc.common /mnt/$init start || echo "$init: $?"
    $shell /mnt/rc.common /mnt/$init stop
done
cat /tmp/service.parameters
for _ in $(seq 100); do
    $shell /mnt/rc.common /mnt/init start && /mnt/kobctl get webHttpPort
    $shell /mnt/rc.common /mnt/init stop
done | uniq -c
ls /tmp/state/kobd.db
/mnt/kobctl wait --timeout 0.1
echo "without a daemon: $?"
exec python3 /mnt/manager
END
cat >"$work/manager" <<'END'
import os, socket, subprocess
for name in ("/tmp/notify", "\0notify"):
    manager = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
    manager.bind(name)
    manager.settimeout(10)
    environment = dict(os.environ, KOBD_STATE_DIR="/tmp/state", NOTIFY_SOCKET=name.replace("\0", "@"))
    daemon = subprocess.Popen(["/mnt/kobd", "-F"], stdout=subprocess.DEVNULL, env=environment)
    print(manager.recv(100).decode(), subprocess.check_output(["/mnt/kobctl", "get", "webHttpPort"], text=True).strip())
    daemon.terminate()
    print(manager.recv(100).decode(), daemon.wait())
END
# procd starts after boot (10) and before the network (20), and starts a daemon again that ended.
parameters="START=15 STOP=85 USE_PROCD=1 respawn 3600 5 0, stdout 1, stderr 1, term_timeout 10,"
expect "a session" "kobctl wait --timeout 10
kobctl confirm --resume
$parameters
$parameters
    100 80
/tmp/state/kobd.db
kobctl: wait: kobd is not running on this bus: Message not running (3)
without a daemon: 1
READY=1 80
STOPPING=1 0
READY=1 80
STOPPING=1 0" "$(unshare --ipc --mount sh "$work/session" "$work" 2>&1)"
finish
