"""The table of ratios."""

from dataclasses import dataclass

HEADINGS = ("row", "ours", "reference", "ratio", "target", "met")


@dataclass(frozen=True)
class Row:
    what: str
    ours: str
    reference: str = "-"
    ratio: str = "-"
    target: str = "-"
    met: str = "-"

    def cells(self):
        return (self.what, self.ours, self.reference, self.ratio, self.target, self.met)


def seconds(value):
    return f"{value:.3f} s" if value < 10 else f"{value:.1f} s"


def ratio_text(ratio):
    """Fractions read better the way the targets are put."""
    return f"{ratio:.2f}" if ratio >= 0.5 else f"1/{1 / ratio:.1f} ({ratio:.3f})"


def target_text(target):
    return f"at most {target:g}" if target >= 0.5 else f"at most 1/{1 / target:.3g}"


def yes_or_no(is_met):
    return "yes" if is_met else "NO"


def compare(what, ours, reference, target=None, show=seconds, tool=""):
    """A ratio of two figures; `target` is the highest that it may be, None where it is for information."""
    if ours is None or reference is None or reference <= 0:
        return Row(what, "-" if ours is None else show(ours), met="not measured")
    # A difference of two costs that are alike may fall below nothing.
    ratio = max(ours, 1e-6) / reference
    shown = f"{show(reference)}{' ' + tool if tool else ''}"
    if target is None:
        return Row(what, show(ours), shown, ratio_text(ratio))
    return Row(what, show(ours), shown, ratio_text(ratio), target_text(target), yes_or_no(ratio <= target))


def limit(what, value, highest, unit, reference="-"):
    """A figure that has a limit of its own."""
    if value is None:
        return Row(what, "-", met="not measured")
    return Row(what, f"{value:.3g} {unit}", reference, "-", f"at most {highest:g} {unit}",
               yes_or_no(value <= highest))


def skipped(what, why):
    return Row(what, "-", met=f"skipped: {why}")


def text_of(rows):
    """As Markdown, which also reads well as it is."""
    lines = [HEADINGS, *(row.cells() for row in rows)]
    return aligned(lines)


def aligned(lines):
    widths = [max(len(line[i]) for line in lines) for i in range(len(lines[0]))]
    # A long reason to skip a row must not widen the table.
    widths[-1] = min(widths[-1], 12)

    def joined(cells):
        return "| " + " | ".join(cell.ljust(width) for cell, width in zip(cells, widths)) + " |"

    rule = "|" + "|".join("-" * (width + 2) for width in widths) + "|"
    return "\n".join([joined(lines[0]), rule, *(joined(line) for line in lines[1:])])
