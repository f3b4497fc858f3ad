"""Keys, clicks and the clipboard, through the display as a person's would come."""

import subprocess

from .desktop import run
from .waiting import Unavailable


def press(*keys):
    """Key after key, such as "ctrl+shift+e", into whatever has the focus."""
    run("xdotool", "key", "--delay", "5", *keys)


def type_text(text):
    """Plain ASCII: other characters would need the keyboard to be changed under the program."""
    assert text.isascii() and "\n" not in text
    run("xdotool", "type", "--delay", "5", "--", text)


def click(element):
    """Its middle, once it is where it says."""
    click_at(*element.center())


def click_at(x, y):
    run("xdotool", "mousemove", str(x), str(y), "click", "1")


def clipboard():
    try:
        return run("xclip", "-selection", "clipboard", "-out").decode("utf-8")
    except subprocess.CalledProcessError as error:
        raise Unavailable(error.stderr.decode().strip()) from None


def set_clipboard(text):
    """Taken over by a small program in the background, until another one has a clipboard."""
    # It outlives this call, and would hold on to pipes.
    quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
    command = ["xclip", "-selection", "clipboard", "-in"]
    subprocess.run(command, check=True, timeout=60, input=text.encode("utf-8"), **quiet)
