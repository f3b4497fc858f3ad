"""Closing windows with and without changes."""

from support import hands
from support.case import EndToEndCase

CONTENT = b'{\n  "nombre": "Ana"\n}\n'
CHANGED = b'{\n  "nombre": "Eva"\n}\n'


class ClosingTests(EndToEndCase):
    def change_name(self):
        self.wait_for_rows("raíz, Objeto, 1 clave", 'nombre, Texto, "Ana"')
        hands.press("Down")
        self.wait_for_selected_row('nombre, Texto, "Ana"')
        hands.press("F2")
        self.wait_for_field("Valor de nombre")
        hands.press("ctrl+a")
        hands.type_text("Eva")
        hands.press("Return")
        self.wait_for_rows("raíz, Objeto, 1 clave", 'nombre, Texto, "Eva"')
        self.wait_for_title("persona.json* — Quelm")

    def ask_to_close(self):
        self.close_window()
        question = self.quelm.wait_for_dialog()
        question.wait_for("label", '¿Quieres guardar los cambios de "persona.json"?')
        return question

    def test_an_unchanged_window_closes_and_the_program_ends(self):
        self.open("persona.json", CONTENT)
        self.wait_for_title("persona.json — Quelm")
        self.close_and_wait()
        self.assert_file("persona.json", CONTENT)

    def test_a_changed_window_stays_when_the_question_is_cancelled_and_closes_saved(self):
        self.open("persona.json", CONTENT)
        self.change_name()

        hands.click(self.ask_to_close().wait_for("push button", "Cancelar"))
        self.quelm.wait_for_window("persona.json*")
        self.assert_file("persona.json", CONTENT)

        hands.click(self.ask_to_close().wait_for("push button", "Guardar"))
        self.assertEqual(self.quelm.wait_until_ended(), 0)
        self.assert_file("persona.json", CHANGED)

    def test_changes_can_be_thrown_away(self):
        self.open("persona.json", CONTENT)
        self.change_name()
        hands.click(self.ask_to_close().wait_for("push button", "No guardar"))
        self.assertEqual(self.quelm.wait_until_ended(), 0)
        self.assert_file("persona.json", CONTENT)
