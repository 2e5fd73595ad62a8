"""Pretty printers of Vorn's text types for gdb. Source this file in .gdbinit or in a session.

    (gdb) source Debuggers/Gdb/VornPrinters.py
    (gdb) print name
    $1 = "Köln"

Null texts print as <null>. No function of the program is called, so the printers work on core files, too.
"""

import gdb
import gdb.printing

DYNAMIC = 0x8000  # flag of ExceptionString in the word of the length
SIZE_MASK = 0xFFFF3FFF

NULL = "<null>"


def text(pointer, encoding, units):
    """Returns the text of `units` units in quotes and with escapes; U+0000 in the library's UTF-8 is 0xC0 0x80.

    The text is truncated at gdb's `print elements`: an object before its construction can have any length.
    """
    limit = gdb.parameter("print elements") or units
    more = "..." if units > limit else ""
    size = min(units, limit) * pointer.type.target().sizeof
    data = bytes(gdb.selected_inferior().read_memory(int(pointer), size)) if size else b""
    if encoding == "utf-8":
        data = data.replace(b"\xc0\x80", b"\x00")
    characters = data.decode(encoding, "backslashreplace")
    escapes = {"\0": "\\0", "\n": "\\n", "\t": "\\t", '"': '\\"'}
    return '"' + "".join(escapes.get(character, character) for character in characters) + '"' + more


class StringDataPrinter:
    """Prints the text of a record in UTF-8, or in UTF-16 if there is no other."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        if int(self.value["m_UTF8Buffer"]):
            return text(self.value["m_UTF8Buffer"], "utf-8", int(self.value["m_utf8Info"]["m_length"]))
        if int(self.value["m_UTF16Buffer"]):
            return text(self.value["m_UTF16Buffer"], "utf-16-le", int(self.value["m_utf16Info"]["m_length"]))
        return NULL


class StringPrinter:
    """Prints the text of the record; a string without a record is null."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        record = self.value["m_data"]
        return StringDataPrinter(record.dereference()).to_string() if int(record) else NULL


class ExceptionStringPrinter:
    """Prints the text of a report; a dynamic text follows its count."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        start = self.value["m_text"]
        if not int(start):
            return NULL
        word = int(self.value["m_sizeAndFlags"])
        if word & DYNAMIC:
            start = start + gdb.lookup_type("int").sizeof
        return text(start, "utf-8", word & SIZE_MASK)


def register():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("Vorn")
    printers.add_printer("String", "^Vorn::String$", StringPrinter)
    printers.add_printer("StringData", "^Vorn::StringData$", StringDataPrinter)
    printers.add_printer("ExceptionString", "^Vorn::ExceptionString$", ExceptionStringPrinter)
    gdb.printing.register_pretty_printer(gdb.current_objfile(), printers, replace=True)


register()
