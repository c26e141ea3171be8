"""Drops files on a window from outside of Wine, as a file manager does: XDND protocol, version 5, source side."""

import time
import urllib.parse

from Xlib import X, Xatom, display
from Xlib.protocol import event

_VERSION = 5


class _Source:
    def __init__(self, name, files):
        self._display = display.Display(name)
        self._atom = self._display.intern_atom
        self._root = self._display.screen().root
        self._window = self._root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        self._uris = self._atom("text/uri-list")
        self._data = "".join(f"file://{urllib.parse.quote(str(f))}\r\n" for f in files).encode()
        self._window.set_selection_owner(self._atom("XdndSelection"), X.CurrentTime)

    def target_at(self, x, y):
        """The innermost window at a point that takes drops."""
        window, found = self._root, None
        while window:
            if window.get_full_property(self._atom("XdndAware"), X.AnyPropertyType):
                found = window
            child = window.translate_coords(self._root, x, y).child
            window = child if child != X.NONE else None
        return found

    def send(self, target, kind, data):
        message = event.ClientMessage(window=target, client_type=self._atom(kind), data=(32, data))
        target.send_event(message, event_mask=0)
        self._display.flush()

    def serve(self, until, limit):
        """Answers requests for the file names until a message of the kind `until` arrives; returns its data."""
        end = time.monotonic() + limit
        while time.monotonic() < end:
            while self._display.pending_events():
                e = self._display.next_event()
                if e.type == X.SelectionRequest:
                    self._answer(e)
                elif e.type == X.ClientMessage and e.client_type == self._atom(until):
                    return list(e.data[1])
            time.sleep(0.01)
        raise RuntimeError(f"no {until} within {limit} s")

    def _answer(self, request):
        place = request.property or request.target
        if request.target == self._uris:
            request.requestor.change_property(place, self._uris, 8, self._data)
        elif request.target == self._atom("TARGETS"):
            request.requestor.change_property(place, Xatom.ATOM, 32, [self._uris])
        else:
            place = X.NONE
        request.requestor.send_event(event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection, target=request.target,
            property=place))
        self._display.flush()

    def drop(self, x, y, limit):
        target = self.target_at(x, y)
        if target is None:
            raise RuntimeError(f"nothing at {x},{y} takes drops")
        self.send(target, "XdndEnter", [self._window.id, _VERSION << 24, self._uris, 0, 0])
        self.send(target, "XdndPosition", [self._window.id, 0, x << 16 | y, X.CurrentTime, self._atom("XdndActionCopy")])
        accepted = self.serve("XdndStatus", limit)[1] & 1
        if not accepted:
            self.send(target, "XdndLeave", [self._window.id, 0, 0, 0, 0])
            raise RuntimeError(f"the window at {x},{y} does not accept files")
        self.send(target, "XdndDrop", [self._window.id, 0, X.CurrentTime, 0, 0])
        self.serve("XdndFinished", limit)

    def close(self):
        self._display.close()


def drop_files(display_name, x, y, files, limit=30.0):
    """Drops `files` (paths of this machine) at a point of the screen, or tells that the window does not take them."""
    source = _Source(display_name, files)
    try:
        source.drop(x, y, limit)
    finally:
        source.close()
