"""The Python package over a real daemon: each thing that it does, and what it refuses."""

import concurrent.futures
import os
import pickle
import select
import subprocess
import threading
import unittest
import unittest.mock

from kobd import Change, KobdError, NotFound, NotRunning, Refused, Router, Timeout


class PackageTest(unittest.TestCase):
    def setUp(self):
        self.router = Router()
        self.addCleanup(self.router.close)
        self.addCleanup(self.router.sim.clear)

    def refused(self, kind, call, *arguments):
        with self.assertRaises(kind) as caught:
            call(*arguments)
        return caught.exception

    def test_values_have_the_types_of_the_dictionary(self):
        self.assertEqual(self.router["IMEI"], "001010123456780")
        self.router.set({"webHttpPort": 8080, "webHttpEnable": False, "webLanguage": "zh"})
        self.assertEqual(
            self.router.get_many("webHttpPort", "webHttpEnable", "webLanguage"),
            {"webHttpPort": 8080, "webHttpEnable": False, "webLanguage": "zh"},
        )
        self.assertIs(self.router["webHttpEnable"], False)
        self.router["wifiSsid"] = "caf\u00e9 \udcff"  # a byte that is no UTF-8 stays what it is
        self.assertEqual(self.router["wifiSsid"], "caf\u00e9 \udcff")
        every = self.router.values()
        self.assertGreater(len(every), 1300)
        self.assertEqual(every["IMEI"], "001010123456780")

    def test_refusals_say_what_and_why_and_change_nothing(self):
        before = self.router.get_many("webLanguage", "webHttpPort")
        cases = [
            (Refused, {"webLanguage": "en", "webHttpPort": 70000}, 2, "webHttpPort", "70000", "1 to 65535"),
            (Refused, {"webHttpPort": -1}, 2, "webHttpPort", "-1", "1 to 65535"),
            (Refused, {"lteLockpin": "9,1"}, 2, "lteLockpin", "9,1", "a PIN"),
            (Refused, {"IMEI": "1"}, 10, "IMEI", "1", None),
            (NotFound, {"webHtpPort": 1}, 1, "webHtpPort", "1", None),
            (Refused, {"wifiSsid": "a\0b"}, 2, "wifiSsid", "a\0b", None),
        ]
        for kind, values, code, name, value, right in cases:
            with self.subTest(values=values):
                error = self.refused(kind, self.router.set, values)
                self.assertEqual((error.code, error.name, error.value), (code, name, value))
                self.assertIn(right or "", error.right or "")
                self.assertTrue(error.reason)
                self.assertEqual(repr(vars(pickle.loads(pickle.dumps(error)))), repr(vars(error)))
        self.assertEqual(self.router.get_many("webLanguage", "webHttpPort"), before)
        for value in (1.5, True):  # True would be port 1
            self.refused(TypeError, self.router.set, {"webHttpPort": value})
        self.assertIn("webHttpPort", str(self.refused(LookupError, self.router.get, "webHtpPort")))
        self.assertEqual(self.refused(Refused, self.router.check, "webHttpPort", 0).value, "0")
        self.router.check("webHttpPort", 1)

    def test_a_name_of_the_wrong_kind_is_told(self):
        for call, name, advice in [
            (self.router.get, "DnsClientTable", 'router.table("DnsClientTable")'),
            (self.router.table, "webHttpPort", 'router["webHttpPort"]'),
            (self.router.values, "webHtpPort", "did you mean webHttpPort?"),
            (self.router.watch, "webHtpPort", "did you mean webHttpPort?"),
        ]:
            with self.subTest(name=name):
                self.assertIn(advice, str(self.refused(NotFound, call, name)))
        self.assertEqual([name in self.router for name in ("IMEI", "DnsClientTable", "a\0", 5)], [True] + 3 * [False])
        self.assertEqual(set(self.router), {one.name for one in self.router.objects() if one.readable})

    def test_threads_share_a_router(self):
        """Each gets the answer to its own request, and its own refusal."""

        def ask(name, value):
            for _ in range(300):
                self.assertEqual(self.router[name], value)
                self.assertEqual(self.refused(Refused, self.router.set, {name: "\t"}, True).name, name)

        ports = self.router.values("web*Port")
        self.assertGreater(len(ports), 1)
        with concurrent.futures.ThreadPoolExecutor() as pool:
            list(pool.map(ask, ports.keys(), ports.values()))

    def test_silent_sets_last_with_a_commit(self):
        self.router.set({"webHttpPort": 8085}, silent=True)
        self.router.commit()
        self.assertEqual(self.router["webHttpPort"], 8085)

    def test_rows(self):
        filters = self.router.table("FwUrlFilterTable")
        index = filters.add({"URL": "example.com"})
        self.assertEqual([(row.index, row) for row in filters], [(index, {"URL": "example.com"})])
        error = self.refused(Refused, filters.add, {"URL": "192.0.2.1"})
        self.assertEqual((error.table, error.index), ("FwUrlFilterTable", index + 1))
        self.assertIn("cannot input ip", error.reason)
        self.assertEqual(len(filters), 1)  # the row of the refused value is gone
        del filters[index]
        self.assertEqual(self.refused(NotFound, filters.__getitem__, index).code, 13)
        self.assertEqual(self.refused(Refused, filters.__getitem__, 2**32 + 1).code, 2)
        self.refused(NotFound, self.router.table, "FwUrlFiltrTable")

    def test_rows_change_together_or_not_at_all(self):
        servers = self.router.table("DnsClientTable")
        with self.router.changes() as changes:
            changes.set("DnsClientTable", 1, {"DnsServer": "198.51.100.1"})
            changes.set("DnsClientTable", 2, {"DnsServer": "198.51.100.2"})
        self.assertEqual([row["DnsServer"] for row in servers][:2], ["198.51.100.1", "198.51.100.2"])
        for index, column, kind in [(7, "DnsServer", NotFound), (2, "DnsServr", NotFound)]:
            changes = self.router.changes()
            changes.set("DnsClientTable", 1, {"DnsServer": "198.51.100.9"})
            changes.set("DnsClientTable", index, {column: "198.51.100.9"})
            self.refused(kind, changes.make)
        self.assertEqual(servers[1]["DnsServer"], "198.51.100.1")

    def test_the_dictionary_needs_no_daemon(self):
        port = self.router.describe("webHttpPort")
        self.assertEqual((port.least, port.most, port.is_number), (1, 65535, True))
        self.assertIn("11bgn", self.router.describe("wifiMode").choices)
        self.assertIn("URL", self.router.describe("FwUrlFilterTable").columns)
        self.assertEqual(self.refused(NotFound, self.router.describe, "IMEJ").right, "IMEI")
        self.assertEqual(len(list(self.router.objects())), 1485)  # three names stand there twice

    def test_a_watch_tells_of_objects_and_rows(self):
        with self.router.watch("webHttpPort", "wifiKey0", "DnsClientTable", "FwUrl*") as watch:
            self.assertIsNone(watch.next_change(seconds=0))
            self.router.set({"webHttpPort": 8090, "webLanguage": "en", "wifiKey0": "abcdefghij"})
            change = watch.next_change(seconds=5)
            self.assertEqual((change.kind, change.name, change.new), ("object", "webHttpPort", 8090))
            self.assertEqual((change.process, change.program[:6]), (os.getpid(), "python"))
            self.assertEqual(watch.next_change(seconds=5).new, "(secret)")
            self.assertEqual(select.select([watch], [], [], 5)[0], [watch])
            self.router["webHttpPort"] = 8091
            change = watch.next_change(seconds=5)
            self.assertEqual((change.old, change.new), (8090, 8091))
            self.router.table("DnsClientTable").set(3, {"Enable": "0"})
            change = watch.next_change(seconds=5)
            self.assertEqual((change.index, change.column), (3, "Enable"))
            filters = self.router.table("FwUrlFilterTable")
            del filters[filters.add()]
            self.assertEqual([watch.next_change(seconds=5).kind for _ in "ad"], ["added", "deleted"])
            threading.Timer(0.2, watch.stop).start()
            self.assertEqual(list(watch), [])
        self.refused(ValueError, watch.fileno)
        self.refused(ValueError, watch.next_change)
        watch = self.router.watch()
        closing = threading.Timer(0.2, watch.close)
        closing.start()
        self.assertEqual(list(watch), [])
        closing.join()

    def test_a_router_without_taps_is_watched_too(self):
        no_answer = unittest.mock.patch("kobd.watching.lib.kobd_tap_open", return_value=8)
        with no_answer, self.router.watch("webHttpPort") as watch:
            self.router["webHttpPort"] = 8093
            self.assertEqual(watch.next_change(seconds=5), Change("object", "webHttpPort", new=8093))
            self.assertEqual(select.select([watch], [], [], 5)[0], [watch])  # the end of the set
            self.assertEqual(self.refused(KobdError, self.router.watch).code, 9)
            self.assertIsNone(watch.next_change(seconds=0.01))

    def test_the_simulator_shows_fails_and_delays(self):
        self.router.sim.set({"RSRP": "-120"})
        self.assertEqual(self.router["RSRP"], "-120")
        self.router.sim.fail("webHttpPort", "set", times=1)
        self.assertEqual(self.refused(Refused, self.router.set, {"webHttpPort": 8092}).code, 17)
        self.router.sim.fail("webHttpPort", "set", times=2)
        for silent in (False, True):
            half = self.refused(Refused, self.router.set, {"webLanguage": "en", "webHttpPort": 1}, silent)
            self.assertEqual((half.name, half.changed), ("webHttpPort", ("webLanguage",)))
        self.router.set({"webHttpPort": 8092})
        self.assertEqual(self.router.not_saved(), "")
        subprocess.run(["kobctl", "sim", "fail", "commit", "--times", "1"], check=True)
        self.router["webHttpPort"] = 8093
        self.assertEqual(self.router.not_saved(), "the simulator lets the commit fail with 17")
        self.router.commit()
        self.router.sim.slow("IMEI", 300)
        with Router(timeout=0.05) as impatient:
            self.refused(Timeout, impatient.get, "IMEI")
        with Router(timeout=0.0001) as impatient:
            self.assertIn("within 1 ms", str(self.refused(Timeout, impatient.get, "IMEI")))
        for timeout in (0, -1, 2147484, float("inf"), float("nan")):
            self.refused(ValueError, Router, timeout)
        self.router.sim.clear()
        self.assertEqual(self.router["RSRP"], "-95")
        self.refused(NotFound, self.router.sim.fail, "nothing", "get")
        self.assertEqual(self.refused(Refused, self.router.sim.fail, "webHttpPort", "del").right, "get, set")
        self.refused(RuntimeError, self.router.sim.run, "no-such-scenario")

    def test_a_connection_that_cannot_be_used_says_why(self):
        closed = Router()
        closed.close()
        closed.close()
        self.refused(ValueError, closed.get, "IMEI")
        child = os.fork()
        if child == 0:
            try:
                self.router.get("IMEI")
            except KobdError as error:
                os._exit(error.code if "a child opens a Router of its own" in str(error) else 1)
            os._exit(0)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), 9)


class WithoutDaemon(unittest.TestCase):
    def test_it_is_named(self):
        # In an IPC namespace of its own no daemon is found.
        program = "from kobd import *\ntry: Router()['IMEI']\nexcept NotRunning as error: print(error.code)"
        import sys

        ran = subprocess.run(["unshare", "--ipc", sys.executable, "-c", program], capture_output=True, text=True)
        self.assertEqual(ran.stdout, "3\n", ran.stderr)
        self.assertTrue(issubclass(NotRunning, KobdError))
