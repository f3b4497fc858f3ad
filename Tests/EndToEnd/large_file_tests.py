"""A file of 30 MB in a single line: what is asked for happens at once, also when something else is under way."""

from support import hands
from support.case import EndToEndCase
from support.waiting import wait_until

RECORDS = 600_000


def large_content():
    """One line of compact JSON."""
    records = ('{"id":%d,"nombre":"registro %d","activo":true}' % (number, number) for number in range(RECORDS))
    return ("[" + ",".join(records) + "]").encode()


class LargeFileTests(EndToEndCase):
    @classmethod
    def setUpClass(cls):
        cls.content = large_content()

    @classmethod
    def tearDownClass(cls):
        del cls.content

    def open_large(self):
        self.open("grande.json", self.content)
        self.wait_for_label(f"{4 * RECORDS + 1} nodos")

    def test_text_can_be_typed_as_soon_as_it_is_shown(self):
        self.open_large()
        hands.press("ctrl+2")
        editor = self.editor()
        hands.type_text("  ")
        wait_until("the text is longer by what was typed", editor.character_count, self.is_length_of(2))
        self.wait_for_caret(2)
        hands.press("ctrl+s")
        self.wait_for_file("grande.json", b"  " + self.content)
        self.wait_for_title("grande.json — Quelm")

        hands.press("ctrl+z")
        wait_until("the text is as it was", editor.character_count, self.is_length_of(0))
        self.wait_for_label(f"{4 * RECORDS + 1} nodos")
        hands.press("ctrl+s")
        self.wait_for_file("grande.json", self.content)
        self.wait_for_title("grande.json — Quelm")
        self.close_and_wait()

    def test_quitting_in_the_middle_of_formatting_leaves_nothing_behind(self):
        self.open_large()
        hands.press("ctrl+alt+b", "ctrl+q")

        # The formatting may just have been faster: then there are changes, and they are asked about.
        def is_settled():
            return self.quelm.exit_status() is not None or self.quelm.find_dialogs()

        wait_until("the program has ended or asks", is_settled)
        for question in self.quelm.find_dialogs():
            hands.click(question.wait_for("push button", "No guardar"))
        self.assertEqual(self.quelm.wait_until_ended(), 0, self.quelm.log_text())
        self.assert_same_file("grande.json")

    def test_formatting_can_be_undone_and_done_again(self):
        self.open_large()
        hands.press("ctrl+2")
        editor = self.editor()
        self.quelm.choose("JSON", "Embellecer")
        # A line for each value and each closing bracket, and blanks before and between.
        longer = wait_until("the text is formatted", editor.character_count, lambda seen: seen > len(self.content))
        hands.press("ctrl+z")
        wait_until("the text is as it was", editor.character_count, self.is_length_of(0))
        hands.press("ctrl+shift+z")
        wait_until("the text is formatted again", editor.character_count, lambda seen: seen == longer)
        hands.click(self.window.wait_for("push button", "Compactar"))
        wait_until("the text is in one line", editor.character_count, self.is_length_of(0))
        hands.press("ctrl+s")
        self.wait_for_title("grande.json — Quelm")
        self.assert_same_file("grande.json")
        self.close_and_wait()

    def is_length_of(self, more):
        """Whether a length is that of the content and so many characters more."""
        return lambda length: length == len(self.content) + more

    def assert_same_file(self, name):
        """A message with both contents would be of no use."""
        with open(self.path(name), "rb") as file:
            self.assertTrue(file.read() == self.content, f"{name} is not what it was")
