"""The report of a benchmark run (scripts/bench-report runs this).

    bench_report.py RESULTS.json OUTDIR DOC

RESULTS.json is what `zivks_bench --json=FILE` writes: a header (date, machine,
library, peers' versions) and one row per function, size and input, with ours and every
yardstick (the byte baseline, the generic build, the peers) and the ratio of its time to
ours (above 1: this library is faster). This writes, from one run:

- OUTDIR/<family>.png: throughput against size, one line per function, its peers dashed
  in the same colour, the byte baseline (memcpy or memset of the same bytes) in black;
- OUTDIR/vs-peers.png: every function that has a peer against its fastest peer at each
  size, the worst first;
- OUTDIR/results.md: every row, one table per family;
- in DOC (unless empty): the compact table between the bench-report markers.
"""

import collections
import datetime
import json
import math
import os
import re
import statistics
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402
from matplotlib.lines import Line2D  # noqa: E402
from matplotlib.ticker import EngFormatter, LogLocator, NullFormatter  # noqa: E402

MARK_BEGIN = "<!-- bench-report: compact table -->"
MARK_END = "<!-- /bench-report -->"
LEVELS = ["L1", "L2", "MEM"]
DPI = 72
# Lines in one panel of a family plot (a function and each of its peers is one line).
LINES_PER_PANEL = 12
SERIES_PER_PANEL = 8
PANELS_PER_FIGURE = 12
KIND_WORDS = {"base": "base", "generic": "gen", "self": "own", "peer": "peer"}


# ---- reading ------------------------------------------------------------------------

def load(path):
    if not os.path.isfile(path):
        sys.exit(f"{path}: no such file (scripts/bench --json={path} writes it)")
    with open(path, encoding="utf-8") as f:
        run = json.load(f)
    if not str(run.get("format", "")).startswith("zivks-bench"):
        sys.exit(f"{path}: not the output of zivks_bench --json")
    if not run["rows"]:
        sys.exit(f"{path}: no rows")
    return run


def size_key(size):
    """Orders sizes: the cache levels, then counts such as 64Ki."""
    if size in LEVELS:
        return (0, LEVELS.index(size))
    m = re.fullmatch(r"(\d+)(Ki|Mi)?", size)
    if m is None:
        return (2, size)
    return (1, int(m.group(1)) * {None: 1, "Ki": 1 << 10, "Mi": 1 << 20}[m.group(2)])


def finite(x):
    return x is not None and math.isfinite(x) and x > 0


def peers(row):
    return [y for y in row["against"] if y["kind"] == "peer" and finite(y["ratio"])]


def base_of(row):
    for y in row["against"]:
        if y["kind"] == "base":
            return y
    return None


def throughput(row):
    """(value per second, unit): bytes where the row counts them, else its items."""
    if finite(row.get("bytes")):
        return row["bytes"] / row["seconds"], "B/s"
    return row["elements"] / row["seconds"], f"{row['items']}/s"


def families(run):
    """The rows of each family, in the order of the run."""
    out = collections.OrderedDict()
    for row in run["rows"]:
        out.setdefault(row["family"], []).append(row)
    return out


def misses(row):
    return [y for y in row["against"] if y["met"] is False]


# ---- text ---------------------------------------------------------------------------

def rate(x, unit=""):
    if not finite(x):
        return "-"
    for prefix in ["", "K", "M", "G", "T"]:
        if x < 1000 or prefix == "T":
            return f"{x:.2f} {prefix}{unit}"
        x /= 1000


def ratio(x):
    return f"{x:.2f}" if finite(x) else "-"


def run_date(run):
    d = datetime.datetime.strptime(run["date"], "%Y-%m-%dT%H:%M:%SZ")
    return f"{d.day} {d:%B %Y}, {d:%H:%M} UTC"


def header_lines(run):
    lib, mach = run["library"], run["machine"]
    level = f" at level {lib['x86_level']}" if lib.get("x86_level") else ""
    commit = f" (commit {lib['commit']})" if lib.get("commit") else ""
    twin = ("the generic-backend build of the same sources, -O3" if lib["generic_twin"]
            else "none (this build is the generic backend)")
    p = run["peers"]
    filt = run["options"]["filter"]
    return [
        f"date of the run: {run_date(run)}",
        f"machine: {mach['cpu']}, {mach['cores']} cores",
        f"library: zivks {lib['version']}{commit}, {lib['backend']} backend{level}, {lib['build_type']}",
        f"generic: {twin}",
        f"peers: VOLK {p['volk']}; xxHash {p['xxhash']}; libstdc++ of {p['libstdc++']}; "
        f"glibc {p['glibc']}; Boost {p['boost']}; Highway {p['highway']}",
        f"run: `{run['command']}`" + (f" (a filtered run: `{filt}`)" if filt else ""),
    ]


def is_case_table(rows):
    """Families of one line per row: no inputs, nothing subtracted, at most one peer."""
    return all(not r["input_kind"] and not r["subtracted"]
               and sum(y["kind"] in ("peer", "self") for y in r["against"]) <= 1 for r in rows)


def escape(text):
    return text.replace("|", "\\|")


def case_table(rows):
    out = ["| function | size | elements | elements/s | bytes/s | base | vs base | vs gen | vs peer "
           "| peer, targets missed |",
           "|---|---|--:|--:|--:|---|--:|--:|--:|---|"]
    for r in rows:
        col = {y["kind"]: y for y in r["against"]}
        notes = [y["name"] for y in r["against"] if y["kind"] in ("peer", "self")]
        for y in misses(r):
            notes.append(f"MISS {KIND_WORDS[y['kind']]} ({y['target']:.2f})")
        for y in r["against"]:
            notes += [w for w in re.split(r" (?=WRONG|FAILED)", y.get("notes", "")) if w and w != "MISS"]
        other = col.get("peer") or col.get("self")
        base = col.get("base")
        out.append("| " + " | ".join([
            escape(r["label"]), r["size"], str(int(r["elements"])),
            rate(r["elements"] / r["seconds"]), rate(r["bytes"] / r["seconds"], "B") if finite(r["bytes"]) else "-",
            base["name"] if base else "-", ratio(base["ratio"]) if base else "-",
            ratio(col["generic"]["ratio"]) if "generic" in col else "-",
            ratio(other["ratio"]) if other else "-", escape(" ".join(notes))]) + " |")
    return out


def row_table(rows):
    r0 = rows[0]
    kind = r0["input_kind"] or ""
    items = r0["items"]
    copy = any(r["subtracted"] for r in rows)
    fifth = "copy" if copy else "bytes/s"
    head = ["function"] + ([kind] if kind else []) + ["size", items, f"{items}/s", fifth,
                                                      "against", "ratio", "target", "notes"]
    out = ["| " + " | ".join(head) + " |",
           "|" + "|".join(["---"] * (2 + bool(kind)) + ["--:"] * 3 + ["---", "--:", "--:", "---"]) + "|"]
    for r in rows:
        if copy:
            sub = sum(s["seconds"] for s in r["subtracted"])
            fifth_value = f"{100 * sub / (sub + r['seconds']):.0f}%" if r["subtracted"] else "-"
        else:
            fifth_value = rate(r["bytes"] / r["seconds"], "B") if finite(r["bytes"]) else "-"
        lead = [escape(r["label"])] + ([r["input"]] if kind else []) + [
            r["size"], str(int(r["elements"])), rate(r["elements"] / r["seconds"]), fifth_value]
        for y in r["against"]:
            target = f"{y['target']:.2f}" if y["target"] else ""
            out.append("| " + " | ".join(lead + [escape(y["name"]), ratio(y["ratio"]), target,
                                                  escape(y.get("notes", ""))]) + " |")
    return out


def write_results_md(run, path, source):
    fams = families(run)
    total_misses = sum(len(misses(r)) for r in run["rows"])
    out = ["# Benchmark results", "",
           f"Generated by `scripts/bench-report` from `{os.path.basename(source)}`: do not edit by hand. "
           "To regenerate, run `scripts/bench --json=FILE`, then `scripts/bench-report FILE`. "
           "Methodology and findings: [PERFORMANCE.md](../PERFORMANCE.md).", ""]
    out += [f"- {line}" for line in header_lines(run)]
    out += ["- bytes are those of the output unless a family says otherwise; base is memcpy or memset of "
            "the same bytes; a ratio is the other's time over ours (above 1: this library is faster); "
            "a target is met where the ratio as printed is at least the target",
            f"- {len(run['rows'])} rows, targets missed: {total_misses}", "",
            "| family | rows | targets missed |", "|---|--:|--:|"]
    for fam, rows in fams.items():
        out.append(f"| [{fam}](#{fam}) | {len(rows)} | {sum(len(misses(r)) for r in rows)} |")
    for fam, rows in fams.items():
        out += ["", f"## {fam}", ""]
        out += case_table(rows) if is_case_table(rows) else row_table(rows)
    with open(path, "w", encoding="utf-8") as f:
        f.write("\n".join(out) + "\n")


# ---- the compact table ----------------------------------------------------------------

def groups(rows):
    """Rows of one function and input, in the order of the run."""
    out = collections.OrderedDict()
    for r in rows:
        out.setdefault((r["family"], r["label"], r["input"] or ""), []).append(r)
    return out


def best_peer(row):
    """The fastest peer of a row: the lowest ratio of its time to ours."""
    p = peers(row)
    return min(p, key=lambda y: y["ratio"]) if p else None


def target_word(rows):
    """'yes', '-' (no target), or the yardsticks missed and at which sizes."""
    judged = [(r, y) for r in rows for y in r["against"] if y["met"] is not None]
    if not judged:
        return "-"
    peer_names = {y["name"] for r in rows for y in r["against"] if y["kind"] in ("peer", "self")}
    missed = collections.OrderedDict()
    for r, y in judged:
        if y["met"] is False:
            many = y["kind"] in ("peer", "self") and len(peer_names) > 1
            missed.setdefault(y["name"] if many else KIND_WORDS[y["kind"]], []).append(r["size"])
    if not missed:
        return "yes"
    return "**no**: " + "; ".join(f"{who} {', '.join(sizes)}" for who, sizes in missed.items())


def short_ratio(x):
    """A ratio to read at a glance: two decimals, fewer for large ones, more for small."""
    if not finite(x):
        return "-"
    return f"{x:.0f}" if x >= 100 else f"{x:.1f}" if x >= 10 else f"{x:.2f}" if x >= 0.1 else f"{x:.3f}"


def compact_tables(run):
    """One table for the families measured at L1, L2 and MEM, one per family of counts."""
    level_rows, count_fams = [], collections.OrderedDict()
    for fam, rows in families(run).items():
        if all(r["size"] in LEVELS for r in rows):
            level_rows += rows
        else:
            count_fams[fam] = rows
    out = []

    def table(rows, sizes, with_family, title):
        lines = []
        for (fam, label, inp), g in groups(rows).items():
            if not any(peers(r) for r in g):  # the rest are in results.md
                continue
            by_size = {r["size"]: r for r in g}
            best = {s: best_peer(by_size[s]) for s in sizes if s in by_size}
            names = []
            for y in best.values():
                if y and y["name"] not in names:
                    names.append(y["name"])
            largest = max(by_size, key=size_key)
            base = base_of(by_size[largest])
            cells = ([fam] if with_family else []) + [escape(label + (f" {inp}" if inp else "")),
                                                      escape(" / ".join(names)) or "-"]
            cells += [short_ratio(best[s]["ratio"]) if best.get(s) else "-" for s in sizes]
            cells += [short_ratio(base["ratio"]) if base else "-", target_word(g)]
            lines.append("| " + " | ".join(cells) + " |")
        if not lines:
            return []
        largest = sizes[-1]
        head = (["family"] if with_family else []) + ["function", "peer"] + \
               [f"vs peer {s}" for s in sizes] + [f"vs base {largest}", "targets met"]
        align = (["---"] if with_family else []) + ["---", "---"] + ["--:"] * (len(sizes) + 1) + ["---"]
        # A family without a byte baseline (sorting) has no column for it.
        base_col = len(head) - 2
        if all(line.split(" | ")[base_col] == "-" for line in lines):
            del head[base_col], align[base_col]
            lines = [" | ".join(c for i, c in enumerate(line.split(" | ")) if i != base_col) for line in lines]
        return [title, "", "| " + " | ".join(head) + " |", "|" + "|".join(align) + "|"] + lines + [""]

    if level_rows:
        out += table(level_rows, LEVELS, True,
                     "Element-wise families, multiply-accumulate and generators (sizes of 4 KiB, 256 KiB "
                     "and 64 MiB for the widest array of a call):")
    for fam, rows in count_fams.items():
        sizes = sorted({r["size"] for r in rows}, key=size_key)
        items = rows[0]["items"]
        out += table(rows, sizes, False, f"`{fam}` (sizes in {items}):")
    return out


def update_doc(run, doc, outdir):
    with open(doc, encoding="utf-8") as f:
        text = f.read()
    # The markers are lines of their own (the prose may name them).
    found = [m.start() for m in re.finditer("^" + re.escape(MARK_BEGIN) + "$", text, re.M)]
    ends = [m.start() for m in re.finditer("^" + re.escape(MARK_END) + "$", text, re.M)]
    if len(found) != 1 or len(ends) != 1 or ends[0] < found[0]:
        sys.exit(f"{doc}: needs one line '{MARK_BEGIN}' and, after it, one line '{MARK_END}' "
                 "to write the compact table between")
    begin, end = found[0], ends[0]
    rel = os.path.relpath(outdir, os.path.dirname(os.path.abspath(doc)))
    lib = run["library"]
    level = f", level {lib['x86_level']}" if lib.get("x86_level") else ""
    filt = run["options"]["filter"]
    block = [MARK_BEGIN, "",
             f"Generated by `scripts/bench-report` from the run of {run_date(run)} on "
             f"{run['machine']['cpu']} ({lib['backend']} backend{level}"
             + (f"; filter `{filt}`" if filt else "") + f"); every row in [{rel}/results.md]({rel}/results.md). "
             "`vs peer`: the fastest peer's time over ours at that size (above 1: this library is faster); "
             "`vs base`: memcpy's or memset's time for the same bytes over ours, at the largest size; "
             "`targets met`: every target of the function at every size, and where one is missed, which "
             "yardstick at which size.", ""]
    block += compact_tables(run)
    block.append(MARK_END)
    text = text[:begin] + "\n".join(block) + text[end + len(MARK_END):]
    with open(doc, "w", encoding="utf-8") as f:
        f.write(text)


# ---- plots ----------------------------------------------------------------------------

def base_name(y):
    return y["name"].split(" ")[0]


def chunks(series, peers_of):
    """Splits the series of a family so that a panel holds at most LINES_PER_PANEL lines."""
    out, cur, lines = [], [], 0
    for s in series:
        n = 1 + len(peers_of(s))
        if cur and (lines + n > LINES_PER_PANEL or len(cur) == SERIES_PER_PANEL):
            out.append(cur)
            cur, lines = [], 0
        cur.append(s)
        lines += n
    if cur:
        out.append(cur)
    return out


def panel(ax, series_rows, title):
    """Throughput against size for the series of one panel."""
    sizes = sorted({r["size"] for rows in series_rows.values() for r in rows}, key=size_key)
    x = {s: i for i, s in enumerate(sizes)}
    colours = plt.get_cmap("tab10").colors
    dashes = ["--", "-.", ":", (0, (5, 1, 1, 1, 1, 1))]
    marks = [".", "x", "+", "1"]
    unit = None
    handles = []
    bases = collections.defaultdict(lambda: collections.defaultdict(list))
    for i, (name, rows) in enumerate(series_rows.items()):
        colour = colours[i % len(colours)]
        rows = sorted(rows, key=lambda r: size_key(r["size"]))
        pts = [(x[r["size"]], *throughput(r)) for r in rows]
        unit = pts[0][2]
        (line,) = ax.plot([p[0] for p in pts], [p[1] for p in pts], "-o", color=colour, ms=3, lw=1.4)
        handles.append((line, name))
        scale = {r["size"]: throughput(r)[0] * r["seconds"] for r in rows}  # bytes or items a call
        peer_names = []
        for r in rows:
            for y in peers(r):
                if y["name"] not in peer_names:
                    peer_names.append(y["name"])
            b = base_of(r)
            if b and finite(b["seconds"]):
                bases[base_name(b)][r["size"]].append(scale[r["size"]] / b["seconds"])
        for k, pname in enumerate(peer_names):
            px, py = [], []
            for r in rows:
                for y in peers(r):
                    if y["name"] == pname and finite(y["seconds"]):
                        px.append(x[r["size"]])
                        py.append(scale[r["size"]] / y["seconds"])
            (pl,) = ax.plot(px, py, linestyle=dashes[k % len(dashes)], marker=marks[k % len(marks)],
                            color=colour, ms=3.5, lw=1)
            handles.append((pl, f"  {pname}"))
    for k, (bname, per_size) in enumerate(sorted(bases.items())):
        pts = sorted((x[s], statistics.median(v)) for s, v in per_size.items())
        (bl,) = ax.plot([p[0] for p in pts], [p[1] for p in pts], color="black", lw=2.2, alpha=0.55,
                        linestyle=["-", (0, (1, 1)), (0, (3, 1))][k % 3])
        handles.append((bl, f"{bname} (same bytes)"))
    ax.set_yscale("log")
    ax.yaxis.set_major_locator(LogLocator(base=10, subs=(1, 2, 5)))
    ax.yaxis.set_major_formatter(EngFormatter(unit=unit or ""))
    ax.yaxis.set_minor_formatter(NullFormatter())
    ax.set_xticks(range(len(sizes)), sizes)
    ax.set_xlim(-0.25, len(sizes) - 0.75)
    ax.grid(True, which="major", alpha=0.3)
    ax.grid(True, which="minor", axis="y", alpha=0.1)
    ax.set_title(title, fontsize=9, loc="left")
    ax.tick_params(labelsize=7)
    ax.legend([h for h, _ in handles], [n for _, n in handles], fontsize=6.5, loc="upper left",
              bbox_to_anchor=(1.01, 1.0), borderaxespad=0, frameon=False)


def family_plots(run, outdir):
    written = []
    for fam, rows in families(run).items():
        by_input = collections.OrderedDict()
        for r in rows:
            by_input.setdefault(r["input"] or "", collections.OrderedDict()).setdefault(r["label"], []).append(r)
        panels = []
        for inp, series in by_input.items():
            # An input measured at one size only (e.g. presorted keys) says nothing of size.
            series = collections.OrderedDict((k, v) for k, v in series.items() if len(v) > 1)
            if not series:
                continue
            kind = next(iter(series.values()))[0]["input_kind"]
            parts = chunks(list(series), lambda s: {y["name"] for r in series[s] for y in peers(r)})
            for i, part in enumerate(parts):
                title = f"{fam}" + (f", {kind} {inp}" if inp else "")
                if len(parts) > 1:
                    title += f" ({i + 1}/{len(parts)})"
                panels.append((title, collections.OrderedDict((s, series[s]) for s in part)))
        for f_index in range(0, len(panels), PANELS_PER_FIGURE):
            group = panels[f_index:f_index + PANELS_PER_FIGURE]
            ncols = 1 if len(group) == 1 else 2
            nrows = math.ceil(len(group) / ncols)
            fig, axes = plt.subplots(nrows, ncols, figsize=(8.2 * ncols, 3.3 * nrows), squeeze=False)
            for ax, (title, series_rows) in zip(axes.flat, group):
                panel(ax, series_rows, title)
            for ax in list(axes.flat)[len(group):]:
                ax.set_visible(False)
            fig.tight_layout()
            name = fam + ("" if f_index == 0 else f"-{f_index // PANELS_PER_FIGURE + 1}") + ".png"
            fig.savefig(os.path.join(outdir, name), dpi=DPI, pil_kwargs={"optimize": True})
            plt.close(fig)
            written.append(name)
    return written


# The marker of a size: the cache levels, and the counts of the families that count.
SIZE_MARKERS = [("L1", "1Ki", "o"), ("L2", "64Ki", "s"), (None, "1Mi", "D"), ("MEM", "16Mi", "^")]


def marker_of(size):
    for level, count, m in SIZE_MARKERS:
        if size in (level, count):
            return m
    return "x"


def ratio_plot(run, outdir):
    entries = []
    for (fam, label, inp), g in groups(run["rows"]).items():
        pts = [(r["size"], best_peer(r)) for r in g]
        pts = [(s, y) for s, y in pts if y]
        if pts:
            name = f"{label}{' ' + inp if inp else ''}  [{fam}]"
            entries.append((min(y["ratio"] for _, y in pts), name, pts))
    if not entries:
        return None
    entries.sort(key=lambda e: e[0])
    ncols = 1 if len(entries) <= 60 else 2
    per_col = math.ceil(len(entries) / ncols)
    lo = min(y["ratio"] for e in entries for _, y in e[2])
    hi = max(y["ratio"] for e in entries for _, y in e[2])
    log = hi / lo > 8
    fig, axes = plt.subplots(1, ncols, figsize=(7.6 * ncols, 1.0 + 0.125 * per_col), squeeze=False,
                             layout="constrained")
    colours = {"o": "tab:blue", "s": "tab:orange", "D": "tab:purple", "^": "tab:green", "x": "grey"}
    for c, ax in enumerate(axes.flat):
        part = entries[c * per_col:(c + 1) * per_col]
        for i, (_, name, pts) in enumerate(part):
            below = any(y["ratio"] < 1 for _, y in pts)
            if below:
                ax.axhspan(i - 0.5, i + 0.5, color="tab:red", alpha=0.07, lw=0)
            for s, y in pts:
                m = marker_of(s)
                ax.plot(y["ratio"], i, m, color=colours[m], ms=3.2, alpha=0.9)
        ax.axvline(1.0, color="black", lw=1)
        ax.set_yticks(range(len(part)), [e[1] for e in part], fontsize=5.5)
        ax.set_ylim(len(part) - 0.5, -0.5)
        if log:
            ax.set_xscale("log")
        ax.set_xlim(lo / 1.15 if log else 0, hi * 1.15)
        ax.grid(True, axis="x", which="both", alpha=0.25)
        ax.tick_params(axis="x", labelsize=7)
        ax.set_xlabel("fastest peer's time / ours (above 1: this library is faster)", fontsize=7)
    legend = [Line2D([], [], marker=m, color=colours[m], linestyle="", ms=4,
                     label=" / ".join(v for v in (level, count) if v)) for level, count, m in SIZE_MARKERS]
    axes.flat[0].legend(handles=legend, loc="lower left", bbox_to_anchor=(0, 1.0), ncol=4, fontsize=7,
                        frameon=False, title="size", title_fontsize=7, alignment="left")
    fig.suptitle(f"Against the fastest peer, worst first (run of {run_date(run)})", fontsize=9)
    name = "vs-peers.png"
    fig.savefig(os.path.join(outdir, name), dpi=DPI + 18, pil_kwargs={"optimize": True})
    plt.close(fig)
    return name


# ---- main -----------------------------------------------------------------------------

def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    source, outdir, doc = sys.argv[1:]
    run = load(source)
    os.makedirs(outdir, exist_ok=True)
    written = family_plots(run, outdir)
    vs = ratio_plot(run, outdir)
    if vs:
        written.append(vs)
    write_results_md(run, os.path.join(outdir, "results.md"), source)
    written.append("results.md")
    if doc:
        update_doc(run, doc, outdir)
    print(f"{source}: {len(run['rows'])} rows of the run of {run_date(run)}")
    print(f"wrote {len(written)} files in {outdir}: {', '.join(written)}")
    if doc:
        print(f"updated the compact table in {doc}")


if __name__ == "__main__":
    main()
