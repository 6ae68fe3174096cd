"""The updater's window as the display sees it, even while the program waits for a card."""

import subprocess

from Xlib import X, Xatom
from Xlib.display import Display as XConnection
from Xlib.protocol.event import ClientMessage

from virtual_desktop import wait_until


class Seen:
    """What the display knows of the active window."""

    def __init__(self, desktop):
        self.connection = XConnection(desktop.name)
        self.root = self.connection.screen().root
        active = self.root.get_full_property(self.atom("_NET_ACTIVE_WINDOW"), Xatom.WINDOW).value[0]
        self.window = self.connection.create_resource_object("window", active)

    def atom(self, name):
        return self.connection.intern_atom(name)

    def title(self):
        return self.window.get_full_property(self.atom("_NET_WM_NAME"), 0).value.decode()

    def picture(self):
        return subprocess.run(["import", "-window", str(self.window.id), "ppm:-"], check=True, capture_output=True).stdout

    def cover(self):
        """Covers the window for a moment, and waits until it shows again what it did."""
        before = self.picture()
        size = self.window.get_geometry()
        place = self.window.translate_coords(self.root, 0, 0)
        cover = self.root.create_window(-place.x, -place.y, size.width, size.height, 0, X.CopyFromParent,
                                        override_redirect=True, background_pixel=0x00FF00)
        cover.map()
        self.connection.sync()
        wait_until(lambda: self.picture() != before, "The window was not covered.")
        cover.destroy()
        self.connection.sync()
        wait_until(lambda: self.picture() == before, "The window was not drawn again.", patience=5)

    def ping(self):
        """Asks the window as a window manager does whether its program is alive; returns when it has answered."""
        self.root.change_attributes(event_mask=X.SubstructureNotifyMask | X.StructureNotifyMask)
        ping = ClientMessage(window=self.window, client_type=self.atom("WM_PROTOCOLS"),
                             data=(32, [self.atom("_NET_WM_PING"), X.CurrentTime, self.window.id, 0, 0]))
        self.window.send_event(ping)
        self.connection.sync()

        def is_answered():
            while self.connection.pending_events():
                event = self.connection.next_event()
                if event.type == X.ClientMessage and event.data[1][0] == self.atom("_NET_WM_PING"):
                    return True
            return False

        wait_until(is_answered, "The program seems dead.", patience=5)
