"""The examples of the pages print what the pages show: README.md and docs/json.md whole, "..." for what they leave out,
and the examples of the manual page and of kobctl help, which show no output. test_pages.py runs the samples of
protocol.md, python.md and usp.md, and tests/web those of web.md. With KOBD_REWRITE_EXAMPLES=1 the pages get what is printed now; review what changed."""

import json
import os
import pathlib
import re
import subprocess
import sys
import textwrap
import unittest

SOURCE = pathlib.Path("/tmp/source")
ROOM = pathlib.Path("/tmp/examples")  # what the examples write
ELSEWHERE = {  # examples that cannot run here
    "kobctl sim run signal-fade": "it draws a bar at a terminal, for 40 seconds",
    "ubus": "OpenWrt has it; test_pages.py sends events to a stand-in, sessions try kobctl rpcd",
    "cc agent.c": "test_pages.py compiles and runs it",
    "./agent": "test_pages.py compiles and runs it",
}
REFUSED = {  # examples of the manual page and of help that end with 1, and a part of what they print then
    "kobctl check webHttpPort=70000": "it takes an integer from 1 to 65535",
    "kobctl table set FwUrlFilterTable 1 URL=example.net": "has no row 1, it has ",  # row 1 is gone by then
}
DIFFERS = (  # from run to run
    (r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d(\.\d+)?", "TIME"),
    (r"kobctl \(\d+\)", "kobctl (N)"),
    (r"process \d+", "process N"),
    (r"[\d.]+ (us|microseconds)\b", r"N \1"),
    (r'"(time|process|took_us|commit)":[\d.]+', r'"\1":N'),
    (r'"path":"[^"]*', '"path":"'),
    (r"^\d+  TIME", "N  TIME"),
)


def run(command, seconds=60):
    ran = subprocess.run(["bash", "-c", command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT, text=True, timeout=seconds, cwd=ROOM)
    return ran.returncode, ran.stdout


def same(text):
    for pattern, replacement in DIFFERS:
        text = re.sub(pattern, replacement, text, flags=re.M)
    return text


def shows(page, printed):
    """Whether the lines of the page show what was printed."""
    pattern = "".join("(.*\n)*" if line == "..." else re.escape(line).replace(r"\.\.\.", ".*") + "\n"
                      for line in same(page).splitlines())
    return re.fullmatch(pattern, same(printed)) is not None


def parts(page):
    """The page in parts: a line as it is, or a command with the lines that it prints, without their four blanks."""
    lines = page.splitlines(keepends=True)
    while lines:
        line, printed = lines.pop(0), []
        if line.startswith("    $ "):
            while lines and lines[0].startswith("    ") and not lines[0].startswith("    $ "):
                printed.append(lines.pop(0)[4:])
        yield line, "".join(printed)


class Examples(unittest.TestCase):
    def setUp(self):
        ROOM.mkdir(exist_ok=True)

    def replay(self, path):
        page, now, count = (SOURCE / path).read_text(), "", 0
        for line, printed in parts(page):
            command = line[6:].strip()
            if line.startswith("    $ ") and not any(command.startswith(other) for other in ELSEWHERE):
                count += 1
                _, output = run(command)
                if " & " in command and not shows(printed, output):  # two programs print at the same time
                    output = "".join(reversed(output.splitlines(keepends=True)))
                with self.subTest(page=path, command=command):
                    self.assertTrue(shows(printed, output), f"prints now:\n{output}")
                printed = printed if shows(printed, output) else output
            now += line + textwrap.indent(printed, "    ", lambda _: True)
        self.assertGreater(count, 10)
        if os.environ.get("KOBD_REWRITE_EXAMPLES"):
            (SOURCE / path).write_text(now)

    def test_1_the_session_of_the_readme(self):
        self.replay("README.md")

    def test_2_the_page_about_json(self):
        self.replay("docs/json.md")

    def test_3_the_samples_of_the_readme(self):
        section = (SOURCE / "README.md").read_text().split("## In C, in Python")[1].split("\n## ")[0]
        c, python = (textwrap.dedent(block) for block in re.findall(r"(?:^    .*\n|^\n(?=    ))+", section, re.M))
        (ROOM / "client.c").write_text(c)
        self.assertEqual(run(f"cc -Wall -Wextra -Werror client.c -I{SOURCE}/client/library -L/tmp/build -lkobd_client")[1], "")
        (ROOM / "client.py").write_text(python)
        for command in ("./a.out", f"{sys.executable} client.py"):
            with self.subTest(command=command):
                status, output = run("kobctl set webHttpPort=80; " + command)
                self.assertEqual(status, 0, output)
                self.assertIn("Integer value does not match limitation: 70000 [1:65535]", output)

    def test_5_the_scenario_and_the_calls_of_ubus(self):
        """What docs/simulator.md plays, and what docs/rpcd.md calls, without ubus."""
        page = (SOURCE / "docs/simulator.md").read_text()
        (ROOM / "scenario").write_text(textwrap.dedent("".join(re.findall("^    .*\n", page, re.M))))
        status, output = run("kobctl sim run ./scenario --speed 100")
        self.assertEqual((status, "event NetworkDown" in output), (0, True), output)
        page = (SOURCE / "docs/rpcd.md").read_text()
        calls = re.findall(r"^    (?:\$ )?ubus call kobd (\w+) ('.*')\n((?:    [ {}].*\n)*)", page, re.M)
        self.assertGreater(len(calls), 3)
        self.assertTrue(any(shown for *_, shown in calls))
        for method, arguments, shown in calls:
            reply = json.loads(run(f"printf %s {arguments} | kobctl rpcd call {method}")[1])
            self.assertEqual(reply, json.loads(shown)) if shown else self.assertNotIn("error", reply)

    def test_4_the_examples_of_the_manual(self):
        commands = [line.split("\t")[0] for line in run("kobctl complete -- ''")[1].splitlines()]
        text = "".join(run(f"kobctl help {command}")[1] for command in commands if command != "help")
        manual = (SOURCE / "packaging/man/kobctl.1.in").read_text().replace("\\-", "-").replace("...", ":")
        examples = re.findall(r"^  ((?:kobctl|echo) .*)", text, re.M) + re.findall(r"^kobctl [a-z].*", manual, re.M)
        self.assertGreater(len(examples), 40)
        (ROOM / "settings.txt").write_text("get IMEI\n")
        run("kobctl export router.conf")
        for example in examples:
            endless = re.match(r"kobctl (watch|monitor|journal --follow)[^|]*$", example)
            run("kobctl sim clear" + ("; kobctl confirm" if "--confirm" in example else ""))  # after those before it
            with self.subTest(example=example):
                status, output = run(re.sub("^", "timeout 1 ", example) if endless or "| while" in example else example)
                self.assertEqual(status, 124 if endless else 1 if example in REFUSED else 0, output)
                self.assertIn(REFUSED.get(example, ""), output)
