"""What of one run is there again in the next."""

import os
import signal

from support import hands
from support.case import EndToEndCase
from support.desktop import run
from support.waiting import wait_until


class SessionTests(EndToEndCase):
    def open_two(self):
        self.write("a.json", b"[1]")
        self.write("b.json", b"[2]")
        self.start(self.path("a.json"), self.path("b.json"))
        self.wait_for_titles("a.json — Quelm", "b.json — Quelm")

    def wait_for_titles(self, *titles):
        wait_until(f"the windows are {titles}", self.quelm.titles, lambda seen: sorted(seen) == sorted(titles))

    def area(self, title):
        """Left, top, width and height of a window, without its frame."""
        window = run("xdotool", "search", "--onlyvisible", "--name", title).decode().split()[0]
        answer = run("xdotool", "getwindowgeometry", "--shell", window).decode()
        at = {name: int(value) for name, value in (line.split("=") for line in answer.split())}
        return at["X"], at["Y"], at["WIDTH"], at["HEIGHT"]

    def resize(self, title, width, height):
        window = run("xdotool", "search", "--onlyvisible", "--name", title).decode().split()[0]
        run("xdotool", "windowsize", window, str(width), str(height))
        wait_until("it has that size", lambda: self.area(title)[2:], lambda seen: seen == (width, height))

    def test_the_documents_that_were_open_when_the_user_quit_return(self):
        self.open_two()
        self.resize("^b.json", 640, 480)
        before = self.area("^b.json")
        self.quelm.wait_for_any_window("b.json")
        hands.press("ctrl+q")
        self.assertEqual(self.quelm.wait_until_ended(), 0)

        self.start()
        self.wait_for_titles("a.json — Quelm", "b.json — Quelm")
        wait_until("the window is where it was", lambda: self.area("^b.json"), lambda seen: seen == before)
        for name in ("a.json", "b.json"):
            os.remove(self.path(name))
        hands.press("ctrl+q")
        self.assertEqual(self.quelm.wait_until_ended(), 0)

        # Nothing is left of them: a new document, and no complaint.
        self.start()
        self.wait_for_titles("Sin título — Quelm")

    def test_documents_whose_windows_are_closed_one_by_one_do_not_return(self):
        self.open("a.json", b"[1]")
        self.close_and_wait()
        self.start()
        self.wait_for_titles("Sin título — Quelm")

    def test_files_on_the_command_line_come_alone(self):
        self.open_two()
        hands.press("ctrl+q")
        self.assertEqual(self.quelm.wait_until_ended(), 0)
        self.open("c.json", b"[3]")
        self.wait_for_titles("c.json — Quelm")

    def test_a_signal_ends_the_program_without_a_question_and_its_work_is_offered_again(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            self.open_two()
            self.quelm.wait_for_any_window("b.json")
            hands.press("ctrl+alt+b")
            self.quelm.wait_for_any_window("b.json*")
            os.kill(self.quelm.pid, number)
            self.assertEqual(self.quelm.wait_until_ended(), 128 + number)
            self.assert_file("b.json", b"[2]")

            self.start()
            question = self.quelm.wait_for_dialog()
            hands.click(question.wait_for("push button", "Recuperar"))
            self.wait_for_titles("a.json — Quelm", "b.json* — Quelm")
            hands.press("ctrl+q")
            question = self.quelm.wait_for_dialog()
            question.wait_for("label", '¿Quieres guardar los cambios de "b.json"?')
            hands.click(question.wait_for("push button", "No guardar"))
            self.assertEqual(self.quelm.wait_until_ended(), 0)
            self.desktop.forget_settings()
