"""Starting the program while it runs already."""

import os
import signal
import stat

from support.case import EndToEndCase
from support.desktop import run
from support.waiting import wait_until


class InstanceTests(EndToEndCase):
    def start_second(self, first, *arguments):
        """It hands its files over and ends; the first program goes on."""
        second = self.start(*arguments)
        self.assertEqual(second.wait_until_ended(), 0, second.log_text())
        self.quelm = first

    def wait_for_titles(self, *titles):
        wait_until(f"the windows are {titles}", self.quelm.titles, lambda seen: sorted(seen) == sorted(titles))

    def sockets(self):
        found = []
        for folder, _, names in os.walk(os.path.join(self.desktop.environment["XDG_RUNTIME_DIR"], "quelm")):
            found += [os.path.join(folder, name) for name in names]
        return found

    def test_a_second_program_hands_its_files_over(self):
        first = self.open("a.json", b"[1]")
        self.write("b.json", b"[2]")
        self.start_second(first, os.path.relpath(self.path("b.json")))
        self.wait_for_titles("a.json — Quelm", "b.json — Quelm")
        first.wait_for_window("b.json")
        # One that is open comes to the front.
        self.start_second(first, self.path("a.json"))
        first.wait_for_window("a.json")
        self.wait_for_titles("a.json — Quelm", "b.json — Quelm")
        # Without files there is a new document.
        self.start_second(first)
        first.wait_for_window("Sin título")

    def test_the_socket_is_the_users_alone_and_goes_with_the_program(self):
        self.open("a.json", b"[1]")
        [socket] = self.sockets()
        self.assertTrue(stat.S_ISSOCK(os.stat(socket).st_mode))
        self.assertEqual(stat.S_IMODE(os.stat(socket).st_mode), 0o600)
        self.assertEqual(stat.S_IMODE(os.stat(os.path.dirname(socket)).st_mode), 0o700)
        self.close_and_wait()
        self.assertEqual(self.sockets(), [])

    def test_after_a_crash_the_next_program_takes_the_socket_over(self):
        self.open("a.json", b"[1]").kill()
        self.assertEqual(len(self.sockets()), 1)
        first = self.open("a.json")
        self.write("b.json", b"[2]")
        self.start_second(first, self.path("b.json"))
        first.wait_for_window("b.json")

    def test_a_program_that_does_not_answer_is_not_waited_for(self):
        first = self.open("a.json", b"[1]")
        os.kill(first.pid, signal.SIGSTOP)
        try:
            second = self.start(self.write_and_path("b.json", b"[2]"))
            wait_until("it has a window of its own", second.titles, lambda seen: seen == ["b.json — Quelm"])
            self.assertIsNone(second.exit_status())
        finally:
            os.kill(first.pid, signal.SIGCONT)

    def write_and_path(self, name, content):
        self.write(name, content)
        return self.path(name)

    def test_help_and_version_do_not_ask_anybody(self):
        first = self.open("a.json", b"[1]")
        os.kill(first.pid, signal.SIGSTOP)
        try:
            self.assertIn("Uso: quelm", run(self.program, "--help").decode())
            self.assertIn("Quelm", run(self.program, "--version").decode())
        finally:
            os.kill(first.pid, signal.SIGCONT)
