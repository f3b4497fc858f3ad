"""The program under test: started on the desktop, and what can be said of it from outside."""

import os

from . import hands
from .accessible import application_of
from .desktop import run
from .waiting import Unavailable, wait_until


class Quelm:
    """One process. Whoever starts it stops it."""

    def __init__(self, desktop, program, *files):
        self._server = desktop.start([program, *files], "quelm.log")
        self.pid = self._server.pid

    def stop(self):
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

    def wait_for_dialog(self, name):
        """Likewise a dialog or an alert; `name` is a text, or a condition on it."""
        def look():
            application = self.application
            return [each for role in ("dialog", "alert") for each in application.find_all(role, name)]

        dialog = wait_until(f'there is a dialog "{name}"', look)[0]
        return dialog.wait_until_it_is("active")

    def titles(self):
        """As the window manager knows them."""
        found = run("xdotool", "search", "--onlyvisible", "--all", "--pid", str(self.pid), "--name", "..*")
        return [run("xdotool", "getwindowname", window).decode().strip() for window in found.decode().split()]

    def choose(self, *path):
        """Opens the menus and clicks the item, such as "JSON", "Ir a línea…"."""
        menu, *items = path
        hands.click(self.application.wait_for("menu bar").wait_for("menu item", menu))
        for name in items:
            popup = wait_until(f"the menu with {name} is open", lambda: self._open_menu_with(name))
            hands.click(popup.wait_for("menu item", name).wait_until_it_is("enabled"))

    def _open_menu_with(self, name):
        menus = self.application.find_all("popup menu")
        return next((menu for menu in menus if menu.find_all("menu item", name)), None)

    def wait_until_ended(self):
        """Returns the exit status, and leaves no process of the program behind."""
        status = wait_until("the program has ended", self._server.exit_status, lambda seen: seen is not None)
        wait_until("nothing of the program runs", lambda: _processes_of_group(self.pid), lambda found: not found)
        return status


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


