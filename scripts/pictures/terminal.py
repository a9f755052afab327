"""What a terminal shows, and a picture of it that moves: an SVG file of its own, with neither script nor font,
which browsers show as an image wherever it is embedded."""
import re
from html import escape

# Of a cell; texts are set to this width in whatever font there is.
CELL, LINE, FONT = 8.4, 20, 14
MARGIN = 16
TOKEN = re.compile(r"\r\n|\r|\n|\x1b\[K|[^\x00-\x1f\x7f]+")

TYPING_SECONDS = 0.04
# Nobody needs to wait as long as the one who recorded it.
LONGEST_GAP_SECONDS = 0.5
CURSOR = "\u2588"

FRAME = """<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width:g} {height:g}" \
width="{width:g}" height="{height:g}" role="img">
<title>{title}</title>
<style>
text {{ font: {font}px ui-monospace, SFMono-Regular, Menlo, Consolas, "DejaVu Sans Mono", "Liberation Mono", \
monospace; fill: #d7dde4; white-space: pre; }}
.p {{ fill: #7ee2a8; }}
.c {{ fill: #ffffff; font-weight: bold; }}
{styles}
@media (prefers-reduced-motion: reduce) {{ g {{ animation: none !important; }} }}
</style>
<rect x="0.5" y="0.5" width="{inner_width:g}" height="{inner_height:g}" rx="8" fill="#15191f" stroke="#4b5563"/>
{rows}
</svg>
"""


class Screen:
    """Rows of text, as what a program writes changes them. Takes what the program uses and refuses the rest."""

    def __init__(self, columns):
        self.columns = columns
        self.rows = [""]
        self.at = 0

    def write(self, text):
        while text:
            token = TOKEN.match(text)
            if token is None:
                raise ValueError(f"the terminal knows nothing of {text[:8]!r}")
            text = text[token.end():]
            self.take(token.group())

    def take(self, token):
        if token == "\x1b[K":
            self.rows[-1] = self.rows[-1][:self.at]
        elif token == "\r":
            self.at = 0
        elif token in ("\r\n", "\n"):
            self.rows.append("")
            self.at = 0
        else:
            for character in token:
                if self.at == self.columns:
                    self.take("\r\n")
                row = self.rows[-1]
                self.rows[-1] = row[:self.at] + character + row[self.at + 1:]
                self.at += 1


def lines_of(pieces, columns):
    """What stays of a command's output, with long lines folded."""
    screen = Screen(columns)
    for _, text in pieces:
        screen.write(text)
    while screen.rows and not screen.rows[-1]:
        screen.rows.pop()
    return screen.rows


class Recording:
    """The states of each row in turn, with the seconds at which they begin. What is typed is told from what a
    program wrote by the prompt in front of it."""

    PROMPT = "$ "

    def __init__(self, columns, rows):
        self.columns = columns
        self.changes = [[(0.0, "")] for _ in range(rows)]
        self.seconds = 0.0

    def show(self, rows):
        if len(rows) > len(self.changes):
            raise ValueError(f"{len(rows)} rows do not fit the picture: {rows[-1]}")
        for row, changes in enumerate(self.changes):
            text = rows[row] if row < len(rows) else ""
            if changes[-1][1] != text:
                if changes[-1][0] == self.seconds:
                    changes.pop()
                changes.append((self.seconds, text))

    def scene(self, commands):
        """`commands` are pairs: what is typed, and the pieces of its output with the seconds of each."""
        screen = Screen(self.columns)
        for command, pieces in commands:
            screen.write(self.PROMPT)
            for typed in ["", *command]:
                screen.write(typed)
                self.show([*screen.rows[:-1], screen.rows[-1] + CURSOR])
                self.seconds += TYPING_SECONDS
            self.seconds += 0.4
            screen.write("\r\n")
            self.show(screen.rows)
            before, begun = 0.0, len(screen.rows)
            for seconds, text in pieces:
                self.seconds += min(round(seconds - before, 1), LONGEST_GAP_SECONDS)
                before = seconds
                screen.write(text)
                self.show(screen.rows)
            self.show([*screen.rows[:-1], self.PROMPT + CURSOR])
            # Time to read it.
            self.seconds += 1.5 + 0.15 * (len(screen.rows) - begun)

    def svg(self, title, still_at):
        """`still_at`: the second whose screen stands where nothing moves."""
        styles, rows = [], []
        for number, changes in enumerate(self.changes):
            style, row = self.row(number, changes, still_at)
            styles += style
            rows += row
        width = 2 * MARGIN + self.columns * CELL
        height = 2 * MARGIN + len(self.changes) * LINE
        return FRAME.format(width=width, height=height, inner_width=width - 1, inner_height=height - 1,
                            font=FONT, title=escape(title), styles="\n".join(styles),
                            rows="\n".join(rows))

    def row(self, number, changes, still_at):
        """A strip of all that the row ever shows, which is moved past its window."""
        texts = list(dict.fromkeys(text for _, text in changes))
        if texts == [""]:
            return [], []

        def place(text):
            return f"transform: translateY({-LINE * texts.index(text)}px)"

        still = [text for seconds, text in changes if seconds <= still_at][-1]
        stops = " ".join(f"{100 * seconds / self.seconds:.3f}% {{ {place(text)} }}"
                         for seconds, text in changes)
        style = [f"#r{number} {{ {place(still)}; animation: k{number} {self.seconds:.2f}s step-end infinite }}",
                 f"@keyframes k{number} {{ {stops} }}"]
        strip = "".join(self.text(text, LINE * index) for index, text in enumerate(texts) if text)
        return style, [f'<svg y="{MARGIN + LINE * number}" height="{LINE}" overflow="hidden">'
                       f'<g id="r{number}">{strip}</g></svg>']

    def text(self, text, top):
        parts = [("", text)]
        if text.startswith(self.PROMPT):
            parts = [("p", self.PROMPT), ("c", text[len(self.PROMPT):])]
        drawn, column = "", 0
        for kind, part in parts:
            bare = part.lstrip()
            column += len(part) - len(bare)
            if bare.rstrip():
                drawn += (f'<text{kind and f" class={kind!r}"} x="{MARGIN + column * CELL:g}" '
                          f'y="{top + 15}" textLength="{len(bare.rstrip()) * CELL:g}" xml:space="preserve">'
                          f'{escape(bare.rstrip(), quote=False)}</text>')
            column += len(bare)
        return drawn
