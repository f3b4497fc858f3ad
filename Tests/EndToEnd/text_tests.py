"""The text editor's ways to a place: an error that keeps the tree from being shown, and a line by its number."""

from support import hands
from support.case import EndToEndCase


class TextTests(EndToEndCase):
    def test_text_that_is_no_json_stays_text_with_an_alert_and_the_caret_at_its_error(self):
        self.open("roto.json", b'{\n  "a": 1,\n  "b" 2\n}\n')
        self.editor()
        hands.press("ctrl+End")
        self.wait_for_caret(22)

        hands.press("ctrl+1")
        alert = self.quelm.wait_for_dialog()
        alert.wait_for("label", "No se pudo completar")
        alert.wait_for(
            "label",
            "No se puede mostrar como árbol porque el JSON no es válido.\n"
            "Línea 3, columna 7: Se esperaba ':' después de la clave",
        )
        hands.press("Return")
        self.quelm.wait_for_window("roto.json")
        self.wait_for_caret(18)

        hands.type_text(":")
        self.wait_for_label("3 nodos")
        hands.press("ctrl+s")
        self.wait_for_file("roto.json", b'{\n  "a": 1,\n  "b" :2\n}\n')
        hands.press("ctrl+1")
        self.wait_for_rows("raíz, Objeto, 2 claves", "a, Número, 1", "b, Número, 2")
        self.close_and_wait()

    def test_the_caret_goes_to_a_line_by_its_number(self):
        self.open("lista.json", b"[\n1,\n2,\n3\n]\n")
        self.tree()
        hands.press("ctrl+2")
        self.editor()
        hands.press("ctrl+l")
        prompt = self.quelm.wait_for_dialog("Ir a línea")
        field = prompt.wait_for("text", "Número de línea").wait_until_it_is("focused")
        hands.type_text("3")
        self.wait_for_content(field, "3")
        hands.press("Return")
        self.quelm.wait_for_window("lista.json")
        self.wait_for_caret(5)
        hands.type_text("7")
        self.wait_for_text("[\n1,\n72,\n3\n]\n")
        hands.press("ctrl+s")
        self.wait_for_file("lista.json", b"[\n1,\n72,\n3\n]\n")
        self.wait_for_title("lista.json — Quelm")
        self.close_and_wait()
