"""Runs Windows programs under Wine in an environment of their own: prefix, locale, virtual display, silent sound.

Used by run.sh (tools/run_product.py) and by the end-to-end tests (tests/wine). Nothing here touches the user's own
prefix, display, sound server or locale, and whatever a session started has ended when it is left.
"""

from .session import WineSession

__all__ = ["WineSession"]
