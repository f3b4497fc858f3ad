"""What other programs get from the clipboard, and what is taken over from them."""

from support import hands
from support.case import EndToEndCase


class ClipboardTests(EndToEndCase):
    def test_the_tree_copies_paths_and_json_and_takes_json(self):
        self.open("datos.json", b'{"lista":[true]}')
        self.wait_for_rows("raíz, Objeto, 1 clave", "lista, Arreglo, 1 elemento")
        hands.press("Down")
        self.wait_for_selected_row("lista, Arreglo, 1 elemento")

        hands.press("ctrl+shift+c")
        self.wait_for_clipboard("$.lista")
        hands.press("ctrl+c")
        self.wait_for_clipboard("[\n  true\n]\n")

        hands.set_clipboard('{"otra": [1, 2]}')
        hands.press("ctrl+shift+v")
        self.wait_for_label("7 nodos")
        hands.press("ctrl+s")
        self.wait_for_file("datos.json", b'{"lista":[true,{"otra":[1,2]}]}')
        self.wait_for_title("datos.json — Quelm")
        self.close_and_wait()

    def test_a_clipboard_without_json_is_refused_with_an_alert(self):
        self.open("datos.json", b"[1]")
        self.tree()
        hands.set_clipboard("hola")
        hands.press("ctrl+shift+v")
        alert = self.quelm.wait_for_dialog()
        alert.wait_for("label", "No se pudo completar")
        alert.wait_for("label", lambda text: text.startswith("El portapapeles no contiene JSON válido."))
        hands.press("Return")
        self.quelm.wait_for_window("datos.json")
        self.close_and_wait()
        self.assert_file("datos.json", b"[1]")

    def test_the_text_cuts_and_pastes(self):
        self.open("roto.json", b"[1,")
        self.editor()
        hands.press("ctrl+a")
        hands.press("ctrl+x")
        self.wait_for_text("")
        self.wait_for_clipboard("[1,")
        hands.set_clipboard('["año", 2]\n')
        hands.press("ctrl+v")
        self.wait_for_text('["año", 2]\n')
        self.wait_for_label("3 nodos")
        hands.press("ctrl+s")
        self.wait_for_file("roto.json", '["año", 2]\n'.encode())
        self.wait_for_title("roto.json — Quelm")
        self.close_and_wait()
