"""Waiting for what the program does in its own time: always for a condition, never for a while."""

import time

# Seconds. Far above anything that a healthy program needs, also when it is instrumented and the machine is busy.
PATIENCE = 90.0

# Seconds between two looks: soon at first, and then without keeping the machine from what is waited for.
_FIRST_PAUSE, _LAST_PAUSE = 0.01, 0.2


class TimedOut(AssertionError):
    """Something did not come about; says what was seen instead."""


def wait_until(what, look, is_met=bool):
    """Calls `look` again and again until what it returns satisfies `is_met`, and returns that.

    An answer that cannot be had, because what was asked is just coming or going, counts as not yet.
    """
    deadline = time.monotonic() + PATIENCE
    pause = _FIRST_PAUSE
    while True:
        try:
            seen = look()
            if is_met(seen):
                return seen
        except Unavailable as error:
            seen = error
        if time.monotonic() > deadline:
            raise TimedOut(f"waited {PATIENCE:.0f} s until {what}; last seen: {seen!r}")
        time.sleep(pause)
        pause = min(pause * 1.5, _LAST_PAUSE)


class Unavailable(Exception):
    """What was asked for is not there at the moment."""
