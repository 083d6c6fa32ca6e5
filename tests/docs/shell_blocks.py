# SPDX-License-Identifier: MIT
"""The shell commands of the documents: the blocks that they mark with ```sh."""

import re
import textwrap

LINE = re.compile(r"^(?P<indent> *)```(?P<language>\w*)$")


def blocks_of(text):
    """The heading that each block stands under, and its text."""
    heading, language, lines = None, None, []
    for line in text.splitlines():
        fence = LINE.match(line)
        if fence and language is None:
            language, lines = fence["language"], []
        elif fence:
            if language == "sh":
                yield heading, textwrap.dedent("\n".join(lines)) + "\n"
            language = None
        elif language is not None:
            lines.append(line)
        elif line.startswith("#"):
            heading = line.lstrip("# ")


def block(path, heading, number=0):
    """A block of the document below the heading; the first one has the number 0."""
    found = [text for of_heading, text in blocks_of(path.read_text(encoding="utf-8")) if of_heading == heading]
    return found[number]
