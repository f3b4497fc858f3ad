"""Programs in the background that belong to the tests: started with a log, and ended for certain."""

import os
import subprocess


class Server:
    """A program that runs until `stop`, in a process group of its own; its output goes to a file."""

    def __init__(self, command, environment, log, pass_fds=(), folder=None):
        with open(log, "ab") as output:
            self._process = subprocess.Popen(
                command,
                env=environment,
                stdin=subprocess.DEVNULL,
                stdout=output,
                stderr=subprocess.STDOUT,
                pass_fds=pass_fds,
                cwd=folder,
                start_new_session=True,
            )
        self.log = log

    @property
    def pid(self):
        return self._process.pid

    def exit_status(self):
        """Negative for a signal; absent while it runs."""
        return self._process.poll()

    def stop(self):
        """Ends what is left of its process group, the hard way when it does not go by itself."""
        if self._process.poll() is None:
            self._process.terminate()
            try:
                self._process.wait(10)
            except subprocess.TimeoutExpired:
                pass
        try:
            os.killpg(self.pid, 9)
        except ProcessLookupError:
            pass
        self._process.wait()

    def log_text(self):
        with open(self.log, encoding="utf-8", errors="replace") as file:
            return file.read()
