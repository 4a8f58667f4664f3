"""Types lines with TAB into bash, zsh, fish and kobctl's own prompt, and compares what each then runs.
    completion.py SOURCE_FOLDER BUILD_FOLDER"""
import concurrent.futures
import ctypes.util
import os
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time

SOURCE, BUILD = sys.argv[1:]
SECONDS = 10  # for a shell to answer
LINES = {  # what is typed, and the words that kobctl then gets
    "desc\t systemProductMod\t": "<describe><systemProductModel>",
    "set webHttpE\t1": "<set><webHttpEnable=1>",
    "set webLanguage=z\t": "<set><webLanguage=zh>",
    "--js\t get IME\t": "<--json><get><IMEI>",
    "set --sil\t webHttpE\t1": "<set><--silent><webHttpEnable=1>",
    "table set DnsClientT\t 1 DnsS\t9": "<table><set><DnsClientTable><1><DnsServer=9>",
    "table add FwUrlFilterT\t UR\tx": "<table><add><FwUrlFilterTable><URL=x>",
    "sim run signal\t": "<sim><run><signal-fade>",
    "nvram get default_\t": "<nvram><get><default_gateway>",
    "event EthernetIPA\t": "<event><EthernetIPAdd>",
    "import settin\t": "<import><settings.txt>",
    "import ~/settin\t": "<import><HOME/settings.txt>",
    "get 'IME\t": "<get><IMEI>",
    'set "webLanguage=z\t': "<set><webLanguage=zh>",
    "help tab\t": "<help><table>",
    "sim fail IMEI g\t": "<sim><fail><IMEI><get>",
    "sim row DnsClientT\t set 1 DnsS\t9": "<sim><row><DnsClientTable><set><1><DnsServer=9>",
    "check DnsClientT\t 1 DnsS\t9": "<check><DnsClientTable><1><DnsServer=9>",
    "rpcd call desc\t": "<rpcd><call><describe>",
}
SHELLS = {
    "bash": (["bash", "--norc", "--noprofile", "-i"], "PS1= ; bind 'set bell-style none'; . %s/kobctl.bash"),
    "zsh": (["zsh", "-f", "-i"], "PS1= ; fpath=(%s $fpath); autoload -U compinit; compinit -u -D; unsetopt beep"),
    "fish": (["fish", "--no-config", "-i"], "function fish_prompt; end; source %s/kobctl.fish"),
}


class Shell:
    """A shell at a terminal."""

    def __init__(self, name, folder):
        self.name, self.folder = name, folder
        command, begin = SHELLS[name]
        environment = {"PATH": folder + ":" + os.environ["PATH"], "TERM": "dumb", "HOME": folder, "LANG": "C.UTF-8",
                       "KOBD_STATE_DIR": folder + "/state"}
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.chdir(folder)
            os.execvpe(command[0], command, environment)
        if name != "kobctl":
            self.run(begin % folder + "; echo rea''dy\n", r"ready")

    def run(self, text, pattern):
        """Types the text, and waits for output of that form. None when none comes."""
        for part in re.split("(\t)", text):
            os.write(self.terminal, part.encode())
            time.sleep(0.3 if part == "\t" else 0)  # a shell drops what is typed while it completes
        seen, end = "", time.monotonic() + SECONDS
        while time.monotonic() < end:
            if not select.select([self.terminal], [], [], 0.2)[0]:
                continue
            try:
                seen += os.read(self.terminal, 65536).decode(errors="replace")
            except OSError:
                break
            if found := re.search(pattern, seen):
                return found.group(0)
        return "nothing of the kind in %r" % seen[-200:]

    def end(self):
        os.close(self.terminal)
        return os.waitpid(self.process, 0)[1]


def prepare(folder):
    """A kobctl that completes as the real one does, and says its words instead of running."""
    with open(folder + "/kobctl", "w") as program:
        program.write('#!/bin/sh\n[ "$1" = complete ] && exec "%s/kobctl" "$@"\n'
                      "printf 'kobctl'; printf '<%%s>' \"$@\"; echo '|'\n" % BUILD)
    os.chmod(folder + "/kobctl", 0o755)
    for name in ("settings.txt", "two words.txt"):
        open(folder + "/" + name, "w").close()
    for name, source in (("kobctl.bash", "bash"), ("_kobctl", "zsh"), ("kobctl.fish", "fish")):
        shutil.copy("%s/completion/kobctl.%s" % (SOURCE, source), folder + "/" + name)


def completes_wrongly(shell):
    """Whether a line is completed to other words than it should be. The first such line is told."""
    for line, words in LINES.items():
        ran = shell.run("kobctl " + line + "\n", r"kobctl<[^|]*\|").replace(shell.folder, "HOME")
        if ran != "kobctl" + words + "|":
            print("%s: %r ran %s instead of %s" % (shell.name, line, ran, words))
            return True
    shell.end()
    return False


def prompt_fails(folder):
    """The prompt of kobctl itself, which loads libedit. It must not find a daemon that runs on this machine."""
    apart = ["unshare", "--user", "--map-root-user", "--ipc"]
    can = shutil.which("unshare") and subprocess.run(apart + ["true"], capture_output=True).returncode == 0
    SHELLS["kobctl"] = ((apart if can else []) + [BUILD + "/kobctl"], "")
    prompt = Shell("kobctl", folder)
    failed = False
    for typed, expected in (("", "kobctl> "), ("dropped\x03", "kobctl> "), ("watch\n", "waiting for kobd"),
                            ("\x03", "kobctl> "), ("import 'setti\t\n", "is not 'end'"), ("import two\t\n", "is not 'end'"),
                            ("describe webHttpPo\t\n", "an integer from 1 to 65535")):
        seen = prompt.run(typed, re.escape(expected))
        if seen != expected:
            print("kobctl's prompt: %r: %s" % (typed, seen))
            failed = True
    prompt.run("exit\n", "(?!)")  # which nothing matches: until it has ended
    if (status := prompt.end()) != 0:
        print("kobctl's prompt ends with %d after a command that did what it should" % status)
        failed = True
    return failed


def main():
    missing = [name for name in SHELLS if shutil.which(name) is None]
    with tempfile.TemporaryDirectory() as folder:
        prepare(folder)
        # At the same time: most of it is waiting. All are started before there are threads, since each is a fork.
        shells = [Shell(name, folder) for name in SHELLS if name not in missing]
        with concurrent.futures.ThreadPoolExecutor() as threads:
            failed = sum(threads.map(completes_wrongly, shells))
        if ctypes.util.find_library("edit") is None:
            missing.append("libedit")
        else:
            failed += prompt_fails(folder)
    if failed == 0 and missing:
        print("not tried, because it is not installed: " + ", ".join(missing))
    sys.exit(1 if failed else 77 if missing else 0)


main()
