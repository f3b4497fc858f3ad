"""What is not saved when the program comes to an unexpected end is there again at the next start."""

import glob
import os
import stat

from support import hands
from support.case import EndToEndCase
from support.waiting import wait_until

CONTENT = b'{\n  "nombre": "Ana"\n}\n'


class RecoveryTests(EndToEndCase):
    def journals(self):
        return glob.glob(os.path.join(self.desktop.environment["XDG_STATE_HOME"], "quelm", "recovery", "*.journal"))

    def wait_for_journal_with(self, text):
        """Until a journal holds these bytes: what was typed is safe then."""
        def look():
            found = []
            for path in self.journals():
                with open(path, "rb") as file:
                    found.append(file.read())
            return found

        wait_until(f"a journal holds {text}", look, lambda seen: any(text in each for each in seen))

    def change_name(self):
        self.wait_for_rows("raíz, Objeto, 1 clave", 'nombre, Texto, "Ana"')
        hands.press("Down")
        hands.press("F2")
        self.wait_for_field("Valor de nombre")
        hands.press("ctrl+a")
        hands.type_text("Eva")
        hands.press("Return")
        self.wait_for_rows("raíz, Objeto, 1 clave", 'nombre, Texto, "Eva"')

    def answer(self, names, answer):
        question = self.quelm.wait_for_dialog()
        question.wait_for(
            "label", f"Quelm se cerró inesperadamente. ¿Quieres recuperar los cambios sin guardar de {names}?")
        hands.click(question.wait_for("push button", answer))

    def test_an_edited_tree_is_offered_again_and_its_file_stays_as_it_was(self):
        self.open("persona.json", CONTENT)
        self.change_name()
        self.wait_for_journal_with(b"Eva")
        self.quelm.kill()

        self.start(self.path("persona.json"))
        self.answer('"persona.json"', "Recuperar")
        self.wait_for_title("persona.json* — Quelm")
        self.window = self.quelm.wait_for_window("persona.json*")
        self.wait_for_rows("raíz, Objeto, 1 clave", 'nombre, Texto, "Eva"')
        self.assert_file("persona.json", CONTENT)
        hands.press("ctrl+s")
        self.wait_for_file("persona.json", CONTENT.replace(b"Ana", b"Eva"))
        self.wait_for_title("persona.json — Quelm")
        self.close_and_wait()
        self.assertEqual(self.journals(), [])

    def test_a_document_without_a_file_is_offered_again(self):
        self.start()
        self.window = self.quelm.wait_for_window("Sin título")
        self.tree()
        hands.press("ctrl+2")
        self.editor()
        hands.press("ctrl+a")
        hands.type_text("[12345")
        self.wait_for_journal_with(b"5")
        [journal] = self.journals()
        self.assertEqual(stat.S_IMODE(os.stat(journal).st_mode), 0o600)
        self.assertEqual(stat.S_IMODE(os.stat(os.path.dirname(journal)).st_mode), 0o700)
        self.quelm.kill()

        self.start()
        self.answer('"Sin título"', "Recuperar")
        self.wait_for_title("Sin título* — Quelm")
        self.window = self.quelm.wait_for_window("Sin título*")
        self.wait_for_text("[12345")

    def test_changes_that_are_not_wanted_are_not_offered_again(self):
        self.open("persona.json", CONTENT)
        self.change_name()
        self.wait_for_journal_with(b"Eva")
        self.quelm.kill()

        self.start(self.path("persona.json"))
        self.answer('"persona.json"', "Descartar")
        self.window = self.quelm.wait_for_window("persona.json")
        wait_until("the journal is gone", self.journals, lambda seen: not seen)
        self.close_and_wait()

    def test_a_file_that_has_changed_since_is_left_alone(self):
        self.open("persona.json", CONTENT)
        self.change_name()
        self.wait_for_journal_with(b"Eva")
        self.quelm.kill()
        self.write("persona.json", b"[1]")

        self.start(self.path("persona.json"))
        alert = self.quelm.wait_for_dialog()
        alert.wait_for("label", lambda name: "no se pueden recuperar" in name)
        self.assertEqual(self.journals(), [])
        self.assert_file("persona.json", b"[1]")
