#!/usr/bin/python3
"""Runs a command of this machine with Wine set up around it: tools/in_wine.py [--locale en_US] COMMAND...

The command finds WINEPREFIX, DISPLAY and a silent sound server in its environment; all of it ends with the command. For
example: tools/in_wine.py ctest --test-dir build/win64
"""

import argparse
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

from wine_session import WineSession  # noqa: E402
from wine_session.processes import unwind_on_signals  # noqa: E402

parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
parser.add_argument("--locale", default="ja_JP")
parser.add_argument("command", nargs=argparse.REMAINDER)
options = parser.parse_args()
unwind_on_signals()
with WineSession(locale=options.locale) as session:
    status = subprocess.run(options.command, env=session.env).returncode
sys.exit(status)
