"""The harness with Western regional settings."""

from harness.scenario import TEST_PROGRAMS

NEEDS_PRODUCT = False
LOCALE = "en_US"


def test_the_code_page_is_1252_and_japanese_names_still_work(s):
    s.equal(s.driver.code_page(), 1252, "code page")
    s.start(TEST_PROGRAMS / "harness_check.exe")
    s.driver.wait_window(title="検査 harness check")
