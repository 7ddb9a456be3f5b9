"""The oracle's rules for single texts and numbers: UTF-16 units, paths, messages, labels, modes."""

LABEL_COLORS = ("", "gray", "green", "purple", "blue", "yellow", "red", "orange")
LABEL_NOT_FOUND = 2**63 - 1
LABEL_MASK = 0x000E
FINDER_INFO_SIZE = 32


# Texts ----------------------------------------------------------------------------------------------------------------


def units(text):
    """UTF-16 units of a text as a list of integers."""
    raw = text.encode("utf-16-le", "surrogatepass")
    return [raw[i] | raw[i + 1] << 8 for i in range(0, len(raw), 2)]


def text_of_units(values):
    raw = b"".join(bytes((value & 0xFF, value >> 8)) for value in values)
    return raw.decode("utf-16-le", "surrogatepass")


def to_bytes(text):
    return text.encode("utf-8", "surrogateescape")


# Paths ----------------------------------------------------------------------------------------------------------------


def _tidy(path):
    while "//" in path:
        path = path.replace("//", "/")
    return path[:-1] if len(path) > 1 and path.endswith("/") else path


def join(path, component):
    """`path` with a component: runs of "/" count as one, a "/" at the end goes."""
    if path == "":
        return _tidy(component)
    return _tidy(path + "/" + component)


def last_component(path):
    path = _tidy(path)
    return path if path == "/" else path.rsplit("/", 1)[-1]


def without_last_component(path):
    path = _tidy(path)
    if path == "/":
        return "/"
    head, slash, _ = path.rpartition("/")
    return head if head else ("/" if slash else "")


# Alerts ---------------------------------------------------------------------------------------------------------------

_INTEGERS = "diuxXoDUO"
_OBJECTS = "@sS"
_REALS = "fFeEgGaA"


def _pad(body, flags, width, zero_allowed=True, sign=""):
    if len(sign) + len(body) >= width:
        return sign + body
    if "-" in flags:
        return (sign + body).ljust(width)
    if "0" in flags and zero_allowed:
        return sign + body.rjust(width - len(sign), "0")
    return (sign + body).rjust(width)


def _absent_argument(conversion, flags, width, precision):
    """What a directive prints when its argument is missing."""
    sign = "+" if "+" in flags else " " if " " in flags else ""
    if conversion in _INTEGERS:
        if conversion not in "diD":
            sign = ""
        body = "0" if precision is None else "0" * precision
        if conversion in "oO" and "#" in flags and body == "":
            body = "0"
        return _pad(body, flags, width, precision is None, sign)
    if conversion in _OBJECTS:
        body = "(null)" if precision is None else "(null)"[:precision]
        return _pad(body, flags, width, False)
    if conversion in "aA":
        point = "" if not precision else "." + "0" * precision
        body = "0x0" + point + "p+0"
        body = body.upper() if conversion == "A" else body
        if "0" in flags and "-" not in flags and width > len(sign) + len(body):
            return sign + body[:2] + body[2:].rjust(width - len(sign) - 2, "0")
        return _pad(body, flags, width, False, sign)
    digits = "" if precision is None else f".{precision}"
    alternative = "#" if "#" in flags else ""
    return _pad(f"%{alternative}{digits}{conversion}" % 0.0, flags, width, True, sign)


def message_of_format(text):
    """A message read as a format without arguments: directives print what nothing prints, the rest stays."""
    result = ""
    position = 0
    while position < len(text):
        if text[position] != "%":
            result += text[position]
            position += 1
            continue
        at = position + 1
        while at < len(text) and text[at] in "0123456789":
            at += 1
        if not (at > position + 1 and text[at : at + 1] == "$"):
            at = position
        at += 1
        flags = ""
        while at < len(text) and text[at] in "-+ 0#'":
            flags += text[at]
            at += 1
        width = ""
        if text[at : at + 1] == "*":
            at += 1
        while at < len(text) and text[at] in "0123456789":
            width += text[at]
            at += 1
        precision = None
        if text[at : at + 1] == ".":
            at += 1
            digits = ""
            if text[at : at + 1] == "*":
                at += 1
            while at < len(text) and text[at] in "0123456789":
                digits += text[at]
                at += 1
            precision = int(digits or "0")
        while at < len(text) and text[at] in "hlqLztj":
            at += 1
        conversion = text[at : at + 1]
        if conversion == "%":
            result += "%"
        elif conversion and conversion in _INTEGERS + _OBJECTS + _REALS:
            result += _absent_argument(conversion, flags, int(width or "0"), precision)
        else:
            result += text[position:at]
            position = at
            continue
        position = at + 1
    return result


# Small helpers --------------------------------------------------------------------------------------------------------


def without_file_system_entities(text):
    return text.replace("/", "").replace("~", "").replace(":", "")


def color_from_hex(text):
    """Red, green and blue of a hexadecimal number at the start of a text; white space and one "0x" are skipped."""
    rest = (text or "").lstrip(" \t\n\v\f\r")
    if rest[:2] in ("0x", "0X"):
        rest = rest[2:]
    digits = ""
    for character in rest:
        if character not in "0123456789abcdefABCDEF":
            break
        digits += character
    value = min(int(digits or "0", 16), 0xFFFFFFFF)
    return tuple((value >> shift & 0xFF) / 255 for shift in (16, 8, 0))


def bool_of_button_state(state):
    return state == 1


# Labels and modes -----------------------------------------------------------------------------------------------------


def label_number(color):
    """0 for an absent or empty name, 1 to 7 for a known one, else LABEL_NOT_FOUND. Exact comparison."""
    if color is None:
        return 0
    return LABEL_COLORS.index(color) if color in LABEL_COLORS else LABEL_NOT_FOUND


def flags_with_label(flags, label):
    return (flags & 0xFFFF & ~LABEL_MASK) | ((label << 1) & LABEL_MASK)


def finder_info_with_label(info, label):
    """The 32 bytes with the label's bits in the big-endian word at 8 and 9; everything else as it is."""
    raw = bytearray((info or b"").ljust(FINDER_INFO_SIZE, b"\0"))
    flags = flags_with_label(raw[8] << 8 | raw[9], label)
    raw[8], raw[9] = flags >> 8, flags & 0xFF
    return bytes(raw)


def mode_of_permissions(text):
    """Mode bits of a text of exactly three UTF-16 units, read as C's "%o" reads; None for any other length."""
    if text is None or len(units(text)) != 3:
        return None
    rest = text.lstrip(" \t\n\v\f\r")
    negative = rest[:1] == "-"
    if rest[:1] in ("+", "-"):
        rest = rest[1:]
    value = 0
    for character in rest:
        if character not in "01234567":
            break
        value = value * 8 + int(character)
    return (-value if negative else value) & 0o7777
