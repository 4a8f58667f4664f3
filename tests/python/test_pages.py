"""The samples of the pages run as printed, and what the OpenWrt package brings for ubus does its work."""

import json
import os
import pathlib
import re
import signal
import subprocess
import sys
import time
import unittest

SOURCE = pathlib.Path("/tmp/source")
OPENWRT = SOURCE / "packaging/openwrt/kobd/files"


def blocks(page, heading):
    """The indented blocks of a section."""
    section = (SOURCE / "docs" / page).read_text().split(f"## {heading}\n")[1].split("\n## ")[0]
    found = re.findall(r"(?:^    .*\n|^\n(?=(?:\n)*    ))+", section, re.M)
    return [re.sub(r"^    ", "", block, flags=re.M).strip("\n") + "\n" for block in found if block.strip()]


def run(*command):
    ran = subprocess.run(command, capture_output=True, text=True, timeout=60, cwd="/tmp")
    return ran.stdout + ran.stderr


class Pages(unittest.TestCase):
    def test_the_client_on_the_protocol_alone(self):
        pathlib.Path("/tmp/get.py").write_text(blocks("protocol.md", "A client in Python")[0])
        self.assertEqual(run(sys.executable, "/tmp/get.py", "webLanguage", "IMEI", "nothing"),
                         "webLanguage=en\nIMEI=001010123456780\n")
        without = run("unshare", "--ipc", sys.executable, "/tmp/get.py", "IMEI")
        self.assertIn("No such file or directory", without)
        user = "setpriv --reuid 65534 --regid 65534 --clear-groups"
        if run("sh", "-c", f"{user} kobctl --version").startswith("setpriv"):
            self.skipTest("no second user here who could run kobd; the sample did its work for its own user")
        users = (f"mkdir -m 777 user; KOBD_STATE_DIR=/tmp/user/state {user} kobd -F >/tmp/user/out 2>&1 & "
                 f"kobctl wait; {sys.executable} get.py IMEI; kill $!; wait")
        self.assertEqual(run("unshare", "--ipc", "sh", "-c", users), "IMEI=001010123456780\n")

    def test_the_agent(self):
        pathlib.Path("/tmp/agent.c").write_text(blocks("usp.md", "The program")[0])
        self.assertEqual("", run("cc", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "agent.c", "-o", "agent",
                                 f"-I{SOURCE}/client/library", "-L/tmp/build", "-lkobd_client"))
        lines = re.split(r"^\$ ", "".join(blocks("usp.md", "Trying it")), flags=re.M)[2:]  # the first one compiles
        for command, _, output in (line.partition("\n") for line in lines):
            with self.subTest(command=command):
                self.assertEqual(run("bash", "-c", command), output)

    def test_the_samples_of_the_package(self):
        samples = [b for h in ("Objects", "Refusals", "Tables", "Changes", "A test of a client")
                   for b in blocks("python.md", h)]
        self.assertEqual(len(samples), 5)
        printed = [run(sys.executable, "-c", sample) for sample in samples]
        self.assertNotIn("Traceback", "".join(printed))
        self.assertIn("webHttpPort 70000 ", printed[1])
        self.assertIn("webHttpPort 8080 8081 python3", printed[3])


class Ubus(unittest.TestCase):
    def test_the_groups_divide_the_methods(self):
        methods = json.loads(run("kobctl", "rpcd", "list"))
        groups = json.loads((OPENWRT / "kobd.acl.json").read_text())
        allowed = [m for group in groups.values() for access in group.values() if isinstance(access, dict)
                   for m in access["ubus"]["kobd"]]
        self.assertEqual(sorted(allowed), sorted(methods))

    def test_events_reach_ubus_and_end_with_the_loop(self):
        os.makedirs("/tmp/stand-in", exist_ok=True)
        pathlib.Path("/tmp/stand-in/ubus").write_text('#!/bin/sh\nprintf "%s %s\\t%s\\n" "$@" >>/tmp/sent\n')
        os.chmod("/tmp/stand-in/ubus", 0o755)
        environment = dict(os.environ, PATH=f"/tmp/stand-in:{os.environ['PATH']}")
        loop = subprocess.Popen([OPENWRT / "kobd-events"], env=environment)
        self.addCleanup(loop.kill)
        sent, deadline = pathlib.Path("/tmp/sent"), time.monotonic() + 20
        while not sent.exists() and time.monotonic() < deadline:  # until it listens
            run("kobctl", "set", "webHttpPort=8095")
            time.sleep(0.1)
        kind, event = sent.read_text().splitlines()[0].split("\t")
        self.assertEqual((kind, json.loads(event)["name"]), ("send kobd", "webHttpPort"))
        watchers = run("pgrep", "-P", str(loop.pid), "kobctl").split()
        self.assertEqual(len(watchers), 1)
        loop.send_signal(signal.SIGTERM)
        loop.wait(10)
        status = pathlib.Path(f"/proc/{watchers[0]}/stat")
        runs = lambda: status.exists() and " Z " not in status.read_text()  # in a container nobody may collect it
        while runs() and time.monotonic() < deadline:
            time.sleep(0.1)
        self.assertFalse(runs(), "kobctl goes on")
        self.assertEqual(list(pathlib.Path("/tmp").glob("kobd-events*")), [])
