"""Whether a window goes on answering while something takes its time."""

import time

from wine_session.processes import wait_until


class Watch:
    def __init__(self, window):
        self._window = window

    def until(self, condition, limit, what):
        """Waits until `condition` holds; prints and returns (seconds, the longest time without an answer)."""
        worst, start = 0.0, time.monotonic()

        def answered():
            nonlocal worst
            asked = time.monotonic()
            self._window.send(0)
            worst = max(worst, time.monotonic() - asked)
            return condition()

        wait_until(answered, limit, what)
        passed = time.monotonic() - start
        print(f"    {what}: {passed:.2f} s, without an answer for {worst:.2f} s", flush=True)
        return passed, worst
