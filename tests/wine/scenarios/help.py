"""The help button and the guide."""

import re

from harness.skin import MainWindow


def test_the_help_button_opens_the_guide_in_the_browser(s):
    opened = s.dir / "opened.txt"
    browser = s.dir / "bin/xdg-open"  # what Wine hands pages to
    browser.parent.mkdir()
    browser.write_text(f'#!/bin/sh\nprintf "%s\\n" "$@" >> "{opened}"\n')
    browser.chmod(0o755)
    s.session.env["PATH"] = f"{browser.parent}:{s.session.env['PATH']}"
    folder = s.fresh_product()
    program = s.start_product(folder=folder)
    main = MainWindow(s)
    main.press("help")
    s.wait_until(lambda: opened.exists() and opened.read_text(), 10, "the browser is started")
    s.equal(opened.read_text().strip().removeprefix("file://"), str(folder / "Quenlox.html"), "what it is told to show")
    main.end(program)

    guide = (folder / "Quenlox.html").read_text("utf-8")
    missing = [name for name in re.findall(r'src="([^"]*)"', guide) if not (folder / name).exists()]
    s.equal(missing, [], "pictures of the guide that are missing")
    targets = set(re.findall(r'href="#([^"]*)"', guide))
    s.equal(targets - set(re.findall(r'id="([^"]*)"', guide)), set(), "places of the guide that are missing")
