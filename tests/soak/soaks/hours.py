"""Eight hours of play in every mode on a fast clock."""

import json
import subprocess

from wine_harness.scenario import ROOT

from . import files

BUILDS = {"native": ("soak_player",)}


def player(*arguments, limit):
    """(numbers, faults) of a run of the native program."""
    # Freed memory is kept back for a while by the sanitizer; little of it, so that the size of the process tells something.
    env = {"ASAN_OPTIONS": "quarantine_size_mb=4:malloc_context_size=8", "PATH": "/usr/bin:/bin"}
    done = subprocess.run([ROOT / "build/native/tests/soak/soak_player", *map(str, arguments)], capture_output=True, text=True,
                          timeout=limit, env=env)
    lines = done.stdout.strip().splitlines()
    numbers = json.loads(lines[-1]) if lines and lines[-1].startswith("{") else {}
    faults = [] if done.returncode == 0 else [f"exit code {done.returncode}: {done.stdout[-500:]} {done.stderr[-3000:]}"]
    return numbers, faults


def run(quick):
    folder = ROOT / "build/soak/hours"
    if not folder.exists() or len(list(folder.iterdir())) < files.WHOLE:
        files.whole(folder, 100.0)
    numbers, faults = player("hours", folder, 0.5 if quick else 8, limit=7200)
    if numbers and not quick and numbers["resident_kib_at_end"] > numbers["resident_kib_warm"] * 1.1 + 8192:
        faults.append("the process has grown")
    return numbers, faults
