"""The help button and the guide."""

import re

from wine_harness.product import Product


def test_the_help_button_opens_the_guide_in_the_browser(s):
    opened = s.dir / "opened.txt"
    browser = s.dir / "bin/xdg-open"  # what Wine hands pages to
    browser.parent.mkdir()
    browser.write_text(f'#!/bin/sh\nprintf "%s\\n" "$@" >> "{opened}"\n')
    browser.chmod(0o755)
    s.session.env["PATH"] = f"{browser.parent}:{s.session.env['PATH']}"
    player = Product(s)
    page = player.folder / "Quenlox.html"
    player.press("help")
    s.wait_until(lambda: opened.exists() and opened.read_text().endswith("\n"), "the browser is started")
    s.equal(opened.read_text().strip().removeprefix("file://"), str(page), "what it is told to show")
    player.open("オプション(N)", "オプション").activate()
    s.driver.keys("0x70")
    s.wait_until(lambda: opened.read_text().count(page.name) == 2, "F1 opens it in another window")
    player.end()

    guide = page.read_text("utf-8")
    missing = [name for name in re.findall(r'src="([^"]*)"', guide) if not (page.parent / name).exists()]
    s.equal(missing, [], "pictures of the guide that are missing")
    targets = set(re.findall(r'href="#([^"]*)"', guide))
    s.equal(targets - set(re.findall(r'id="([^"]*)"', guide)), set(), "places of the guide that are missing")
