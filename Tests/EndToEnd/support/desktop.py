"""A desktop of the tests' own: a screen in memory, a window manager and a bus with accessibility.

Nothing of the user's is touched: home, settings, bus and display all live in one temporary folder.
"""

import os
import select
import shutil
import subprocess
import tempfile

from .screenshot import save_screenshot
from .server import Server
from .waiting import TimedOut

SCREEN = "1280x1024x24"
_FOLDERS = {
    "HOME": "home",
    "XDG_CONFIG_HOME": "config",
    "XDG_DATA_HOME": "data",
    "XDG_STATE_HOME": "state",
    "XDG_CACHE_HOME": "cache",
    "XDG_RUNTIME_DIR": "runtime",
}
# Everything else could come from the user's desktop. The sanitizers are told how to work by theirs.
_KEPT = ("PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "LD_LIBRARY_PATH")

# A window manager with a single desktop that takes no key but the one that closes a window.
_WINDOW_MANAGER = """<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <desktops><number>1</number></desktops>
  <keyboard><keybind key="A-F4"><action name="Close"/></keybind></keyboard>
  <mouse>
    <context name="Client">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
    </context>
  </mouse>
</openbox_config>
"""


class Desktop:
    """Comes up when entered. Also sets up this process as a client of its display and bus."""

    def __enter__(self):
        self.folder = tempfile.mkdtemp(prefix="quelm-e2e-")
        self.environment = {name: os.environ[name] for name in _KEPT if name in os.environ}
        self.environment |= {
            "LC_ALL": "C.UTF-8",
            "QT_QPA_PLATFORM": "xcb",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "NO_AT_BRIDGE": "0",
        }
        self._servers = []
        try:
            self._make_folders()
            self._start_screen()
            self._start_bus()
            self._start_window_manager()
        except BaseException:
            self.__exit__()
            raise
        os.environ.update(self.environment)
        return self

    def __exit__(self, *_):
        for server in reversed(self._servers):
            server.stop()
        shutil.rmtree(self.folder, ignore_errors=True)

    def forget_settings(self):
        """Everything that programs have stored for this user is gone."""
        for name in ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"):
            shutil.rmtree(self.environment[name])
            os.mkdir(self.environment[name], 0o700)

    def start(self, command, log, **options):
        """A program on this desktop; whoever starts it stops it."""
        return Server(command, self.environment, self._path(log), **options)

    def save_screenshot(self, path):
        save_screenshot(self._path("screen/Xvfb_screen0"), path)

    def _path(self, name):
        return os.path.join(self.folder, name)

    def _make_folders(self):
        for variable, name in _FOLDERS.items():
            os.mkdir(self._path(name), 0o700)
            self.environment[variable] = self._path(name)
        os.mkdir(self._path("screen"), 0o700)
        with open(self._path("openbox.xml"), "w", encoding="utf-8") as file:
            file.write(_WINDOW_MANAGER)

    def _start_screen(self):
        # Keys held down must not repeat: on a busy machine any key is held for long. The display number is one that is
        # free, which only the server itself can find out without a race.
        command = ["Xvfb", "-screen", "0", SCREEN, "-dpi", "96", "-fbdir", self._path("screen")]
        command += ["-nolisten", "tcp", "-noreset", "-r", "-ardelay", "2000000000"]
        number = self._serve(command, "xvfb.log", "-displayfd", "{fd}")
        self.environment["DISPLAY"] = f":{number}"

    def _start_bus(self):
        command = ["dbus-daemon", "--session", "--nofork", "--nopidfile"]
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._serve(command, "bus.log", "--print-address={fd}")

    def _start_window_manager(self):
        self._servers.append(self.start(["openbox", "--config-file", self._path("openbox.xml")], "openbox.log"))

    def _serve(self, command, log, *announcing):
        """Starts a server that says on a descriptor where it can be reached, and returns what it says."""
        read_end, write_end = os.pipe()
        with os.fdopen(read_end, "rb") as answers:
            try:
                command = command + [word.format(fd=write_end) for word in announcing]
                server = self.start(command, log, pass_fds=(write_end,))
            finally:
                os.close(write_end)
            self._servers.append(server)
            ready, _, _ = select.select([answers], [], [], 60)
            answer = answers.readline().decode().strip() if ready else ""
        if not answer:
            raise TimedOut(f"{command[0]} did not come up: {server.log_text()}")
        return answer


def run(*command):
    """A short-lived helper on the desktop that this process is a client of; what it writes."""
    return subprocess.run(command, check=True, capture_output=True, timeout=60).stdout
