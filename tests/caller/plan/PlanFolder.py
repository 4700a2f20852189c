"""A library of small films with the real `zivora`, for the tests of plans."""

import contextlib
import json
import os
import pathlib
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = os.path.abspath(sys.argv.pop(1))

# No test asserts a time: this is against hanging.
PATIENCE = 100


class PlanTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.film = cls.folder / "film.mkv"
        if shutil.which("ffmpeg") is None:
            raise unittest.SkipTest("there is no ffmpeg to make films with")
        subprocess.run(["ffmpeg", "-nostdin", "-loglevel", "error", "-f", "lavfi", "-i", "testsrc=size=320x240:duration=1",
                        "-f", "lavfi", "-i", "sine=duration=1", "-c:v", "libx264", cls.film], check=True)

    def setUp(self):
        self.work = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        self.library = self.work / "films"
        self.plan = self.work / "plan"

    def make_library(self, count):
        self.library.mkdir()
        for number in range(count):
            shutil.copy(self.film, self.library / f"film{number}.mkv")

    def zivora(self, *arguments, status=0):
        """Runs it, and returns what it printed: the object of JSON when it was asked for one."""
        run = subprocess.run([PROGRAM, *arguments], capture_output=True, timeout=PATIENCE, cwd=self.work)
        self.assertEqual(run.returncode, status, run.stderr)
        self.said = run.stderr.decode()
        return json.loads(run.stdout) if "--json" in arguments else run.stdout.decode()

    def make_plan(self, shards):
        return self.zivora("scan", self.library, "--plan", self.plan, "--shards", str(shards), "--json")

    def merge(self, status=0):
        return self.zivora("merge", self.plan, "--to", "films.db", "--json", status=status)

    def results(self, shard="*"):
        """The files of results of a shard."""
        return sorted(self.plan.glob(f"results/{shard}/*.jsonl"))

    def looked_at(self):
        """How often each film has a whole line in the results."""
        lines = [line for file in self.results() for line in file.read_bytes().split(b"\n")[1:-1]]
        paths = [json.loads(line)["path"] for line in lines]
        return {path: paths.count(path) for path in paths}

    def wait_until(self, is_true, what):
        end = time.monotonic() + PATIENCE
        while not is_true():
            self.assertLess(time.monotonic(), end, f"in vain: {what}")
            time.sleep(0.005)

    def wait_for_films(self, count, shard="*"):
        self.wait_until(lambda: sum(file.read_bytes().count(b"\n") - 1 for file in self.results(shard)) >= count,
                        f"{count} films with results")

    def rows(self, catalog):
        """What a catalog knows of each film."""
        with contextlib.closing(sqlite3.connect(self.work / catalog)) as database:
            return {row[0]: row[1:] for row in database.execute(
                "SELECT path, stat_size, stat_mtime, stat_inode, done, failed, error, errors, facts, picture "
                "FROM films LEFT JOIN pictures ON film = id")}

    def assert_like_a_scan(self):
        """The catalog has what a scan of this machine finds out, and that scan has nothing more to do."""
        self.zivora("scan", self.library, "--to", "scanned.db", status=self.scan_status)
        self.assertEqual(self.rows("films.db"), self.rows("scanned.db"))
        self.assertEqual(self.zivora("scan", self.library, "--to", "films.db", "--json")["done"], 0)

    scan_status = 0


def run_tests():
    """All tests of the script, and its exit status."""
    result = unittest.main(exit=False).result
    sys.exit(1 if not result.wasSuccessful() else 77 if result.skipped else 0)
