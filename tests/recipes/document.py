"""The blocks of code of a Markdown document, in order."""

import re
from dataclasses import dataclass
from pathlib import Path

_BLOCK = re.compile(r"^```(?P<info>[^\n`]*)\n(?P<text>.*?)^```$", re.MULTILINE | re.DOTALL)


@dataclass(frozen=True)
class Block:
    kind: str  # what stands first behind the opening mark: sh, python, r, text
    options: dict  # what follows it there: file=NAME to be saved as, needs=PROGRAM to be run at all
    text: str
    printed: str | None  # the text block right behind it: what it prints
    line: int  # of the opening mark

    def __str__(self):
        return f"{self.kind} block in line {self.line}"


def blocks_of(path):
    source = Path(path).read_text(encoding="utf-8")
    found = list(_BLOCK.finditer(source))
    blocks = []
    for i, match in enumerate(found):
        kind, *options = match["info"].split() or ["text"]
        if kind == "text":
            continue
        behind = found[i + 1] if i + 1 < len(found) else None
        told = behind is not None and behind["info"] == "text" and not source[match.end() : behind.start()].strip()
        blocks.append(
            Block(
                kind=kind,
                options=dict(option.split("=", 1) for option in options),
                text=match["text"],
                printed=behind["text"] if told else None,
                line=source.count("\n", 0, match.start()) + 1,
            )
        )
    return blocks
