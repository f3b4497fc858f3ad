"""The program as it tells assistive technology about itself. Needs the desktop's bus when it is imported."""

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  the version has to be chosen first

from .waiting import Unavailable, wait_until  # noqa: E402

Atspi.init()
# Answers must be those of the moment; nothing here listens to the events that would keep remembered ones true.
Atspi.get_desktop(0).set_cache_mask(Atspi.Cache.NONE)
# Milliseconds for an answer, and for the first one of a program.
Atspi.set_timeout(5000, 30000)

# Their children can be millions, and are asked for one by one instead.
_VAST = {"tree", "tree table", "table"}


def _asking(method):
    """Objects come and go while they are asked."""

    def ask(*arguments):
        try:
            return method(*arguments)
        except GLib.Error as error:
            raise Unavailable(str(error)) from None

    return ask


class Element:
    """One accessible object of the program."""

    def __init__(self, accessible):
        self._accessible = accessible

    @property
    @_asking
    def role(self):
        return self._accessible.get_role_name()

    @property
    @_asking
    def name(self):
        return self._accessible.get_name()

    @_asking
    def states(self):
        """Such as "showing", "enabled", "focused", "checked"."""
        return {state.value_nick for state in self._accessible.get_state_set().get_states()}

    def is_(self, state):
        return state in self.states()

    @_asking
    def child_count(self):
        return self._accessible.get_child_count()

    @_asking
    def child(self, index):
        found = self._accessible.get_child_at_index(index)
        if found is None:
            raise Unavailable(f"child {index}")
        return Element(found)

    def children(self):
        return [self.child(index) for index in range(self.child_count())]

    @_asking
    def text(self):
        """All of it: not for long ones."""
        return Atspi.Text.get_text(self._accessible, 0, Atspi.Text.get_character_count(self._accessible))

    @_asking
    def character_count(self):
        return Atspi.Text.get_character_count(self._accessible)

    @_asking
    def caret(self):
        """In characters from the start of its text."""
        return Atspi.Text.get_caret_offset(self._accessible)

    @_asking
    def center(self):
        """On the screen, in pixels."""
        place = Atspi.Component.get_extents(self._accessible, Atspi.CoordType.SCREEN)
        if place.width <= 0 or place.height <= 0:
            raise Unavailable("no place on the screen")
        return place.x + place.width // 2, place.y + place.height // 2

    @_asking
    def extents(self):
        """Left, top, width, height on the screen, in pixels."""
        place = Atspi.Component.get_extents(self._accessible, Atspi.CoordType.SCREEN)
        return place.x, place.y, place.width, place.height

    def descendants(self):
        """Every object below that can be seen, itself first."""
        yield self
        if self.role in _VAST:
            return
        for child in self.children():
            if child.is_("showing") or child.role == "application":
                yield from child.descendants()

    def find_all(self, role, name=None):
        """`name` is a text, or a condition on it."""
        matches = name if callable(name) else lambda seen: name is None or seen == name
        return [each for each in self.descendants() if each.role == role and matches(each.name)]

    def wait_for(self, role, name=None):
        """The first that there is, as soon as there is one."""
        what = f'there is a {role} "{name}" in {self!r}'
        return wait_until(what, lambda: self.find_all(role, name))[0]

    def wait_until_gone(self, role, name=None):
        wait_until(f'there is no {role} "{name}" any more', lambda: self.find_all(role, name), lambda found: not found)

    def wait_until_it_is(self, state):
        wait_until(f"{self!r} is {state}", self.states, lambda states: state in states)
        return self

    def __repr__(self):
        try:
            return f'{self.role} "{self.name}" {sorted(self.states())}'
        except Unavailable as error:
            return f"gone ({error})"

    def outline(self, depth=0):
        """What it holds, a line an object: for a look at what went wrong."""
        lines = ["  " * depth + repr(self)]
        try:
            for index in range(min(self.child_count(), 60)):
                child = self.child(index)
                lines += child.outline(depth + 1) if child.is_("showing") else []
        except Unavailable as error:
            lines.append("  " * depth + f"gone ({error})")
        return lines


@_asking
def application_of(pid):
    """The root of a process; unavailable until it is on the bus."""
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is not None and application.get_process_id() == pid:
            return Element(application)
    raise Unavailable(f"the application of process {pid}")
