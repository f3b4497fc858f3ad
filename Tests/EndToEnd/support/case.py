"""The base of the tests: one desktop for all of them, files and settings of its own for each."""

import os
import shutil
import tempfile
import unittest

from . import hands
from .quelm import Quelm
from .waiting import wait_until


class EndToEndCase(unittest.TestCase):
    """Tests in which a person opens, edits and saves files. The class attributes are set by whoever runs them."""

    maxDiff = None
    desktop = None
    # The program under test.
    program = None
    # Where pictures of failures go.
    output = None

    def setUp(self):
        self.desktop.forget_settings()
        self.folder = tempfile.mkdtemp(prefix="files-", dir=self.desktop.folder)
        self.addCleanup(shutil.rmtree, self.folder)
        self._started = []
        self.addCleanup(self._stop_programs)

    def run(self, result=None):
        test = getattr(self, self._testMethodName)

        def observed():
            try:
                test()
            except BaseException:
                self._keep_what_was_seen()
                raise

        setattr(self, self._testMethodName, observed)
        return super().run(result)

    # Files.

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content)

    def wait_for_file(self, name, content):
        """Until the file holds exactly these bytes."""
        def look():
            try:
                with open(self.path(name), "rb") as file:
                    return file.read()
            except FileNotFoundError:
                return None

        wait_until(f"{name} is written", look, lambda seen: seen == content)

    def assert_file(self, name, content):
        with open(self.path(name), "rb") as file:
            self.assertEqual(file.read(), content)

    # Windows.

    def open(self, name, content=None):
        """Starts the program on the file, which is written first if there is content; its window has the keyboard."""
        if content is not None:
            self.write(name, content)
        quelm = self.start(self.path(name))
        self.window = quelm.wait_for_window(name)
        return quelm

    def start(self, *arguments):
        """Starts the program, and waits for nothing."""
        self.quelm = Quelm(self.desktop, self.program, *arguments)
        self._started.append(self.quelm)
        return self.quelm

    def wait_for_title(self, title):
        """The only window is called that for the window manager, where a "*" after the file's marks changes."""
        wait_until(f'the window is called "{title}"', self.quelm.titles, lambda titles: titles == [title])

    def wait_for_title_among(self, title):
        """One of several windows is called that."""
        wait_until(f'a window is called "{title}"', self.quelm.titles, lambda titles: title in titles)

    def close_window(self):
        """The one that has the keyboard."""
        hands.press("alt+F4")

    # The tree.

    def tree(self):
        """Has the keyboard: itself, or a field in it."""
        return self.window.wait_for("tree", "Árbol")

    def wait_for_rows(self, *names):
        """What the rows of a small tree say of themselves, from the top."""
        self.tree()
        wait_until("the tree shows these rows", self._row_names, lambda seen: seen == list(names))

    def wait_for_selected_row(self, name):
        wait_until(f"the row {name} is selected", lambda: self._row_names("selected"), lambda seen: seen == [name])

    def rows(self, name=None):
        """Those with that name, or all, as the tree has them now."""
        rows = [row for tree in self.window.find_all("tree", "Árbol") for row in tree.children()]
        return [row for row in rows if name is None or row.name == name]

    def _row_names(self, state="showing"):
        return [row.name for row in self.rows() if row.is_(state)]

    def wait_for_field(self, name):
        """The field that a key or a value is typed into, once it has the keyboard."""
        def look():
            return [text for row in self.rows() if row.child_count() for text in row.find_all("text", name)]

        return wait_until(f'there is a field "{name}"', look)[0].wait_until_it_is("focused")

    # The text.

    def editor(self):
        """The text, once it has the keyboard."""
        return self.window.wait_for("text").wait_until_it_is("focused")

    def wait_for_text(self, text):
        editor = self.editor()
        wait_until("the text is this", editor.text, lambda seen: seen == text)

    def wait_for_content(self, field, text):
        """Of a field in a dialog."""
        wait_until(f'"{text}" is in the field', field.text, lambda seen: seen == text)

    def wait_for_caret(self, offset):
        editor = self.editor()
        wait_until(f"the caret is at {offset}", editor.caret, lambda seen: seen == offset)

    # The rest of the window.

    def wait_for_clipboard(self, text):
        """Until other programs get this from it."""
        wait_until("this is in the clipboard", hands.clipboard, lambda seen: seen == text)

    def wait_for_label(self, name):
        """`name` is a text, or a condition on it."""
        return self.window.wait_for("label", name)

    def close_and_wait(self):
        self.close_window()
        self.assertEqual(self.quelm.wait_until_ended(), 0, self.quelm.log_text())

    def _stop_programs(self):
        for quelm in self._started:
            quelm.stop()

    def _keep_what_was_seen(self):
        name = os.path.join(self.output, self.id().rpartition(".")[2])
        self.desktop.save_screenshot(name + ".png")
        with open(name + ".txt", "w", encoding="utf-8") as file:
            for quelm in self._started:
                file.write(quelm.log_text())
                file.write("\n".join(quelm.outline()) + "\n")
        print(f"what was seen: {name}.png, {name}.txt")
