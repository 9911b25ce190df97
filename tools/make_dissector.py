#!/usr/bin/env python3
"""Makes the tables of tools/zel_link.lua, the Wireshark dissector of the device link, anew from
those of docs/device-link.md, which a test holds against link/. What stands behind them stays.

usage: make_dissector.py
"""

import pathlib
import re

TOOLS = pathlib.Path(__file__).resolve().parent
DOCUMENT = TOOLS.parent / "docs" / "device-link.md"
DISSECTOR = TOOLS / "zel_link.lua"
END_OF_TABLES = "-- What is done with these tables."
DIRECTIONS = {"From the terminal to the controller": "to_controller",
              "From the controller to the terminal": "to_terminal"}


class Field:
    def __init__(self, offset, size, name, values):
        self.offset, self.size, self.name, self.values = int(offset), int(size), name, values
        match = re.match(r"as `([\w.]+)`|as (?:in the event|reported|the user's)", values)
        self.reference = match and match[1]
        self.same_name = match and not match[1]


class Command:
    def __init__(self, direction, cells):
        self.direction, self.code = direction, int(cells[0])
        self.name, self.p1, self.p2, self.payload, self.use = cells[1].strip("`"), *cells[2:6]


def read(document):
    """The commands and, by name, the fields and the introducing words of the records."""
    commands, records, words = [], {}, {}
    section = record = None
    for line in document.read_text(encoding="utf-8").splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if line.startswith("## "):
            section, record = DIRECTIONS.get(line[3:]), None
        elif match := re.match(r"### `(\w+)`", line):
            record = match[1]
            records[record], words[record] = [], ""
        elif section and cells[0].isdigit():
            commands.append(Command(section, cells))
        elif record and cells[0].isdigit():
            records[record].append(Field(cells[0], cells[1], cells[2].strip("`"), cells[3]))
        elif record and not line.startswith("|"):
            words[record] += line
    return commands, records, words


COMMANDS, RECORDS, WORDS = read(DOCUMENT)


def size_of(record):
    return max(field.offset + field.size for field in RECORDS[record])


def named(text):
    """The values that a cell gives names to: {number: name}."""
    # The cell tells of ranges, or what one parameter means depends on the other.
    conditions = re.findall(r"\d+: ", text)
    if ".." in text or len(conditions) > 1 or conditions and not text.startswith(conditions[0]):
        return {}
    if conditions:
        return {int(text.split(":")[0]): re.split("[:;] ", text)[1]}
    pairs = re.findall(r"(?:^|[,;:] |at the end )(\d+) ([^\d,;.][^,;]*)", text)
    return {int(number): name.strip() for number, name in pairs}


def values_of(command, cell):
    """The same of a parameter, looked up where the cell refers to another command."""
    if match := re.search(r"as (?:p1 )?in (\d+)", cell):
        origin = next(one for one in COMMANDS if one.code == int(match[1]))
        return values_of(origin, origin.p1)
    if cell == "result":
        return {0: "success", 1: "failure"}
    # A word that the last column explains.
    if match := re.search(r"^[^:]*: ([^;]*)" if cell == "kind" else rf"\b{cell}: ([^;]*)", command.use):
        return named(match[1])
    return named(cell)


def origin_of(field):
    """The field of another record that means the same."""
    for record in ("_gui_menu_", "_gui_user_", "GUI_LOGDATA"):
        name = field.name if field.same_name else field.reference.removeprefix("_gui_user_.")
        for other in RECORDS[record]:
            if other is not field and other.name == name and other.size == field.size:
                return other
    return None


def kind_of(record, field):
    """How the field is shown, and the names of its values."""
    while (field.reference or field.same_name) and (other := origin_of(field)):
        field = other
    if (match := re.match(r"`(\w+)`", field.values)) and match[1] in RECORDS:
        return match[1], {}
    if re.match(r"text|file name", field.values):
        return "text", {}
    if field.size == 4 and field.values.startswith("IPv4"):
        return "ipv4", {}
    if field.size == 4 and re.match(r"range|day", field.values):
        return field.values.split()[0].rstrip(".:"), {}
    if field.size in (1, 2, 4) and not field.name.startswith("reserved"):
        return ("int" if "signed" in WORDS[record] and field.size == 2 else "uint"), named(field.values)
    return "bytes", {}


def payload_of(command):
    """What a payload may be: alternatives of {record, first, size, least, many}, or a plain kind."""
    text = command.payload
    if text == "—":
        return []
    found = []
    for match in re.finditer(r"`(\w+?)(?:\.(\w+))?`", text):
        record, part = match[1], match[2]
        fields = [field for field in RECORDS[record]
                  if not part or field.name.startswith(part + ".")]
        if text.startswith("the four versions of"):
            fields = [field for field in fields if field.name.endswith("Version")]
        first = fields[0].offset
        size = fields[-1].offset + fields[-1].size - first
        found.append({"record": record, "first": first, "size": size, "many": "at most" in text})
    if not found:
        count = {"three": 3}.get(text.split()[0], 1)
        match = re.search(r"(\d+) bytes", text)
        size = int(match[1]) if match else 0
        kind = "uint" if size in (1, 2, 4) else "bytes" if text.endswith("bytes") else "text"
        label = re.sub(r"^.*?: |, or none$|; else none$", "", text)
        found.append({"kind": kind, "label": label, "size": size * count, "each": size, "many": count > 1})
    for one in found:
        one["optional"] = bool(re.search(r"\bnone\b", text)) or one.get("many") and "record" in one
    return found


# ---- Lua -------------------------------------------------------------------------------------------


def lua(value):
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, str):
        return '"' + value.replace("\\", "\\\\").replace('"', '\\"') + '"'
    if isinstance(value, dict):
        return "{" + ", ".join(f"[{key}] = {lua(item)}" if isinstance(key, int) else f"{key} = {lua(item)}"
                               for key, item in value.items()) + "}"
    if isinstance(value, list):
        return "{" + ", ".join(map(lua, value)) + "}"
    return str(value)


def dissector():
    """The whole of the dissector, with tables as the document has them."""
    lines = ["-- The tables are made by tools/make_dissector.py from docs/device-link.md, not by hand."]
    for direction in DIRECTIONS.values():
        lines.append(f"\nlocal {direction} = {{")
        for command in COMMANDS:
            if command.direction == direction:
                entry = {"name": command.name}
                for key in ("p1", "p2"):
                    if names := values_of(command, getattr(command, key)):
                        entry[key] = names
                entry["payload"] = payload_of(command)
                lines.append(f"    [{command.code}] = {lua(entry)},")
        lines.append("}")
    lines.append("\nlocal records = {")
    for record, fields in RECORDS.items():
        lines.append(f"    {record} = {{")
        lines.append(f"        size = {size_of(record)},")
        for field in fields:
            kind, names = kind_of(record, field)
            entry = {"at": field.offset, "size": field.size, "name": field.name, "kind": kind}
            if names:
                entry["names"] = names
            lines.append(f"        {lua(entry)},")
        lines.append("    },")
    lines += ["}", "", ""]
    rest = DISSECTOR.read_text("utf-8")
    return "\n".join(lines) + rest[rest.index(END_OF_TABLES):]


if __name__ == "__main__":
    DISSECTOR.write_text(dissector(), "utf-8")
