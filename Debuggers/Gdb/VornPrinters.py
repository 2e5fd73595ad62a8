"""Pretty printers of Vorn's types for gdb.

An installation in /usr puts this file where gdb loads it with the library. Otherwise source it in .gdbinit or in a
session; an installation has a copy in share/vorn.

    (gdb) source PREFIX/share/vorn/VornPrinters.py
    (gdb) print name
    $1 = "Köln"
    (gdb) print pressed
    $2 = event with 1 listener = {[0] = priority 0: method Panel::onPress of 0x7fffffffe3d0}

Null handles print as <null>, and an object that cannot be read, such as one before its construction, as <corrupt: reason>.
`print /r` shows the fields. No function of the program is called, so the printers work on core files, too.
"""

import math

import gdb
import gdb.printing

NULL = "<null>"
MOST_NODES = 10000  # of a list or of a path: a corrupt one can be a circle


class Corrupt(Exception):
    """The fields of an object contradict each other."""


# Reading


def text(pointer, encoding, units):
    """Returns the text of `units` units in quotes and with escapes; U+0000 in the library's UTF-8 is 0xC0 0x80.

    The text is truncated at gdb's `print elements`: an object before its construction can have any length.
    """
    limit = gdb.parameter("print elements") or 0x1000000
    more = "..." if units > limit else ""
    size = min(units, limit) * pointer.type.target().sizeof
    data = bytes(gdb.selected_inferior().read_memory(int(pointer), size)) if size else b""
    if encoding == "utf-8":
        data = data.replace(b"\xc0\x80", b"\x00")
    characters = data.decode(encoding, "backslashreplace")
    escapes = {"\0": "\\0", "\n": "\\n", "\t": "\\t", '"': '\\"'}
    return '"' + "".join(escapes.get(character, character) for character in characters) + '"' + more


def text_in(pointer, encoding, units):
    """As `text`, of an untyped pointer and an enumerator of TextEncoding."""
    name, unit = ("utf-8", "unsigned char") if int(encoding) == 0 else ("utf-16-le", "unsigned short")
    return text(pointer.cast(gdb.lookup_type(unit).pointer()), name, units)


def atomic_int(value):
    return int(value.address.cast(gdb.lookup_type("int").pointer()).dereference())


def pointee(pointer, type_name):
    return pointer.cast(gdb.lookup_type(type_name).pointer()).dereference()


def read_at(place, type_name, words):
    """Returns the value of a type that lies `words` pointers behind an address; `void` stands for a pointer."""
    pointer = gdb.lookup_type("void").pointer()
    kind = pointer if type_name == "void" else gdb.lookup_type(type_name)
    return gdb.Value(place + words * pointer.sizeof).cast(kind.pointer()).dereference()


def field(value, name, type_name, words):
    """Returns a field of a class with virtual functions, `words` pointers behind its start.

    The compiler describes such a class only in the library, which may have no debug information.
    """
    try:
        return value[name]
    except gdb.error:
        return read_at(int(value.address), type_name, words)


def counted(number, noun):
    return "%d %s%s" % (number, noun, "" if number == 1 else "s")


def address(pointer):
    return "0x%x" % int(pointer)


def symbol(pointer):
    """Returns the name of the function or variable at an address, or None."""
    answer = gdb.execute("info symbol 0x%x" % int(pointer), to_string=True)
    return None if answer.startswith("No symbol") else answer.split(" in section ")[0].strip()


def template_arguments(name):
    """Divides `Some<A, B<C>>::rest` into `Some` and the list of A and B<C>; the list is empty for anything else."""
    template, bracket, rest = name.partition("<")
    if not bracket:
        return name, []
    arguments, depth, start = [], 0, 0
    for i, character in enumerate(rest):
        if character in "<({[":
            depth += 1
        elif depth == 0 and character in ",>":
            arguments.append(rest[start:i].strip())
            start = i + 1
            if character == ">":
                return template, arguments
        elif character in ")}]" or (character == ">" and rest[i - 1] != "-"):
            depth -= 1
    return name, []


# Text


def describe_record(record):
    """Describes a StringData: its text in UTF-8, or in UTF-16 if there is no other."""
    if int(record["m_UTF8Buffer"]):
        return text(record["m_UTF8Buffer"], "utf-8", int(record["m_utf8Info"]["m_length"]))
    if int(record["m_UTF16Buffer"]):
        return text(record["m_UTF16Buffer"], "utf-16-le", int(record["m_utf16Info"]["m_length"]))
    return NULL


def describe_string(string):
    record = string["m_data"]
    return describe_record(record.dereference()) if int(record) else NULL


def describe_report_text(report):
    """Describes an ExceptionString; a dynamic text follows its count."""
    dynamic, size_mask = 0x8000, 0xFFFF3FFF
    start = report["m_text"]
    if not int(start):
        return NULL
    word = int(report["m_sizeAndFlags"])
    if word & dynamic:
        start = start + gdb.lookup_type("int").sizeof
    return text(start, "utf-8", word & size_mask)


def describe_exception(exception):
    """Describes a failure: its type, its message and the place of the check."""
    names = ("m_type", "m_file", "m_function", "m_message", "m_logString", "m_lineString")
    fields = [field(exception, name, "Vorn::ExceptionString", 1 + 2 * i) for i, name in enumerate(names)]
    texts = [describe_report_text(text) for text in fields]
    line = field(exception, "m_line", "unsigned int", 1 + 2 * len(names))
    kind, file, function = (text.strip('"') for text in texts[:3])
    return "%s %s in %s at %s:%d" % (kind, texts[3], function, file, int(line))


def describe_view(view):
    if not int(view["m_length"]):
        return '""'
    return text_in(view["m_units"], view["m_encoding"], int(view["m_length"]))


def describe_builder(builder):
    store = builder["m_store"]
    if not int(store["length"]):
        return '""'
    return text_in(store["block"], store["encoding"], int(store["length"]))


def describe_name(name):
    record = name["m_record"]
    return describe_string(record["string"]) if int(record) else '""'


def describe_code_point(point):
    code = int(point["m_code"])
    sample = " '%s'" % chr(code) if code <= 0x10FFFF and chr(code).isprintable() else ""
    return "U+%04X%s" % (code, sample)


# Shared objects


def describe_counts(counter):
    """Describes a RefCounter."""
    parts = [counted(atomic_int(counter["m_useCount"]), "use"), "weak count %d" % atomic_int(counter["m_weakCount"])]
    if counter["m_isThreadsafe"]:
        parts.append("thread-safe")
    if counter["m_isArray"]:
        parts.append("array")
    return ", ".join(parts)


def describe_shared(pointer):
    counter = pointer["pRefCounter"]
    if not int(counter):
        return NULL
    state = "" if int(counter["m_ptr"]) else ", destroyed"
    return "shared (%s%s)" % (describe_counts(counter.dereference()), state)


def describe_weak(pointer):
    counter = pointer["pRefCounter"]
    if not int(counter):
        return NULL
    state = "alive" if int(counter["m_ptr"]) else "expired"
    return "weak, %s (%s)" % (state, describe_counts(counter.dereference()))


def shared_children(pointer):
    if int(pointer["pRefCounter"]) and int(pointer["pRefCounter"]["m_ptr"]):
        yield "get()", pointer["m_object"]


def node_path(node):
    """Returns the positions of a TreeNodeShared and of its ancestors, from the root on; see `field`."""
    path = []
    place = int(node.address)
    for _ in range(MOST_NODES):
        parent = int(read_at(place, "void", 3))  # m_parent
        if not parent:
            return "/" + "/".join(reversed(path))
        path.append(str(int(read_at(place, "unsigned int", 2))))  # m_cachedIndex
        place = parent
    raise Corrupt("the parents do not end")


def node_list(node):
    """Returns the first child of a TreeNode and the number of its children."""
    implementation = node["m_children"]["_M_impl"]
    first = implementation["_M_start"]
    count = int(implementation["_M_finish"] - first)
    if count < 0:
        raise Corrupt("the list of children ends before its begin")
    return first, count


def describe_node(node):
    count = node_list(node)[1]
    return "node at %s with %s" % (node_path(node), "1 child" if count == 1 else "%d children" % count)


def node_children(node):
    first, count = node_list(node)
    for i in range(min(count, gdb.parameter("print elements") or count)):
        yield "[%d]" % i, (first + i)["m_object"]


# Delegates and events


def describe_target(context):
    """Describes what a delegate counts."""
    counter = pointee(context, "Vorn::RefCounter")
    return "destroyed" if not int(counter["m_ptr"]) else counted(atomic_int(counter["m_useCount"]), "use")


def describe_binding(pod):
    """Describes a DelegatePOD: the type of its binding is in the name of the function that calls the target."""
    if not int(pod["caller"]):
        return "<empty>"
    caller = symbol(pod["caller"])
    gdb.selected_inferior().read_memory(int(pod["caller"]), 1)  # raises an error unless it is code
    binding, arguments = template_arguments(caller or "")
    binding = binding.rpartition("::")[2]
    target = arguments[-1] if arguments else ""
    if target.startswith("&"):  # "&(Panel::onPress(int))" in the name that the linker sees
        target = target[2:-1] if target[1] == "(" else target[1:]
    if binding in ("MethodBinding", "SharedMethodBinding", "WeakMethodBinding"):
        method = "method %s of %s" % (target, address(pod["object"]))
        if binding == "SharedMethodBinding":
            return "%s, kept alive: %s" % (method, describe_target(pod["context"]))
        if binding == "WeakMethodBinding":
            return "%s, weak: %s" % (method, describe_target(pod["context"]))
        return method
    if binding == "FunctionBinding":
        return "function " + target
    if binding == "ValueBinding" and "(*)" in target:
        return "function " + (symbol(pod["object"]) or address(pod["object"]))
    if binding in ("ValueBinding", "HeldBinding"):
        return "callable " + target
    return "function " + (caller or address(pod["caller"]))


def describe_delegate(delegate):
    return describe_binding(field(delegate, "m_pod", "Vorn::DelegatePOD", 1))


def chain_nodes(chain):
    """Yields the listeners of a ListenerChain, removed ones too, which stay linked until no call runs."""
    node = chain["p_next"]
    listener = gdb.lookup_type("Vorn::ListenerNode").pointer()
    for _ in range(MOST_NODES):
        if not int(node):
            return
        yield node.cast(listener).dereference()
        node = node["p_next"]
    raise Corrupt("the listeners do not end")


def describe_event(event):
    chain = event["m_chain"]
    count = int(chain["m_delegateCount"])
    parts = ["event with " + counted(count if count >= 0 else ~count, "listener")]
    if count < 0:
        parts.append("disabled")
    if int(chain["m_calls"]):
        parts.append("dispatching")
    return ", ".join(parts)


def describe_listener(node, call):
    """Describes a ListenerNode; `call` is the innermost running call of its event, or null."""
    states = []
    if not int(node["m_delegate"]["typeInfo"]):
        states.append("removed")
    if int(call) and int(call["at"]) == int(node.address):
        states.append("being called")
    if int(call) and int(node["first"]) > int(call["number"]) > 0:
        states.append("pending until the next call")
    if node["isMoved"]:
        states.append("to be moved to priority %d" % int(node["movedPriority"]))
    if node["isOnce"]:
        states.append("once")
    if node["isBlocked"] or int(node["blocks"]):
        states.append("blocked")
    if int(node["life"]) and not int(node["life"]["m_ptr"]):
        states.append("expired")
    described = "priority %d: %s" % (int(node["m_priority"]), describe_binding(node["m_delegate"]))
    return described + (" [%s]" % ", ".join(states) if states else "")


def event_children(event):
    chain = event["m_chain"]
    for i, node in enumerate(chain_nodes(chain)):
        yield "[%d]" % i, describe_listener(node, chain["m_calls"])


def describe_connection(connection):
    node = connection["m_node"]
    if not int(node):
        return NULL
    chain = node["chain"]
    return describe_listener(node.dereference(), chain["m_calls"]) if int(chain) else "disconnected"


# Geometry


def describe_pair(pair):
    return "(%s, %s)" % (pair["x"], pair["y"])


def describe_angle(angle):
    degrees = math.degrees(math.atan2(float(angle["y"]), float(angle["x"])))
    return "(%s, %s), %.6g degrees" % (angle["x"], angle["y"], degrees)


def describe_rect(rect):
    return "left %s, top %s, right %s, bottom %s" % tuple(rect[side] for side in ("left", "top", "right", "bottom"))


def matrix_children(matrix):
    for row in range(3):
        yield "row %d" % row, "{%s}" % ", ".join(str(matrix["m"][3 * row + column]) for column in range(3))


# Registration


def printer(describe, children=None):
    """Returns a class that gdb makes for each value; it never raises."""
    errors = (gdb.error, gdb.MemoryError, Corrupt, RuntimeError, ValueError, OverflowError, MemoryError)

    class Printer:
        def __init__(self, value):
            self.value = value

        def to_string(self):
            try:
                return describe(self.value)
            except errors as error:
                return "<corrupt: %s>" % error

    def list_children(self):
        try:
            yield from children(self.value)
        except errors:
            return  # to_string has said so

    if children:
        Printer.children = list_children
    return Printer


PRINTERS = {
    "String": printer(describe_string),
    "UTF8String": printer(describe_string),
    "StringData": printer(describe_record),
    "ExceptionString": printer(describe_report_text),
    "AllExceptions": printer(describe_exception),
    "Exception<>": printer(describe_exception),
    "TextView": printer(describe_view),
    "TextPiece": printer(describe_view),
    "TextBuilder": printer(describe_builder),
    "Name": printer(describe_name),
    "CodePoint": printer(describe_code_point),
    "RefCounter": printer(describe_counts),
    "SharedPtr<>": printer(describe_shared, shared_children),
    "WeakPtr<>": printer(describe_weak, shared_children),
    "TreeNode<>": printer(describe_node, node_children),
    "Delegate<>": printer(describe_delegate),
    "Event<>": printer(describe_event, event_children),
    "ResultEvent<>": printer(describe_event, event_children),
    "Connection": printer(describe_connection),
    "ScopedConnection": printer(lambda scoped: describe_connection(scoped["m_connection"])),
    "ScopedBlock": printer(lambda scoped: describe_connection(scoped["m_connection"])),
    "XYPair<>": printer(describe_pair),
    "Vector2": printer(describe_pair),
    "ComplexAngle": printer(describe_angle),
    "Rect<>": printer(describe_rect),
    "FloatRect": printer(describe_rect),
    "Matrix3": printer(lambda matrix: "matrix", matrix_children),
}


def register():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("Vorn")
    for name, made in PRINTERS.items():
        # The arguments of a template, but not a class inside it.
        pattern = "^Vorn::%s$" % name.replace("<>", "<[^<>]*(<.*>)?[^<>]*>")
        printers.add_printer(name, pattern, made)
    gdb.printing.register_pretty_printer(gdb.current_objfile(), printers, replace=True)


register()
