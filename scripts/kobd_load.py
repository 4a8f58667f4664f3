"""A daemon of its own and clients for it, for scripts/soak and scripts/kill-test: in namespaces with
an empty /tmp, over the client library of the host build."""
import ctypes
import glob
import os
import signal
import struct
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
STATE = "/tmp/state"
SET, GET, SET_SILENT, UPDATE, TABLE_ADD, TABLE_DEL, TABLE_GET, TABLE_SET, DUMP, SHOW = 1, 2, 3, 4, 7, 8, 9, 10, 12, 13
RESULT, NAME, VALUE, TABLE, ROW, COLUMN = 0, 1, 2, 3, 4, 5


def enter_namespaces():
    """Runs this program again in IPC and mount namespaces of its own, where /tmp is empty."""
    if os.environ.get("KOBD_OWN_NAMESPACES"):
        subprocess.check_call(["mount", "-t", "tmpfs", "none", "/tmp"])
        return
    os.environ["KOBD_OWN_NAMESPACES"] = "1"
    os.execvp("unshare", ["unshare", "--ipc", "--mount", "--propagation", "private", sys.executable] + sys.argv)


class Item(ctypes.Structure):
    _fields_ = [("tag", ctypes.c_uint16), ("length", ctypes.c_uint16), ("value", ctypes.c_void_p),
                ("text", ctypes.c_char_p), ("number", ctypes.c_int32)]


class Client:
    """One connection. A call gives the result code and the items of the reply."""

    def __init__(self, timeout_ms=5000):
        self.library = ctypes.CDLL(os.path.join(ROOT, "build", "host", "libkobd_client.so"))
        self.library.kobd_items_new.restype = ctypes.c_void_p
        self.handle = ctypes.c_void_p()
        code = self.library.kobd_client_open(ctypes.byref(self.handle))
        if code:
            raise RuntimeError("no queue for a client: %d" % code)
        self.library.kobd_client_set_timeout(self.handle, timeout_ms)

    def call(self, request, items):
        packed = ctypes.c_void_p(self.library.kobd_items_new())
        for tag, value in items:
            if isinstance(value, int):
                self.library.kobd_items_add_number(packed, tag, value)
            else:
                self.library.kobd_items_add_text(packed, tag, value.encode())
        code = self.library.kobd_call(self.handle, request, packed)
        self.library.kobd_items_free(packed)
        item, reply = Item(), []
        while code == 0 and self.library.kobd_reply_next(self.handle, ctypes.byref(item)):
            reply.append(item.number if item.tag == ROW else (item.text or b"").decode("latin-1"))
        return code, reply

    def answered(self):
        return self.library.kobd_answered(self.handle) == 1

    def get(self, name):
        code, reply = self.call(GET, [(NAME, name)])
        return reply[1] if code == 0 and len(reply) == 2 else None

    def event(self, number, payload):
        text = payload.encode() + b"\0"
        return self.library.kobd_send_event(self.handle, 0x5A510001, number, text, len(text))

    def close(self):
        self.library.kobd_client_close(self.handle)


def change_file(path, rows):
    """Writes rows as (table, index, {column: text}) to a change file."""
    def item(tag, value):
        return struct.pack("<HH", tag, len(value)) + value
    with open(path, "wb") as file:
        for table, index, columns in rows:
            file.write(item(TABLE, table.encode() + b"\0") + item(ROW, struct.pack("<i", index)))
            for name, text in columns.items():
                file.write(item(COLUMN, name.encode() + b"\0") + item(VALUE, text.encode() + b"\0"))


class Daemon:
    """kobd of a build folder: build/host, or build/target, which is emulated."""

    def __init__(self, build):
        program = os.path.join(build, "kobd")
        if not os.access(program, os.X_OK):
            sys.exit("there is no %s: build it first" % program)
        self.command = [program, "-F"]
        with open(program, "rb") as file:
            if file.read(20)[18:20] == b"\x28\x00":  # ELF machine ARM
                self.command.insert(0, "qemu-arm-static")
        self.build = build
        self.process = None

    def start(self):
        environment = dict(os.environ, KOBD_STATE_DIR=STATE, PATH=self.build + ":" + os.environ["PATH"])
        self.process = subprocess.Popen(self.command, env=environment, stdout=subprocess.DEVNULL)
        client = Client(1000)
        deadline = time.monotonic() + 20
        while client.get("webHttpPort") is None:
            if time.monotonic() > deadline or self.process.poll() is not None:
                self.kill()
                sys.exit("the daemon does not answer")
            time.sleep(0.02)
        client.close()

    def kill(self, number=signal.SIGKILL):
        self.process.send_signal(number)
        return self.process.wait()

    def remove_queue(self):
        """With the requests that are still in it."""
        subprocess.check_call(["ipcrm", "-Q", "0x5A510001"])

    def _status(self, field):
        with open("/proc/%d/status" % self.process.pid) as status:
            for line in status:
                if line.startswith(field + ":"):
                    return int(line.split()[1])
        return -1

    def footprint(self):
        with open("/proc/sysvipc/msg") as queues:
            queue_count = len(queues.readlines()) - 1
        size = lambda path: os.path.getsize(path) if os.path.exists(path) else 0
        return {"rss_kib": self._status("VmRSS"), "threads": self._status("Threads"),
                "descriptors": len(os.listdir("/proc/%d/fd" % self.process.pid)), "queues": queue_count,
                "dump_files": len(glob.glob("/tmp/kobd-*")), "state_files": len(os.listdir(STATE)),
                "journal_kib": sum(size(path) for path in glob.glob(STATE + "/journal*")) // 1024,
                "log_kib": sum(size(path) for path in glob.glob("/tmp/kobd.log*")) // 1024}
