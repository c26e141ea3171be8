"""Runs every benchmark and writes one table of all figures, with other programs' beside them; called by bench/run.sh.

A benchmark gives its best of some rounds: what disturbs a measurement only ever makes it longer. One that fails leaves a
note in place of its rows, and the exit code is 1.
"""

import datetime
import json
import os
import pathlib
import re
import resource
import subprocess
import sys
import tempfile
import time
import traceback

ROOT = pathlib.Path(__file__).resolve().parents[1]
BUILT = ROOT / "build/bench/bench"
README = ROOT / "bench/README.md"
BEGIN, END = "<!-- figures: written by bench/run.sh -->", "<!-- end of figures -->"
LIMIT = 900  # seconds for one program; on a quiet machine none takes more than three minutes
QUICK = "--quick" in sys.argv[1:]


def run(*command, **options):
    return subprocess.run([str(part) for part in command], check=True, capture_output=True, text=True, timeout=LIMIT, **options).stdout


def duration(seconds):
    """With three digits that count and a unit that fits."""
    for unit, factor in (("s", 1), ("ms", 1e3), ("µs", 1e6)):
        if seconds * factor >= 1 or unit == "µs":
            value = seconds * factor
            return f"{value:.{2 if value < 10 else 1 if value < 100 else 0}f} {unit}"


def percent(value):
    return f"{value:.2f} %"


class Row:
    """One figure: what is measured, ours, the peer's (both in the same unit), and the aim as text."""

    def __init__(self, what, ours, peer=None, peer_name="", aim="", show=duration):
        self.cells = [what, show(ours), f"{show(peer)} ({peer_name})" if peer else "", f"{ours / peer:.2f}" if peer else "", aim]


def google(program, *options):
    """{name: {counter: value}} of a Google Benchmark program, the best of its rounds; cpu_time in seconds."""
    effort = ["--benchmark_min_time=0.02"] if QUICK else ["--benchmark_min_time=0.2", "--benchmark_repetitions=3"]
    best = {}
    for row in json.loads(run(BUILT / program, "--benchmark_format=json", *effort, *options))["benchmarks"]:
        if row.get("run_type") == "aggregate":
            continue
        if row.get("error_occurred"):
            raise RuntimeError(f"{row['name']}: {row['error_message']}")
        row["cpu_time"] *= {"ms": 1e-3, "us": 1e-6, "ns": 1e-9}[row["time_unit"]]
        name = re.sub(r"/(min_time:[\d.]+|repeats:\d+)", "", row["name"])
        if name not in best or row["cpu_time"] < best[name]["cpu_time"]:
            best[name] = row
    return best


def rows_of(found, names):
    return [Row(what, found[name]["cpu_time"], aim=aim) for name, what, aim in names]


def playlist():
    found = google("playlist_bench")
    rows = rows_of(found, (
        ("ReadListFile/shift_jis", "list file read into the model, Shift-JIS, 5.9 MB", "100 ms"),
        ("ReadListFile/utf_16", "the same, UTF-16, 8.6 MB", "100 ms"),
        ("WriteListFile/shift_jis", "list file written, Shift-JIS", "100 ms"),
        ("WriteListFile/utf_16", "the same, UTF-16", "100 ms"), ("RandomOrder", "random order", "10 ms"),
        ("SortByTitle/100000", "sort by title, texts known", "150 ms"),
        ("RemoveHalfOfTheRows", "50 000 selected rows removed", "20 ms"), ("TakeBackARemoval", "their removal taken back", "20 ms"),
        ("SortWithAQueue", "sort by path, 1 000 rows to be played next", ""),
        ("MakeSearchKeys/100000", "search field, first letter", ""), ("SearchWords/1/100000", "search field, three words", "30 ms"),
        ("RandomizeRows", "rows put into random order", ""),
        ("MoveHalfOfTheRowsDown", "50 000 selected rows moved down", ""),
        ("TextsInIdleSlices/100000", "idle slices of 8 ms until all texts are known, without the library's part", "1.5 s with it"),
        ("ReadListFile/million", "1 000 000 rows: list file read", ""), ("SortByTitle/1000000", "sort by title", ""),
        ("MakeSearchKeys/1000000", "search field, first letter", ""), ("SearchWords/1/1000000", "search field, three words", "")))
    memory = [found[f"TextsInIdleSlices/{count}"]["bytes_per_row"] for count in (100000, 1000000)]
    return rows + [Row(f"memory of a row with its texts, {count} rows", size, aim="200 bytes", show=lambda value: f"{value:.0f} bytes")
                   for count, size in zip(("100 000", "1 000 000"), memory)]


def file_info():
    kinds = {0: "with an Info frame", 1: "constant bit rate without one", 2: "with a picture of 60 kB"}
    if QUICK:
        del kinds[1], kinds[2]
    found = google("file_info_bench", f"--benchmark_filter=kind:[{''.join(map(str, kinds))}]")
    return [Row(what, found[f"Library/kind:{kind}"]["cpu_time"], found[f"Peer/kind:{kind}"]["cpu_time"], "TagLib") for kind, what in kinds.items()]


def chain():
    found = google("chain_bench")
    shares = (("chain_at_normal", "sound chain, everything at normal", ""), ("equalizer", "with equalizer", ""),
              ("equalizer_spectrum", "with equalizer, and the spectrum 20 times a second", ""), ("pitch_130", "with pitch 130 %", ""),
              ("mp3", "MP3 of 128 kbit/s decoded, chain at normal", ""), ("mp3_equalizer_spectrum", "MP3 decoded, equalizer and spectrum", "1 %"))
    # The program counts in hundredths of the sound's length.
    rows = [Row(what, found[f"Play/{name}"]["share_percent"], aim=aim, show=percent) for name, what, aim in shares]
    return rows + rows_of(found, [("Design", "filter of the equalizer designed anew", "")])


def timed(*command):
    """(seconds by the clock, seconds of processor time)"""
    before, start = resource.getrusage(resource.RUSAGE_CHILDREN), time.monotonic()
    run(*command)
    passed, after = time.monotonic() - start, resource.getrusage(resource.RUSAGE_CHILDREN)
    return passed, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def decode():
    """The two programs take turns on the same file."""
    minutes, rounds = (1, 1) if QUICK else (10, 5)
    ours = BUILT / "decode_wave"
    with tempfile.TemporaryDirectory() as folder:
        file = f"{folder}/a.mp3"
        run("ffmpeg", "-v", "error", "-f", "lavfi", "-i", f"anoisesrc=color=pink:amplitude=0.3:seed=1:duration={60 * minutes}", "-f", "lavfi",
            "-i", f"sine=frequency=440:duration={60 * minutes}", "-filter_complex", "amix=inputs=2", "-ac", "2", "-ar", "44100", "-b:a", "128k", file)
        commands = {"peer memory": ("mpg123", "-q", "-t", file), "memory": (ours, "memory", file),
                    "peer wave": ("mpg123", "-q", "-w", f"{folder}/m.wav", file), "one": (ours, "wave", file, f"{folder}/1.wav", 1),
                    "two": (ours, "wave", file, f"{folder}/2.wav", 2)}
        best = {}
        for _ in range(rounds):
            for name, command in commands.items():
                best[name] = tuple(map(min, timed(*command), best.get(name, (1e9, 1e9))))
        if pathlib.Path(f"{folder}/1.wav").read_bytes() != pathlib.Path(f"{folder}/2.wav").read_bytes():
            raise RuntimeError("one and two threads do not give the same bytes")
    rows = []
    for clock, kind in ((0, "clock"), (1, "processor time")):
        for name, peer, what, aim in (("memory", "peer memory", "to memory, floats", ""), ("one", "peer wave", "to WAVE, one thread", "ratio 1"),
                                      ("two", "peer wave", "to WAVE, two threads, the same bytes", "" if clock else "ratio 0.6")):
            rows.append(Row(f"{what}; {kind}", best[name][clock], best[peer][clock], "mpg123", "" if clock else aim))
    return rows


def convert():
    minutes, rounds = (1, 1) if QUICK else (5, 3)
    out = run(BUILT / "convert_compare", minutes, rounds)
    found = re.findall(r"^(.+?) +([\d.]+) s \( *([\d.]+) s cpu\) +([\d.]+) s \( *([\d.]+) s cpu\)", out, re.M)
    aims = {"lame -b 128": "ratio 0.63", "mpg123 -w": "ratio 1"}
    rows = [Row(f"like {name}; clock", float(ours), float(theirs), name.split()[0], aims.get(name, "")) for name, theirs, _, ours, _ in found]
    return rows + [Row(f"like {name}; processor time", float(ours), float(theirs), name.split()[0]) for name, _, theirs, _, ours in found]


def skin():
    return rows_of(google("skin_bench"), (
        ("LoadSkin/default", "package read and applied: default", ""), ("LoadSkin/hakuji", "the same, hakuji", ""), ("LoadSkin/obi", "the same, obi", ""),
        ("ComposeAll/default", "whole window composed: default", ""), ("ComposeAll/hakuji", "the same, hakuji", ""),
        ("ComposeAll/fine", "the same, default at 2×", "1 ms"), ("PanelTick/twice", "one tick of the panel at 2×", "1 ms"),
        ("TitleTick", "one tick of the running title", ""), ("PanelTick/once", "one tick of the panel, without its drawing", ""),
        ("SecondOfPlaying", "one second of playing: time and bar", "")))


def panel():
    views = sorted((int(name.split("/")[1]), row["cpu_time"]) for name, row in google("speana_bench").items())
    rows = []
    for group, name in enumerate(("shapes", "trails", "ribbons", "bars", "bars and wave", "mirrors")):
        times = [time for view, time in views if view // 10 == group]
        rows += [Row(f"one frame, {name}: mean of ten views", sum(times) / len(times)), Row(f"{name}: the dearest", max(times))]
    return rows


def program():
    out = run(sys.executable, ROOT / "bench/running_program.py", 2 if QUICK else 20, cwd=ROOT)
    rows = []
    aims = {"stopped": "0.5 %", "stopped, panel shown": "0.5 %", "playing": "2 %"}
    for name, own, driver in re.findall(r"^(.+): ([\d.]+) % of a core, Wine's sound driver ([\d.]+) %", out, re.M):
        rows.append(Row(f"{name}: share of one core (and of Wine's sound driver: {driver} %)", float(own), aim=aims.get(name, ""), show=percent))
    for name, milliseconds, aim in re.findall(r"^(.+): ([\d.]+) ms(?: \(aim (.+)\))?$", out, re.M):
        rows.append(Row(name, float(milliseconds) / 1000, aim=aim))
    if len(rows) < 6:
        raise RuntimeError(f"not all figures are there:\n{out}")
    return rows


BENCHMARKS = (("Play list, 100 000 rows", playlist), ("Tags and length of 10 000 files", file_info), ("Playing", chain),
              ("MP3 of 128 kbit/s, ten minutes", decode), ("Converter, five minutes", convert), ("Main window", skin), ("Panel", panel),
              ("The whole program under Wine", program))


def first_line(*command):
    """What a program says of its version."""
    env = {**os.environ, "WINEDEBUG": "-all"}
    return subprocess.run(command, capture_output=True, text=True, env=env, check=False).stdout.splitlines()[0].strip()


def package(name):
    return run("dpkg-query", "-W", "-f", "${Version}", name)


def machine(load):
    model = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text()).group(1)
    return (f"{datetime.date.today().isoformat()}, {model}, {os.cpu_count()} cores; load before {load[0]:.1f}, after {os.getloadavg()[0]:.1f}.\n"
            f"{first_line('gcc', '--version')}; {first_line('lame', '--version').split(' (')[0]}; {first_line('mpg123', '--version')}; "
            f"TagLib {package('libtag1-dev')}; {first_line('wine', '--version')}.")


def main():
    load, failed, lines = os.getloadavg(), False, []
    for area, benchmark in BENCHMARKS:
        start = time.monotonic()
        try:
            rows = [row.cells for row in benchmark()]
        except Exception as error:
            failed = True
            traceback.print_exc()
            print(getattr(error, "stderr", "") or "", file=sys.stderr)
            rows = [[f"could not be measured: {type(error).__name__}", "", "", "", ""]]
        lines += [f"| {cells} |" for cells in (" | ".join(["" if i else f"**{area}**", *row]) for i, row in enumerate(rows))]
        print(f"{area}: {time.monotonic() - start:.0f} s", flush=True)
    table = "\n".join([machine(load), "", "| | work | ours | beside it | ratio | aim |", "|---|---|---|---|---|---|", *lines])
    if QUICK:
        target = ROOT / "build/bench/quick.md"
        target.write_text(table + "\n", "utf-8")
    else:
        target = README
        before, rest = README.read_text("utf-8").split(BEGIN)
        README.write_text(f"{before}{BEGIN}\n\n{table}\n\n{END}{rest.split(END)[1]}", "utf-8")
    print(f"the table is in {target.relative_to(ROOT)}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
