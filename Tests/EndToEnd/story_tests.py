"""A file's whole story: from the tree to the text and back to the disk, in each of its forms."""

from support import hands
from support.case import EndToEndCase

OPENED = b'{\n  "nombre": "Ana",\n  "edad": 41\n}\n'
EDITED = '{\n  "nombre": "Eva",\n  "ciudad": "Lima",\n  "edad": 41\n}\n'
COMPACT = '{"nombre":"Eva","ciudad":"Lima","edad":41}'


class StoryTests(EndToEndCase):
    def test_a_file_is_edited_in_both_editors_formatted_exported_and_saved(self):
        self.open("persona.json", OPENED)
        self.edit_tree()
        self.break_and_mend_text()
        self.format_text()
        self.export("ctrl+shift+e", "bonito.json", EDITED)
        self.export("ctrl+alt+shift+e", "compacto.json", COMPACT)
        self.save()
        self.reopen()

    def edit_tree(self):
        self.wait_for_rows("raíz, Objeto, 2 claves", 'nombre, Texto, "Ana"', "edad, Número, 41")
        self.wait_for_label("3 nodos")
        self.wait_for_label("Formato: 2 espacios")
        hands.press("Down")
        self.wait_for_selected_row('nombre, Texto, "Ana"')
        self.wait_for_label("$.nombre")

        hands.press("F2")
        self.type_into_field("Valor de nombre", "Eva")
        self.wait_for_rows("raíz, Objeto, 2 claves", 'nombre, Texto, "Eva"', "edad, Número, 41")

        hands.press("ctrl+Return")
        self.type_into_field("Clave", "sitio")
        self.wait_for_selected_row('sitio, Texto, ""')
        hands.press("Return")
        self.type_into_field("Valor de sitio", "Lima")
        self.wait_for_selected_row('sitio, Texto, "Lima"')
        self.wait_for_label("4 nodos")

        self.quelm.choose("Edición", "Renombrar clave")
        self.type_into_field("Clave", "ciudad")
        self.wait_for_rows(
            "raíz, Objeto, 3 claves", 'nombre, Texto, "Eva"', 'ciudad, Texto, "Lima"', "edad, Número, 41"
        )

    def type_into_field(self, name, text):
        self.wait_for_field(name)
        hands.press("ctrl+a")
        hands.type_text(text)
        hands.press("Return")

    def break_and_mend_text(self):
        hands.press("ctrl+2")
        self.wait_for_text(EDITED)
        self.wait_for_label("4 nodos")
        hands.press("ctrl+End")
        hands.type_text("  ]")
        self.wait_for_text(EDITED + "  ]")
        self.wait_for_label("Línea 6, columna 3: Contenido inesperado después del valor raíz")

        error = len(EDITED) + 2
        for go_to_error in (self.click_go_to_error, lambda: self.quelm.choose("JSON", "Ir al error")):
            self.editor()
            hands.press("ctrl+Home")
            self.wait_for_caret(0)
            go_to_error()
            self.wait_for_caret(error)

        hands.press("Delete")
        self.wait_for_text(EDITED + "  ")
        self.wait_for_label("4 nodos")
        self.window.wait_until_gone("label", lambda name: name.startswith("Línea"))

    def click_go_to_error(self):
        hands.click(self.window.wait_for("push button", "Ir al error"))

    def format_text(self):
        hands.press("ctrl+alt+b")
        self.wait_for_text(EDITED)
        hands.press("ctrl+z")
        self.wait_for_text(EDITED + "  ")
        hands.press("ctrl+shift+z")
        self.wait_for_text(EDITED)
        hands.click(self.window.wait_for("push button", "Compactar"))
        self.wait_for_text(COMPACT)
        self.wait_for_label("Formato: compacto")

    def export(self, keys, name, content):
        hands.press(keys)
        dialog = self.quelm.wait_for_dialog("Exportar")
        field = dialog.wait_for("text").wait_until_it_is("focused")
        self.wait_for_content(field, "persona.json")
        hands.press("ctrl+a")
        hands.type_text(name)
        self.wait_for_content(field, name)
        hands.press("Return")
        self.wait_for_file(name, content.encode())
        self.quelm.wait_for_window("persona.json*")

    def save(self):
        self.editor()
        hands.press("ctrl+s")
        self.wait_for_title("persona.json — Quelm")
        self.assert_file("persona.json", COMPACT.encode())
        self.close_and_wait()

    def reopen(self):
        self.open("persona.json")
        self.wait_for_rows(
            "raíz, Objeto, 3 claves", 'nombre, Texto, "Eva"', 'ciudad, Texto, "Lima"', "edad, Número, 41"
        )
        self.close_and_wait()
        self.assert_file("persona.json", COMPACT.encode())
        self.assert_file("bonito.json", EDITED.encode())
        self.assert_file("compacto.json", COMPACT.encode())
