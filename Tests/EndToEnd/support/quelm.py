"""The program under test: started on the desktop, and what can be said of it from outside."""

import os
import signal
from subprocess import CalledProcessError

from . import hands
from .accessible import application_of
from .desktop import run
from .waiting import Unavailable, wait_until

_DIALOGS = ("dialog", "alert")
_LEAST_MENU_HEIGHT = 40


class Quelm:
    """One process. Whoever starts it stops it."""

    def __init__(self, desktop, program, *files):
        self._server = desktop.start([program, *files], "quelm.log")
        self.pid = self._server.pid

    def stop(self):
        self._server.stop()

    def kill(self):
        """Ends it at once, as a crash does."""
        os.killpg(self.pid, signal.SIGKILL)
        self._server.stop()

    def log_text(self):
        return self._server.log_text()

    def outline(self):
        """All that it shows, a line an object; for a look at what went wrong."""
        try:
            return application_of(self.pid).outline()
        except Unavailable as error:
            return [str(error)]

    @property
    def application(self):
        return wait_until("the program tells what it shows", lambda: application_of(self.pid))

    def wait_for_window(self, name):
        """The window with that title has the keyboard."""
        frame = self.application.wait_for("frame", name)
        return frame.wait_until_it_is("active")

    def wait_for_dialog(self, name=None):
        """Likewise a dialog or an alert, whatever it is called if no name is given."""
        return self._wait_for_top_level(f'dialog "{name}"', lambda each: each.role in _DIALOGS, name)

    def wait_for_any_window(self, name):
        """Likewise, of whatever kind it is."""
        return self._wait_for_top_level(f'window "{name}"', lambda each: True, name)

    def _wait_for_top_level(self, what, is_of_kind, name):
        def look():
            windows = self.application.children()
            return [each for each in windows if is_of_kind(each) and (name is None or each.name == name)]

        return wait_until(f"there is a {what}", look)[0].wait_until_it_is("active")

    def titles(self):
        """As the window manager knows them."""
        def title(window):
            try:
                return run("xdotool", "getwindowname", window).decode().strip()
            except CalledProcessError:
                raise Unavailable(f"window {window}") from None

        return [title(window) for window in _windows(self.pid, "--name", ".")]

    def choose_in_popup(self, open_it, place, count):
        """For a menu that no accessible object leads to: clicks one of its `count` items of equal height, counted from
        0, in the pop-up window that `open_it` opens."""
        before = set(_windows(self.pid))
        open_it()
        what = "a pop-up menu is open"
        places = wait_until(what, lambda: [_place(window) for window in set(_windows(self.pid)) - before], any)
        left, top, width, height = next(filter(None, places))
        hands.click_at(left + width // 2, top + height * (2 * place + 1) // (2 * count))

    def choose(self, *path):
        """Opens the menus and clicks the item, such as "JSON", "Ir a línea…"."""
        menu, *items = path
        hands.click(self.application.wait_for("menu bar").wait_for("menu item", menu))
        for name in items:
            hands.click(self.wait_for_menu_item(name))

    def wait_for_menu_item(self, name):
        """In whichever menu is open, once it can be chosen."""
        def look():
            menus = self.application.find_all("popup menu")
            return [item for menu in menus for item in menu.find_all("menu item", name)]

        return wait_until(f"a menu with {name} is open", look)[0].wait_until_it_is("enabled")

    def find_dialogs(self):
        """Those that there are now; none when it has ended."""
        try:
            return [each for each in application_of(self.pid).children() if each.role in _DIALOGS]
        except Unavailable:
            return []

    def exit_status(self):
        """Absent while it runs."""
        return self._server.exit_status()

    def wait_until_ended(self):
        """Returns the exit status, and leaves no process of the program behind."""
        status = wait_until("the program has ended", self._server.exit_status, lambda seen: seen is not None)
        wait_until("nothing of the program runs", lambda: _processes_of_group(self.pid), lambda found: not found)
        return status


def _windows(pid, *conditions):
    """The ids of those on the screen that satisfy all the conditions."""
    try:
        return run("xdotool", "search", "--onlyvisible", "--all", "--pid", str(pid), *conditions).decode().split()
    except CalledProcessError:
        # None, or one that has just gone.
        return []


def _place(window):
    """Left, top, width and height on the screen, in pixels; absent for what is too low for a menu, as a tool tip is."""
    try:
        answer = run("xdotool", "getwindowgeometry", "--shell", window).decode()
    except CalledProcessError:
        return None
    at = {name: int(value) for name, value in (line.split("=") for line in answer.split())}
    return (at["X"], at["Y"], at["WIDTH"], at["HEIGHT"]) if at["HEIGHT"] >= _LEAST_MENU_HEIGHT else None


def _processes_of_group(group):
    """Process ids, without those that only wait for their parent to look at them."""
    found = []
    for name in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{name}/stat", encoding="utf-8", errors="replace") as file:
                state, _, process_group = file.read().rpartition(")")[2].split()[:3]
        except OSError:
            continue
        if int(process_group) == group and state != "Z":
            found.append(int(name))
    return found


