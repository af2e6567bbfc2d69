"""Tests performance.py and ratios.py with a few runs whose ratios are known."""

import json
import pathlib
import tempfile
import unittest

import performance
import ratios

ABOUT = {"names": {"id": "a peer, renamed"}, "growth": {"FindPrepared": "known"}, "family": [{"title": "Texts", "row": [
    {"group": "Split", "what": "Splitting", "bound": "memory", "readme": True},
    {"group": "Save/10", "what": "Saving", "bound": "syncs"},
    {"group": "Absent", "what": "Nothing", "bound": "nothing", "readme": True}]}]}


def run(name, *times, unit="ns", family=0, **more):
    return [{"run_name": name, "run_type": "iteration", "family_index": family, "repetition_index": i,
             "real_time": time, "time_unit": unit, **more} for i, time in enumerate(times)]


# Peers may come first in the file, since runs are interleaved. A ratio is computed within a repetition: a temporarily
# slow machine is slow for both.
RUNS = [
    *run("Split/id/real_time", 300, 30, 60, family=1),
    *run("Split/Ours/min_time:0.1/real_time", 100, 10, 30),
    *run("Split/Missing", 0, family=2, error_occurred=True, error_message="not installed"),
    *run("Save/Ours/10", 2, unit="us", family=3), *run("Save/Peer/10/iterations:1", 1, unit="us", family=4),
    *run("Save/Ours/999", 5, family=3),
    *run("Growth_FindPrepared/Ours/1000", 1, family=5),
    *run("Growth_FindPrepared/Ours/4000", 4100, unit="us", family=5),
    {"run_name": "Split/Ours", "run_type": "aggregate", "real_time": 1e9, "time_unit": "ns"},
]


class PerformanceTest(unittest.TestCase):
    def setUp(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, "runs.json")
            path.write_text(json.dumps({"benchmarks": RUNS}))
            self.groups = ratios.read([path])

    def test_page(self):
        page = performance.page(ABOUT, self.groups, "2 cores")
        self.assertIn("Measured on: 2 cores.", page)
        self.assertIn("| Splitting | a peer, renamed **3.0** | memory |\n", page)
        self.assertIn("| Saving | Peer **0.50** | syncs |\n", page)
        self.assertIn("- Splitting: Missing (not installed)\n- Nothing: not measured\n", page)
        self.assertIn("| Find, prepared: known | 1,000 | 4,000 | 4100000 |\n", page)
        self.assertEqual(performance.unknown(ABOUT, self.groups), ["Save/999"])

    def test_readme(self):
        text = "a\n<!-- ratios -->\nold\n<!-- /ratios -->\nb\n"
        table = "| Operation | Time relative to QvCommon |\n| --- | --- |\n| Splitting | a peer, renamed **3.0** |\n"
        self.assertEqual(performance.with_ratios(text, ABOUT, self.groups),
                         f"a\n<!-- ratios -->\n\n{table}\n<!-- /ratios -->\nb\n")
        self.assertEqual(performance.with_ratios("no lines for it\n", ABOUT, self.groups), "no lines for it\n")

    def test_figures(self):
        self.assertEqual([performance.figure(ratio) for ratio in (0.123, 0.994, 1.04, 9.94, 9.96, 123.4)],
                         ["0.12", "0.99", "1.0", "9.9", "10", "123"])


if __name__ == "__main__":
    unittest.main()
