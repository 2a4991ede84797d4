"""Reads a settings file as the program does on Windows, in the INI dialect of QSettings, with notes on what may not be
read as it was meant."""
import bisect
import re
from collections import namedtuple

# The keys that the shell reads, as (section, name). The top level is what stands before the first section, or
# under [General].
KEYS = [
    ("Server", "TidewellServerPort"),
    ("Server", "TidewellServerAddress"),
    ("Desktop", "WindowManagerBehaviour"),
    ("", "SambaServer"),
    ("", "SambaSharedPath"),
    ("", "SambaDomain"),
    ("", "ChrootEnvironment"),
]
BOM = b"\xef\xbb\xbf"


def path_of(section, name):
    return f"{section}/{name}" if section else name


Line = namedtuple("Line", "start end equals")  # offsets; equals is -1 without one
Section = namedtuple("Section", "name start end number head")  # number: the line of its head, 0 for the first
Entry = namedtuple("Entry", "section key number raw value notes spans")
Reading = namedtuple("Reading", "text notes")


def lines(data, position, end):
    """Lines between two offsets. One ends at a line end or a semicolon, but not within double quotes, and a
    backslash takes the byte after it along, a line end too. Comments and blank lines are left out."""
    while True:
        start = position
        while start < end and data[start] in b" \t\r\n":
            start += 1
        i, equals, quoted = start, -1, False
        while i < end:
            byte = data[i:i + 1]
            i += 1
            if byte == b"=" and not quoted and equals == -1:
                equals = i - 1
            elif byte in (b"\r", b"\n") and not quoted:
                i -= 1
                break
            elif byte == b"\\" and i < end:
                if data[i:i + 2] in (b"\r\n", b"\n\r"):
                    i += 1
                i += 1
            elif byte == b'"':
                quoted = not quoted
            elif byte == b";" and i == start + 1:
                while i < end and data[i] not in b"\r\n":
                    i += 1
                while i < end and data[i] in b" \t\r\n":
                    i += 1
                start = i
            elif byte == b";" and not quoted:
                i -= 1
                break
        if i == start:
            return
        position = i
        yield Line(start, i, equals)


def read_key(raw):
    """A key or section as the program names it: %XX and %UXXXX are letters, a backslash is a slash."""
    def letter(match):
        return chr(int(match.group(1) or match.group(2), 16))
    key = raw.decode("latin-1").replace("\\", "/")
    return re.sub("%(?:U([0-9A-Fa-f]{4})|([0-9A-Fa-f]{2}))", letter, key)


def said(text, form="{}"):
    """A letter in words, in this form if it is none that can be shown."""
    names = {"\f": "form feed", "\n": "line end", "\r": "carriage return", "\t": "tabulator"}
    return f'"{text}"' if text.isprintable() else form.format(names.get(text, f"U+{ord(text):04X}"))


SINGLE = {"a": "\a", "b": "\b", "f": "\f", "n": "\n", "r": "\r", "t": "\t", "v": "\v",
          '"': '"', "?": "?", "'": "'", "\\": "\\"}


def read_value(raw, encoding="latin-1"):
    """What stands behind the equals sign, as the program reads it, with notes on what it may not be meant to."""
    text = raw.decode(encoding, "replace")
    notes, result, kept = [], "", 0  # blanks at the end are dropped, but not before `kept`
    values, quoted, was_quoted, after_escape = [], False, False, False
    i = len(text) - len(text.lstrip(" \t"))
    while i < len(text):
        here, after_escape, follows_escape = text[i], False, after_escape
        i += 1
        if here == "\\":
            if i == len(text):
                break
            code = text[i]
            i += 1
            digits = re.compile("[0-9A-Fa-f]*" if code == "x" else "[0-7]*").match(text, i)
            if code in SINGLE:
                result += SINGLE[code]
                if code not in '"\\':
                    notes.append(f"\\{code} is read as {said(SINGLE[code], 'a {}')}")
            elif code == "x" and digits.group():
                result += chr(int(digits.group(), 16) & 0xFFFF)
                i, after_escape = digits.end(), True
                if len(digits.group()) > 4 or (ord(result[-1]) < 0x80 and not follows_escape):
                    notes.append(f"\\x{digits.group()} is read as the letter {said(result[-1])}")
            elif code in "01234567":
                number = code + digits.group()
                result += chr(int(number, 8) & 0xFFFF)
                i = digits.end()
                notes.append(f"\\{number} is read as the letter {said(result[-1])}")
            elif code in "\r\n":
                if text[i:i + 1] in ("\r", "\n") and text[i] != code:
                    i += 1
                notes.append("the backslash at the end of the line joins the next line to it")
            else:
                notes.append(f"\\{code} is swallowed")
            kept = len(result)
        elif here == '"':
            was_quoted, quoted = True, not quoted
            if not quoted:
                while text[i:i + 1] in (" ", "\t"):
                    i += 1
        elif here == "," and not quoted:
            values.append(result if was_quoted else chopped(result, kept))
            result, kept, was_quoted = "", 0, False
            while text[i:i + 1] in (" ", "\t"):
                i += 1
        else:
            result += here
    if quoted:
        notes.append("its quotation mark is not closed")
    elif was_quoted and not values and not re.fullmatch(r'"(\\.|[^"\\])*"', text.strip(), re.DOTALL):
        notes.append("its quotation marks are left out")
    if values:
        return Reading("", notes + ["its comma makes it a list, and a list reads as nothing"])
    plain = variant_text(result if was_quoted else chopped(result, kept))
    if result.startswith("@"):
        notes.append("a value that begins with @ has a meaning of its own; @@ stands for the sign")
    return Reading(plain, notes)


def chopped(text, kept):
    return text[:kept] + text[kept:].rstrip(" \t")


def variant_text(text):
    if text.startswith("@") and text.endswith(")"):
        if text.startswith("@ByteArray("):
            return text[11:-1].encode("latin-1", "replace").decode("utf-8", "replace")
        if text.startswith("@String("):
            return text[8:-1]
        words = len(text[:-1].partition("(")[2].split(" "))
        if text == "@Invalid()" or text.startswith(("@Variant(", "@DateTime(")) or (
                text.partition("(")[0], words) in (("@Rect", 4), ("@Size", 2), ("@Point", 2)):
            return ""
    return text[1:] if text.startswith("@@") else text


class Settings:
    """A settings file, read as a whole."""

    def __init__(self, data):
        self.data = data
        self.line_ends = [match.end() for match in re.finditer(rb"\r\n|\r|\n", data)]
        self.encoding = "utf-8" if data.startswith(BOM) else "latin-1"
        self.sections = self._split()
        self.entries, self.strays = [], []  # strays: (line number, raw text, lines that it goes on for)
        for section in self.sections:
            for line in lines(data, section.start, section.end):
                self._take(section, line)

    def _split(self):
        sections, name, head, start, number = [], "", b"", 0, 0
        first = len(BOM) if self.data.startswith(BOM) else 0
        for line in lines(self.data, first, len(self.data)):
            if self.data[line.start:line.start + 1] != b"[":
                continue
            sections.append(Section(name, start, line.start, number, head))
            head = self.data[line.start:line.end]
            raw = head[1:].partition(b"]")[0].strip()
            name = "" if raw.lower() == b"general" else read_key(raw) + "/"
            if raw.lower() == b"%general":
                name = raw[1:].decode("latin-1") + "/"
            start, number = line.end, self.number(line.start)
        return sections + [Section(name, start, len(self.data), number, head)]

    def _take(self, section, line):
        spans = self.number(line.end) - self.number(line.start)
        if line.equals == -1:
            self.strays.append((self.number(line.start), self.data[line.start:line.end], spans))
            return
        raw = self.data[line.equals + 1:line.end]
        key = read_key(self.data[line.start:line.equals].rstrip(b" \t"))
        value, notes = read_value(raw, self.encoding)
        if self.data[line.end:line.end + 1] == b";" and raw[-1:] not in (b" ", b"\t", b""):
            notes = notes + ["it ends before the semicolon, where a comment begins"]
        self.entries.append(Entry(section.name, key, self.number(line.start), raw, value, notes, spans))

    def number(self, offset):
        return bisect.bisect_right(self.line_ends, offset) + 1

    def looked_up(self, section, name):
        """Entries that the program finds for a key; the last one counts. Letters' case has no say."""
        wanted = path_of(section, name).lower()
        known = sorted({s.name.lower() for s in self.sections} | {""})
        if not section:
            found = ""
        else:  # the program takes the last section that is not behind the key, and that has to begin it
            found = [name for name in known if name <= wanted][-1]
            if not found:
                return []
        return [e for e in self.entries if e.section.lower() == found and (found + e.key.lower()) == wanted]

    def value(self, section, name):
        entries = self.looked_up(section, name)
        return entries[-1].value if entries else ""


def escaped(text):
    """A value as it has to be written."""
    result, after_escape = "", False
    for letter in text:
        number = ord(letter)
        if number < 0x20 or number > 0x7E or (after_escape and letter in "0123456789abcdefABCDEF"):
            result, after_escape = result + f"\\x{number:x}", True
        else:
            result, after_escape = result + (f"\\{letter}" if letter in '"\\' else letter), False
    return f'"{result}"' if re.search("[,;]|^ | $", text) else result


def to_int(text):
    """A number as the program reads it: 0 when it is none, or too large for 32 bits."""
    match = re.fullmatch(r"\s*([+-]?)0*([0-9]{1,10})\s*", text)
    number = int(match.group(1) + match.group(2)) if match else 0
    return number if -2**31 <= number < 2**31 else 0


def shown(raw):
    try:
        return raw.strip().decode("utf-8")
    except UnicodeDecodeError:
        return raw.strip().decode("latin-1")
