"""Runs a program on a terminal: what it writes, and what the screen shows in the end."""

import fcntl
import os
import pty
import re
import select
import signal
import struct
import subprocess
import termios
import time
import unicodedata


SLOW_STEPS = 8


def cells(text):
    """Returns the width of a text in columns."""
    return sum(0 if unicodedata.combining(character) else
               2 if unicodedata.east_asian_width(character) in "WF" else 1 for character in text)


def without_colors(text):
    return re.sub(r"\x1b\[[0-9;]*m", "", text)


def screen(text):
    """Returns the lines on the screen in the end, without colours. Understands CR, LF and "clear to
    the end of the line"."""
    lines, line, column = [], [], 0
    for token in re.findall(r"\x1b\[K|[^\x1b]", without_colors(text)):
        if token == "\x1b[K":
            del line[column:]
        elif token == "\r":
            column = 0
        elif token == "\n":
            lines.append("".join(line))
            line, column = [], 0
        else:
            line[column:column + 1] = [token]
            column += 1
    return lines + ["".join(line)] if line else lines


class PseudoTerminal:
    """Runs a program with its standard output and standard error, or only the latter, on this
    terminal."""

    def __init__(self, arguments, columns=80, environment=None, with_output=True,
                 with_input=False, **options):
        self.master, slave = pty.openpty()
        self.text = ""
        self.resize(columns)
        known = {name: value for name, value in os.environ.items() if name != "NO_COLOR"}
        known["TERM"] = "xterm-256color"
        for name, value in (environment or {}).items():
            if value is None:
                known.pop(name, None)
            else:
                known[name] = value
        self.process = subprocess.Popen(
            arguments, env=known, stdin=slave if with_input else subprocess.DEVNULL,
            stdout=slave if with_output else subprocess.PIPE, stderr=slave,
            start_new_session=True, **options)
        os.close(slave)

    def resize(self, columns):
        fcntl.ioctl(self.master, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))

    def read(self, seconds=0.05):
        """Returns the output since the last call; None when the program has closed the terminal."""
        if not select.select([self.master], [], [], seconds)[0]:
            return ""
        try:
            taken = os.read(self.master, 65536).decode("utf-8", "replace")
        except OSError:
            return None
        self.text += taken
        return taken or None

    def read_until(self, pattern, seconds=30):
        """Reads until the text without colours matches `pattern`."""
        deadline = time.monotonic() + seconds
        while not re.search(pattern, without_colors(self.text)):
            if self.read() is None or time.monotonic() > deadline:
                raise AssertionError(f"no {pattern!r} in {self.text!r}")

    def step(self):
        """Stops the program for a while, then lets it run for an instant."""
        self.process.send_signal(signal.SIGSTOP)
        deadline = time.monotonic() + 0.15
        while time.monotonic() < deadline and self.read(seconds=0.02) is not None:
            pass
        self.process.send_signal(signal.SIGCONT)
        time.sleep(0.01)

    def step_until(self, pattern):
        """Steps until the text matches `pattern`, and leaves the program stopped."""
        deadline = time.monotonic() + 60
        while not re.search(pattern, self.text):
            if self.process.poll() is not None or time.monotonic() > deadline:
                raise AssertionError(f"no {pattern!r} in {self.text!r}")
            self.step()
        self.process.send_signal(signal.SIGSTOP)

    def finish_in_steps(self):
        """Like finish(), for a program that is slow at first."""
        for _ in range(SLOW_STEPS):
            if self.process.poll() is None:
                self.step()
        return self.finish()

    def type(self, text):
        os.write(self.master, text.encode())

    def finish(self):
        """Waits for the program's end and returns all that it wrote."""
        while self.read(seconds=60) is not None:
            pass
        self.process.wait(timeout=60)
        if self.process.stdout:
            self.output = self.process.stdout.read().decode()
            self.process.stdout.close()
        os.close(self.master)
        return self.text
