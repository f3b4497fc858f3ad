"""Everything by the mouse alone."""

from support import hands
from support.case import EndToEndCase
from support.waiting import wait_until

# Pixels from the left end of a row of the outermost level, and between levels.
CHEVRON, BADGE, LEVEL = 20, 48, 16
# The place of a kind among all of them in the menu of a badge.
NUMBER, KINDS = 3, 6
# Likewise of an item in the menu of exports.
PRETTY, EXPORTS = 0, 2


class MouseTests(EndToEndCase):
    def test_rows_badges_and_the_picker_can_be_clicked(self):
        self.open("datos.json", b'{"lista":[1,2],"texto":"12"}')
        self.wait_for_rows("raíz, Objeto, 2 claves", "lista, Arreglo, 2 elementos", 'texto, Texto, "12"')

        self.click_row('texto, Texto, "12"')
        self.wait_for_selected_row('texto, Texto, "12"')
        self.wait_for_label("$.texto")

        self.click_row("lista, Arreglo, 2 elementos", CHEVRON + LEVEL)
        self.wait_for_rows(
            "raíz, Objeto, 2 claves",
            "lista, Arreglo, 2 elementos",
            "0, Número, 1",
            "1, Número, 2",
            'texto, Texto, "12"',
        )

        self.quelm.choose_in_popup(lambda: self.click_row('texto, Texto, "12"', BADGE + LEVEL), NUMBER, KINDS)
        self.wait_for_selected_row("texto, Número, 12")
        self.wait_for_title("datos.json* — Quelm")

        hands.click(self.window.wait_for("radio button", "Texto"))
        self.wait_for_text('{"lista":[1,2],"texto":12}')
        hands.click(self.window.wait_for("radio button", "Árbol"))
        self.wait_for_selected_row("texto, Número, 12")

        self.quelm.choose("Archivo", "Guardar")
        self.wait_for_file("datos.json", b'{"lista":[1,2],"texto":12}')
        self.wait_for_title("datos.json — Quelm")
        self.close_and_wait()

    def test_the_export_menu_of_the_toolbar_writes_a_copy(self):
        self.open("datos.json", b'{"a":1}')
        self.tree()
        button = self.window.wait_for("push button", "Exportar")
        self.quelm.choose_in_popup(lambda: hands.click(button), PRETTY, EXPORTS)
        dialog = self.quelm.wait_for_dialog("Exportar")
        field = dialog.wait_for("text").wait_until_it_is("focused")
        hands.press("ctrl+a")
        hands.type_text("copia.json")
        self.wait_for_content(field, "copia.json")
        hands.click(dialog.wait_for("push button", "Exportar"))
        self.wait_for_file("copia.json", b'{\n  "a": 1\n}\n')
        self.quelm.wait_for_window("datos.json")
        self.close_and_wait()
        self.assert_file("datos.json", b'{"a":1}')

    def click_row(self, name, from_left=None):
        """In its middle, or at so many pixels from its left end."""
        row = wait_until(f"there is a row {name}", lambda: self.rows(name))[0]
        left, top, width, height = row.extents()
        hands.click_at(left + (from_left if from_left is not None else width // 2), top + height // 2)
