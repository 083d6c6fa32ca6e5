# SPDX-License-Identifier: MIT
"""A vantora-shell to be talked to, in which system calls may go wrong."""

import contextlib
import errno
import json
import os
import select
import subprocess
import tempfile
import time
import traceback

# Far more than anything takes here: whoever waits that long waits for ever.
LONGEST_WAIT_SECONDS = 60


class Fault:
    """What goes wrong: the n-th of the calls that FaultyCalls.cpp counts; none if n is 0.

    kind   an errno; "28+" for this errno from there on; "kill", "tear" or "full"
    under  the directory whose files count
    calls  further functions that count
    """

    def __init__(self, kind, at, under="", calls=()):
        self.variables = {"FAULT_UNDER": under, "FAULT_CALLS": ",".join(calls),
                          "FAULT_AT": str(at), "FAULT_KIND": str(kind)}
        self.name = f"{errno.errorcode.get(kind, kind)} at call {at}"


class Failure(Exception):
    """What should hold does not."""


class Answer:
    """What the shell said to one command. The code of a shell that has died is None."""

    def __init__(self, line=None):
        reply = json.loads(line) if line else {}
        self.code = reply.get("code")
        self.nodes = [(node["key"], node.get("value")) for node in reply.get("nodes", [])]
        self.text = reply.get("text", "")
        self.messages = reply.get("messages", [])


class Shell:
    """One vantora-shell. `arguments` are its program and options; `prepare` is called with the id
    of its process before it starts."""

    preload = None
    running = []

    def __init__(self, arguments, fault=None, prepare=None):
        environment = dict(os.environ)
        self._report = None
        if fault:
            self._report = tempfile.NamedTemporaryFile(dir="/run")
            environment.update(fault.variables, FAULT_REPORT=self._report.name,
                               LD_PRELOAD=Shell.preload)
        self._messages = tempfile.TemporaryFile(dir="/run")
        self._process = subprocess.Popen(arguments + ["--json", "--keep-going", "-"],
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                         stderr=self._messages, env=environment,
                                         preexec_fn=prepare and (lambda: prepare(os.getpid())))
        self._unread = b""
        Shell.running.append(self)

    def ask(self, command):
        """Gives a command and waits for its answer."""
        self.give(command)
        return Answer(self._read_line(command))

    def give(self, command):
        # One that has died is noticed by its answer.
        with contextlib.suppress(BrokenPipeError):
            self._process.stdin.write(command.encode() + b"\n")
            self._process.stdin.flush()

    def _read_line(self, command):
        end = time.monotonic() + LONGEST_WAIT_SECONDS
        output = self._process.stdout
        while b"\n" not in self._unread:
            if not select.select([output], [], [], max(0, end - time.monotonic()))[0]:
                self.kill()
                raise Failure(f"no answer to {command!r} in {LONGEST_WAIT_SECONDS} s")
            piece = os.read(output.fileno(), 65536)
            if not piece:
                return None
            self._unread += piece
        line, self._unread = self._unread.split(b"\n", 1)
        return line

    def kill(self):
        """Ends it as a power cut does."""
        self._process.kill()
        self._process.wait()
        self._close()

    def end(self):
        """Lets it end in order. The exit status; negative for a signal."""
        self._close()
        try:
            return self._process.wait(LONGEST_WAIT_SECONDS)
        except subprocess.TimeoutExpired:
            self.kill()
            raise Failure(f"does not end in {LONGEST_WAIT_SECONDS} s") from None

    def _close(self):
        if self in Shell.running:
            Shell.running.remove(self)
        with contextlib.suppress(BrokenPipeError):
            self._process.stdin.close()
        self._process.stdout.close()

    def messages(self):
        self._messages.seek(0)
        return self._messages.read().decode()

    def calls(self):
        """The names of the calls that were counted so far."""
        with open(self._report.name, encoding="ascii") as report:
            return report.read().split()


def expect(holds, text):
    if not holds:
        raise Failure(text)


def run_cases(cases):
    """Calls one after the other and tells what they found. The exit status of the test."""
    expect("VANTORA_SANDBOX_RECORD" in os.environ, "to be run in the sandbox only")
    failures = 0
    for case in cases:
        try:
            case()
            print(f"ok    {case.__name__}")
        except Failure as failure:
            failures += 1
            line = traceback.extract_tb(failure.__traceback__)[-2].lineno
            print(f"FAIL  {case.__name__} (line {line}): {failure}")
        # What a case that failed has left would be in the way of the next.
        for shell in list(Shell.running):
            shell.kill()
    return 1 if failures else 0
