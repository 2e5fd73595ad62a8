"""Checks a natvis file: the rules of its schema for the elements that it uses, and that every expression compiles.

    CheckNatvis.py NATVIS COMPILER ARGUMENT...

Each expression becomes an expression in C++ of an object of its type, which the compiler checks without access control.
"""

import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

NAMESPACE = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"

# The elements that an element can contain, and the attributes that it can have; those in upper case it must have.
RULES = {
    "AutoVisualizer": ({"Type"}, set()),
    "Type": ({"DisplayString", "StringView", "SmartPointer", "Expand"}, {"NAME", "Inheritable", "Priority"}),
    "DisplayString": (set(), {"Condition"}),
    "StringView": (set(), {"Condition"}),
    "SmartPointer": (set(), {"USAGE", "Condition"}),
    "Expand": ({"Item", "ExpandedItem", "LinkedListItems", "Synthetic"}, set()),
    "Item": (set(), {"NAME", "Condition"}),
    "ExpandedItem": (set(), {"Condition"}),
    "Synthetic": ({"DisplayString"}, {"NAME", "Condition"}),
    "LinkedListItems": ({"Size", "HeadPointer", "NextPointer", "ValueNode"}, {"Condition"}),
    "HeadPointer": (set(), set()),
    "NextPointer": (set(), set()),
    "ValueNode": (set(), set()),
}
# The order in which the schema wants the parts of a type.
ORDER = ["DisplayString", "StringView", "SmartPointer", "Expand"]

# A type for each pattern with arguments.
INSTANCES = {
    "Vorn::SharedPtr<*>": "Vorn::SharedPtr<int>",
    "Vorn::WeakPtr<*>": "Vorn::WeakPtr<int>",
    "Vorn::TreeNode<*>": "Vorn::TreeNode<Node>",
    "Vorn::EventListeners<*>": "Vorn::EventListeners<Vorn::Delegate<void, int>>",
    "Vorn::XYPairBase<*>": "Vorn::XYPairBase<float>",
    "Vorn::RectBase<*>": "Vorn::RectBase<float>",
}

KEYWORDS = {"const", "char", "unsigned", "int", "void", "nullptr", "sizeof"}
FORMAT = re.compile(r",(?:\[(?P<length>.*)\])?(?P<format>s8|su|na|Xb|x|d)$")


def fail(message):
    sys.exit("CheckNatvis: " + message)


def check_rules(element):
    name = element.tag.replace(NAMESPACE, "")
    if name not in RULES:
        fail("unknown element " + name)
    children, attributes = RULES[name]
    known = {attribute.capitalize() if attribute.isupper() else attribute for attribute in attributes}
    for attribute in element.attrib:
        if attribute not in known:
            fail("%s has no attribute %s" % (name, attribute))
    for attribute in attributes:
        if attribute.isupper() and attribute.capitalize() not in element.attrib:
            fail("%s needs the attribute %s" % (name, attribute.capitalize()))
    names = [child.tag.replace(NAMESPACE, "") for child in element]
    for child in names:
        if child not in children:
            fail("%s cannot contain %s" % (name, child))
    if name == "Type" and names != sorted(names, key=ORDER.index):
        fail("the parts of %s are in a wrong order" % element.get("Name"))
    for child in element:
        check_rules(child)


def display_expressions(text):
    """Returns the expressions in the braces of a DisplayString."""
    if re.sub(r"\{[^{}]+\}", "", text).strip("{}") != re.sub(r"\{[^{}]+\}", "", text):
        fail("unbalanced braces: " + text)
    return re.findall(r"\{([^{}]+)\}", text)


def in_cpp(expression, object_name):
    """Returns an expression as C++ of a named object."""
    expression = expression.replace("*this", object_name)

    def qualify(match):
        before, word = expression[: match.start()], match.group()
        if before.endswith((".", "->", "::")) or word in KEYWORDS or word in ("Vorn", object_name):
            return word
        return "%s.%s" % (object_name, word)

    return re.sub(r"\b[A-Za-z_]\w*", qualify, expression)


class Source:
    """The generated program."""

    def __init__(self):
        self.lines = ["#include <Vorn/Vorn.h>", "struct Node : Vorn::TreeNode<Node> {};"]
        self.count = 0

    def begin(self, type_name):
        self.count += 1
        self.lines.append("void check%d(%s& self) {" % (self.count, type_name))

    def check(self, expression, object_name="self"):
        found = FORMAT.search(expression)
        if found:
            expression = expression[: found.start()]
            if found.group("length"):
                length = in_cpp(found.group("length"), object_name)
                self.lines.append("  { unsigned long long n = (%s); (void)n; }" % length)
            if found.group("format") == "s8":
                self.lines.append("  { const char* p = (%s); (void)p; }" % in_cpp(expression, object_name))
            if found.group("format") == "su":
                self.lines.append("  { const Vorn::UTF16Char* p = (%s); (void)p; }" % in_cpp(expression, object_name))
        self.lines.append("  (void)(%s);" % in_cpp(expression, object_name))

    def add(self, element, object_name="self"):
        name = element.tag.replace(NAMESPACE, "")
        if element.get("Condition"):
            self.check(element.get("Condition"), object_name)
        if name == "DisplayString":
            for expression in display_expressions(element.text):
                self.check(expression, object_name)
        elif name == "LinkedListItems":
            head = element.find(NAMESPACE + "HeadPointer").text
            self.check(head)
            self.lines.append("  auto& node = *(%s);" % in_cpp(head, "self"))
            self.check(element.find(NAMESPACE + "NextPointer").text, "node")
            self.check(element.find(NAMESPACE + "ValueNode").text, "node")
        elif name in ("Expand", "Synthetic"):
            for child in element:
                self.add(child)
        else:
            self.check(element.text)

    def end(self):
        self.lines.append("}")


def main():
    root = ElementTree.parse(sys.argv[1]).getroot()
    check_rules(root)
    source = Source()
    for kind in root:
        name = kind.get("Name")
        source.begin(INSTANCES.get(name, name))
        for part in kind:
            source.add(part)
        source.end()
    command = sys.argv[2:] + ["-std=c++20", "-fsyntax-only", "-fno-access-control", "-w", "-x", "c++", "-"]
    compiled = subprocess.run(command, input="\n".join(source.lines), text=True, capture_output=True, check=False)
    if compiled.returncode != 0:
        numbered = ["%d: %s" % (i, line) for i, line in enumerate(source.lines, 1)]
        fail("an expression does not compile:\n%s\n%s" % (compiled.stderr[:4000], "\n".join(numbered)))
    print("%d types" % source.count)


main()
