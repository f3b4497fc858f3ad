"""What is chosen in the window of the preferences counts from the next use on, also for the next start."""

from support import hands
from support.case import EndToEndCase

CONTENT = b'{"b":[1],"a":2}'


class PreferencesTests(EndToEndCase):
    def test_an_open_document_is_formatted_as_was_just_chosen(self):
        self.open("datos.json", CONTENT)
        self.tree()
        hands.press("ctrl+2")
        self.wait_for_text(CONTENT.decode())

        preferences = self.open_preferences()
        self.choose(preferences, "2 espacios", "4 espacios")
        self.sort_keys(preferences)
        self.choose(preferences, "Árbol si es válido, si no Texto", "Texto (formato original)")
        # Nothing but the window of the document has its menus; it comes to the front by a click.
        hands.click(self.window.wait_for("push button", "Embellecer"))
        self.wait_for_text('{\n    "a": 2,\n    "b": [\n        1\n    ]\n}\n')
        self.wait_for_label("Formato: 4 espacios")

        self.quelm.choose("Archivo", "Guardar")
        self.wait_for_file("datos.json", b'{\n    "a": 2,\n    "b": [\n        1\n    ]\n}\n')
        self.wait_for_title_among("datos.json — Quelm")
        hands.press("ctrl+q")
        self.assertEqual(self.quelm.wait_until_ended(), 0)

    def test_choices_outlive_the_program(self):
        self.open("datos.json", CONTENT)
        self.tree()
        preferences = self.open_preferences()
        self.choose(preferences, "2 espacios", "Tabulador")
        self.choose(preferences, "Árbol si es válido, si no Texto", "Texto (formato original)")
        self.close_window()
        self.quelm.wait_for_window("datos.json")
        self.close_and_wait()

        self.open("datos.json")
        self.wait_for_text(CONTENT.decode())
        preferences = self.open_preferences()
        preferences.wait_for("combo box", "Tabulador")
        preferences.wait_for("combo box", "Texto (formato original)")
        self.close_window()
        self.quelm.wait_for_window("datos.json")
        hands.press("ctrl+alt+b")
        self.wait_for_text('{\n\t"b": [\n\t\t1\n\t],\n\t"a": 2\n}\n')
        hands.press("ctrl+z")
        self.wait_for_title("datos.json — Quelm")
        self.close_and_wait()
        self.assert_file("datos.json", CONTENT)

    def open_preferences(self):
        hands.press("ctrl+comma")
        return self.quelm.wait_for_any_window("Preferencias")

    def choose(self, preferences, present, title):
        """In the list that shows `present`."""
        combo_box = preferences.wait_for("combo box", present)
        hands.click(combo_box)
        hands.click(combo_box.wait_for("list item", title))
        preferences.wait_for("combo box", title)

    def sort_keys(self, preferences):
        box = preferences.wait_for("check box", "Ordenar claves alfabéticamente")
        hands.click(box)
        box.wait_until_it_is("checked")
