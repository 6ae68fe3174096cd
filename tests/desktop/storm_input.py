"""Random input for the running updater, as fast as the display takes it: everything that a person, an assistive
technology, a window manager or another process can do to it. The same seed makes the same choices, but not at the same
moments.
"""

import collections
import os
import signal

from gi.repository import Atspi, GLib
from Xlib import X, XK, Xatom, error
from Xlib.display import Display as XConnection
from Xlib.ext import xtest
from Xlib.protocol import event

# When a window closes during a query, the accessibility library sends its bus an invalid name. That must not end this
# process; in the updater it is still fatal.
os.environ["DBUS_FATAL_WARNINGS"] = "0"
UPDATER_ENVIRONMENT = {"DBUS_FATAL_WARNINGS": "1"}

ALT = "Alt_L"
CONTROL = "Control_L"
KEYS = [(key,) for key in (
    *["space", "Return", "Tab"] * 3, "Escape", "KP_Enter", "Up", "Down", "Left", "Right", "Home", "End", "Page_Down",
    "F1", "F4", "F10", "Menu", "u", "v", "y", "n", "c", "2")] + [
    ("Shift_L", "Tab"), (CONTROL, "q"), (CONTROL, "w"), (CONTROL, "c"), (ALT, "F4"), (ALT, "space"), (ALT, "Tab"),
    *[(ALT, letter) for letter in "uclsofhaqn"]]
QUIT_KEYS = ((CONTROL, "q"), (ALT, "F4"))
SIGNALS = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGQUIT)
WHEEL_UP, WHEEL_DOWN = 4, 5
HARMLESS_WORDS = ("About", "Help")  # in the titles of windows that may open at any time


class Element:
    """An element of the updater's windows, with the actions that an assistive technology has."""

    def __init__(self, node):
        self.node = node
        self.role = node.get_role_name()
        self.name = node.get_name()
        self.interfaces = node.get_interfaces()
        self.actions = node.get_n_actions() if "Action" in self.interfaces else 0

    def is_showing(self):
        self.node.clear_cache()
        return self.node.get_state_set().contains(Atspi.StateType.SHOWING)

    def act(self, random):
        """Does something to the element, even if it is hidden or disabled, and returns what."""
        if self.actions > 0 and random.random() < 0.9:
            number = random.randrange(self.actions)
            self.node.do_action(number)
            return f"action {number} of {self.role} \"{self.name}\""
        if "EditableText" in self.interfaces:
            self.node.set_text_contents(random.choice(("", "2103070023")))
            return f"sets {self.role} \"{self.name}\""
        if "Value" in self.interfaces:
            self.node.set_current_value(random.randint(0, 1000))
            return f"sets {self.role} \"{self.name}\""
        if "Component" in self.interfaces:
            self.node.grab_focus()
        return f"focus to {self.role} \"{self.name}\""


class Storm:
    """A source of input for one run of the updater, which must show only its main window."""

    def __init__(self, display, updater, random):
        self.updater = updater
        self.random = random
        self.tail = collections.deque(maxlen=60)
        self.inputs = 0
        self.quit_requests = 0
        self.intruders = []  # titles of the other windows that opened
        self.connection = XConnection(display.name)
        self.connection.set_error_handler(lambda *_: None)  # windows close at any time
        self.root = self.connection.screen().root
        self.root.change_attributes(event_mask=X.PropertyChangeMask)
        self.known_windows = self._client_windows()
        self.window = self.connection.create_resource_object("window", next(
            window for window in self.known_windows if self._process_of(window) == updater.process.pid))
        self.held = []
        self.restore = None
        self.elements = [Element(node) for node in updater.elements()]
        self.buttons = [element for element in self.elements if element.role == "push button"]
        self.kinds = {self.press_keys: 40, self.hold_key: 2, self.click: 14, self.double_click: 4, self.wheel: 4,
                      self.act: 12, self.act_on_button: 12, self.act_on_newest_window: 4, self.ask_manager: 6,
                      self.signal: 4}

    def close(self):
        for key in self.held:
            self._key(key, X.KeyRelease)
        self.connection.sync()
        self.connection.close()

    def strike(self):
        """Sends up to 20 inputs without a pause."""
        for _ in range(self.random.randint(1, 20)):
            strike = self.random.choices(list(self.kinds), self.kinds.values())[0]
            self.inputs += 1
            try:
                strike()
            except (GLib.Error, error.XError) as failure:  # its object is gone
                self._note(f"  {type(failure).__name__}")
        self.connection.flush()
        self.watch_windows()

    def watch_windows(self):
        changed = False
        while self.connection.pending_events():
            changed = True
            self.connection.next_event()
        for window in self._client_windows() - self.known_windows if changed else ():
            self.known_windows.add(window)
            title = self._title_of(window)
            if title is not None and not any(word in title for word in HARMLESS_WORDS):
                self._note(f"A window opened: {title}")
                self.intruders.append(title)

    def press(self, *keys):
        for key in keys:
            self._key(key, X.KeyPress)
        for key in reversed(keys):
            self._key(key, X.KeyRelease)

    def press_keys(self):
        keys = self.random.choice(KEYS)
        self.quit_requests += keys in QUIT_KEYS
        self._note("+".join(keys))
        self.press(*keys)

    def hold_key(self):
        while self.held:
            self._key(self.held.pop(), X.KeyRelease)
        key = self.random.choice(("space", "Return", "Tab", "Escape"))
        self._note(f"{key} held")
        self._key(key, X.KeyPress)
        self.held.append(key)

    def click(self):
        place = self._move()
        # Next to the window, other buttons would open the window manager's menus.
        button = self.random.choice((1, 1, 1, 2, 3)) if self._is_over_a_window() else 1
        self._note(f"click {button} at {place}")
        self._button(button)

    def double_click(self):
        self._note(f"double click at {self._move()}")
        self._button(1)
        self._button(1)

    def wheel(self):
        self._note(f"wheel at {self._move()}")
        for _ in range(self.random.randint(1, 5)):
            self._button(self.random.choice((WHEEL_UP, WHEEL_DOWN)))

    def act(self):
        self._note(self.random.choice(self.elements).act(self.random))

    def act_on_button(self):
        self._note(self.random.choice(self.buttons).act(self.random))

    def act_on_newest_window(self):
        application = self.updater.application()
        if application is None:
            return
        window = application.get_child_at_index(application.get_child_count() - 1)
        for _ in range(self.random.randint(0, 3)):  # some way down
            children = window.get_child_count() if window is not None else 0
            if children < 1:
                break
            window = window.get_child_at_index(self.random.randrange(children))
        if window is not None:
            self._note(Element(window).act(self.random))

    def ask_manager(self):
        request = self.random.choice(("close", "close", "iconify", "unmap", "activate", "move", "resize"))
        if self.restore is not None:
            request = self.restore
        self.restore = {"iconify": "activate", "unmap": "map"}.get(request)
        self._note(request)
        if request == "close":
            self.quit_requests += 1
            self._send(self.window, "WM_PROTOCOLS", self._atom("WM_DELETE_WINDOW"))
        elif request == "iconify":
            self._send(self.root, "WM_CHANGE_STATE", 3)
        elif request == "unmap":
            self.window.unmap()
        elif request == "map":
            self.window.map()
        elif request == "activate":
            self._send(self.root, "_NET_ACTIVE_WINDOW", 2, X.CurrentTime)
        elif request == "move":
            self.window.configure(x=self.random.randint(0, 400), y=self.random.randint(0, 300))
        elif request == "resize":
            self.window.configure(width=self.random.randint(300, 1000), height=self.random.randint(200, 700))

    def signal(self):
        number = self.random.choice(SIGNALS)
        self._note(number.name)
        self.quit_requests += 1
        if self.updater.process.poll() is None:
            self.updater.process.send_signal(number)

    def _note(self, what):
        self.tail.append(what)

    def _key(self, name, kind):
        xtest.fake_input(self.connection, kind, self.connection.keysym_to_keycode(XK.string_to_keysym(name)))

    def _button(self, number):
        xtest.fake_input(self.connection, X.ButtonPress, number)
        xtest.fake_input(self.connection, X.ButtonRelease, number)

    def _move(self):
        """Moves the pointer to a random place on the window or its frame."""
        size = self.window.get_geometry()
        corner = self.root.translate_coords(self.window, 0, 0)
        place = (self.random.randint(corner.x - 2, corner.x + size.width + 2),
                 self.random.randint(corner.y - 20, corner.y + size.height + 2))
        xtest.fake_input(self.connection, X.MotionNotify, x=max(place[0], 0), y=max(place[1], 0))
        return place

    def _is_over_a_window(self):
        return self.root.query_pointer().child != X.NONE

    def _atom(self, name):
        return self.connection.intern_atom(name)

    def _send(self, destination, kind, *values):
        message = event.ClientMessage(window=self.window, client_type=self._atom(kind),
                                      data=(32, [*values, 0, 0, 0, 0, 0][:5]))
        mask = X.SubstructureRedirectMask | X.SubstructureNotifyMask if destination is self.root else X.NoEventMask
        destination.send_event(message, event_mask=mask)

    def _client_windows(self):
        listed = self.root.get_full_property(self._atom("_NET_CLIENT_LIST"), Xatom.WINDOW)
        return set(listed.value) if listed else set()

    def _property(self, window, name):
        try:
            found = self.connection.create_resource_object("window", window).get_full_property(
                self._atom(name), X.AnyPropertyType)
        except error.XError:
            return None
        return found.value if found else None

    def _process_of(self, window):
        process = self._property(window, "_NET_WM_PID")
        return process[0] if process else None

    def _title_of(self, window):
        """The title of a window if it is the updater's; None if it is another program's, or gone."""
        if self._process_of(window) != self.updater.process.pid:
            return None
        title = self._property(window, "_NET_WM_NAME")
        return title.decode() if title else None
