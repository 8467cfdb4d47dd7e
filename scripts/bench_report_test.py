"""Checks of scripts/bench_report.py on a small made-up run:
    /usr/bin/python3 scripts/bench_report_test.py
"""

import copy
import json
import os
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import bench_report as br  # noqa: E402


def yardstick(kind, name, ratio, target=None, met=None):
    return {"kind": kind, "name": name, "seconds": 1e-6 * ratio, "ratio": ratio, "target": target, "met": met}


def read(path):
    with open(path, encoding="utf-8") as f:
        return f.read()


def row(family, label, size, against, input_kind=None, inp=None, items="elements", subtracted=()):
    return {"family": family, "label": label, "function": label.split("/")[0], "symbol": "ZIVKS_" + label,
            "size": size, "input_kind": input_kind, "input": inp, "items": items, "elements": 1024,
            "bytes": 4096 if items == "elements" else None, "seconds": 1e-6, "elements_per_s": 1.024e9,
            "bytes_per_s": 4.096e9, "subtracted": list(subtracted), "against": against, "targets_met": None,
            "notes": ""}


RUN = {
    "format": "zivks-bench 1", "date": "2026-11-25T12:00:00Z", "command": "zivks_bench --rounds=3",
    "options": {"filter": "", "sizes": "L1,L2,MEM", "rounds": 3, "min_time": 0.01},
    "machine": {"cpu": "test CPU", "cores": 2},
    "library": {"version": "0.1.0", "backend": "x86", "x86_level": "v4", "build_type": "Release",
                "commit": "abc", "generic_twin": True},
    "peers": {"volk": "2.5.2", "xxhash": "0.8.1", "libstdc++": "GCC 12.2", "glibc": "2.36", "boost": "1.74",
              "highway": "1.0.3"},
    "rows": [row("fam", "Add_32f", s, [yardstick("base", "memcpy", 0.7 if s == "L2" else 1.1, 0.8 if s != "MEM" else None,
                                                 (s != "L2") if s != "MEM" else None),
                                       yardstick("generic", "generic build", 9.0),
                                       yardstick("peer", "volk_add", 0.9 if s == "L1" else 1.2, 1.0, s != "L1")])
             for s in ["L1", "L2", "MEM"]]
    + [row("fam", "Copy_8u", s, [yardstick("base", "memcpy", 1.0, 0.8 if s != "MEM" else None,
                                           True if s != "MEM" else None)]) for s in ["L1", "L2", "MEM"]]
    + [row("sort", "Sort_32u", n, [yardstick("peer", p, r, 3.0 if p == "std::sort" and n == "1Mi" else None,
                                             True if p == "std::sort" and n == "1Mi" else None)
                                   for p, r in [("std::sort", 10.0), ("vqsort", 0.5)]],
           "input", "random", "keys", [{"name": "copy", "seconds": 2e-8}]) for n in ["1Ki", "64Ki", "1Mi"]],
}

DOC = """# Doc
Prose naming the markers `<!-- bench-report: compact table -->` and `<!-- /bench-report -->`.

<!-- bench-report: compact table -->
old table
<!-- /bench-report -->

Tail.
"""


class ReportTest(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.TemporaryDirectory()
        self.json = os.path.join(self.dir.name, "r.json")
        with open(self.json, "w") as f:
            json.dump(RUN, f)

    def tearDown(self):
        self.dir.cleanup()

    def test_every_row_and_yardstick_is_in_the_full_tables(self):
        path = os.path.join(self.dir.name, "results.md")
        br.write_results_md(br.load(self.json), path, self.json)
        lines = read(path).splitlines()
        # A family of one line per row, and one of a line per yardstick.
        self.assertEqual(sum(l.startswith(("| Add_32f |", "| Copy_8u |")) for l in lines), 6)
        self.assertEqual(sum(l.startswith("| Sort_32u |") for l in lines), 6)
        add_l2 = next(l for l in lines if l.startswith("| Add_32f | L2 |"))
        self.assertIn("MISS base (0.80)", add_l2)
        self.assertIn("| 0.70 | 9.00 | 1.20 |", add_l2)
        # The copy's share of ours with the copy: 2e-8 of 1.02e-6.
        self.assertIn("| 2% |", next(l for l in lines if l.startswith("| Sort_32u | random | 1Mi |")))

    def test_compact_table_between_the_marker_lines_only_and_repeatable(self):
        doc = os.path.join(self.dir.name, "doc.md")
        with open(doc, "w") as f:
            f.write(DOC)
        run = br.load(self.json)
        br.update_doc(run, doc, self.dir.name)
        once = read(doc)
        br.update_doc(run, doc, self.dir.name)
        self.assertEqual(read(doc), once)
        head, rest = once.split("<!-- bench-report: compact table -->\n", 1)
        self.assertEqual(head + "<!-- bench-report: compact table -->\n", DOC.split("old table")[0])
        self.assertTrue(once.endswith("<!-- /bench-report -->\n\nTail.\n"))
        self.assertNotIn("old table", once)
        rows = [l for l in rest.splitlines() if l.startswith("| fam |") or l.startswith("| Sort_32u")]
        self.assertEqual(rows[0], "| fam | Add_32f | volk_add | 0.90 | 1.20 | 1.20 | 1.10 | **no**: peer L1; base L2 |")
        # Only functions with a peer (Copy_8u has a target alone: results.md has it); the
        # fastest peer at each size, every target of the row, and no column of a baseline
        # the family has none of.
        self.assertEqual(rows[1], "| Sort_32u random | vqsort | 0.50 | 0.50 | 0.50 | yes |")
        self.assertEqual(len(rows), 2)
        self.assertIn("| function | peer | vs peer 1Ki | vs peer 64Ki | vs peer 1Mi | targets met |", rest)

    def test_doc_without_markers_is_left_alone(self):
        doc = os.path.join(self.dir.name, "doc.md")
        with open(doc, "w") as f:
            f.write("Prose naming `<!-- bench-report: compact table -->` inline only.\n")
        with self.assertRaises(SystemExit):
            br.update_doc(br.load(self.json), doc, self.dir.name)
        self.assertEqual(read(doc), "Prose naming `<!-- bench-report: compact table -->` inline only.\n")

    def test_plots_are_written_for_every_family_and_the_peers(self):
        run = copy.deepcopy(RUN)
        # An input measured at one size only gets no panel, and breaks nothing.
        run["rows"].append(row("sort", "Sort_32u", "1Mi", [yardstick("peer", "std::sort", 0.2)], "input", "sorted",
                               "keys"))
        with open(self.json, "w") as f:
            json.dump(run, f)
        written = br.family_plots(br.load(self.json), self.dir.name) + [br.ratio_plot(br.load(self.json),
                                                                                         self.dir.name)]
        self.assertEqual(written, ["fam.png", "sort.png", "vs-peers.png"])
        for name in written:
            self.assertGreater(os.path.getsize(os.path.join(self.dir.name, name)), 1000)


if __name__ == "__main__":
    unittest.main()
