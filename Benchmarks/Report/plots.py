"""The plots of the report, as SVG files on white, so that they look the same in light and dark pages."""

import io
import re
import xml.etree.ElementTree as ElementTree

import matplotlib

matplotlib.use("svg")
import matplotlib.pyplot as pyplot  # noqa: E402: the backend is set first
from matplotlib.lines import Line2D  # noqa: E402
from matplotlib.ticker import FuncFormatter, NullLocator  # noqa: E402

from results import KERNELS, ReportError, is_kernels, is_peer  # noqa: E402
from tables import PAGE_SIZE, SCRIPTS  # noqa: E402

matplotlib.rcParams.update(
    {
        "svg.fonttype": "none",  # text stays text, which is small and can be searched
        "svg.hashsalt": "Vorn",  # the same file for the same figures
        "font.family": "sans-serif",
        "font.size": 9,
        "axes.titlesize": 10,
        "axes.spines.top": False,
        "axes.spines.right": False,
        "axes.grid": True,
        "axes.axisbelow": True,
        "grid.color": "#dddddd",
        "grid.linewidth": 0.6,
        "legend.frameon": False,
        "figure.facecolor": "white",
    }
)

# Colours of Okabe and Ito, which colour-blind readers can distinguish; markers and dashes differ too.
STYLES = {
    "Vorn": dict(color="#000000", marker="o"),
    KERNELS + "AVX-512 VBMI2": dict(color="#0072B2", marker="D"),
    KERNELS + "AVX-512": dict(color="#0072B2", marker="D"),
    KERNELS + "AVX2": dict(color="#56B4E9", marker="s"),
    KERNELS + "SSE4.2": dict(color="#009E73", marker="^"),
    KERNELS + "SSE2": dict(color="#E69F00", marker="v"),
    KERNELS + "NEON": dict(color="#0072B2", marker="D"),
    KERNELS + "portable": dict(color="#888888", marker="x"),
}
PEER_STYLES = [
    dict(color="#D55E00", marker="P", linestyle="--"),
    dict(color="#CC79A7", marker="X", linestyle=":"),
    dict(color="#E69F00", marker="v", linestyle="-."),
    dict(color="#56B4E9", marker="s", linestyle=(0, (3, 1, 1, 1, 1, 1))),
]


def styles(variants):
    """The style of each variant: this library's first ones in dark colours, other libraries dashed."""
    chosen = {}
    own = [dict(color="#000000", marker="o"), dict(color="#0072B2", marker="D"), dict(color="#009E73", marker="^")]
    if "Vorn" in variants:
        own[0] = dict(color="#000000", marker="*", linestyle=":")
    peers = list(PEER_STYLES)
    for variant in variants:
        if variant in STYLES:
            chosen[variant] = STYLES[variant]
        else:
            chosen[variant] = (peers if is_peer(variant) else own).pop(0)
    return chosen


def units_of_bytes(value, _=None):
    for suffix, size in (("MiB", 1 << 20), ("KiB", 1 << 10)):
        if value >= size:
            return f"{value / size:g} {suffix}"
    return f"{value:g} B"


def units_of_time(value, _=None):
    for suffix, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if value >= size:
            return f"{value / size:g} {suffix}"
    return f"{value:g} ns"


def plain(value, _=None):
    return f"{value / 1000:g}k" if value >= 10000 else f"{value:g}"


SVG = "http://www.w3.org/2000/svg"
XLINK = "http://www.w3.org/1999/xlink"
ElementTree.register_namespace("", SVG)
ElementTree.register_namespace("xlink", XLINK)


def shrink(text):
    """The same picture without metadata and groups of no meaning, with coordinates of a tenth of a point, and with each
    style named once."""
    text = re.sub(r"\d+\.\d{2,}", lambda found: f"{float(found.group()):.1f}".removesuffix(".0"), text)
    svg = ElementTree.fromstring(text)
    classes = {}

    def visit(element):
        if element.tag != f"{{{SVG}}}path" and not element.tag.endswith("clipPath"):
            element.attrib.pop("id", None)
        style = element.attrib.pop("style", None)
        if style:
            element.set("class", classes.setdefault(style, f"c{len(classes)}"))
        if "d" in element.attrib:
            element.set("d", re.sub(r"\s*([MLzQC])\s*", r"\1", element.get("d")))
        children = []
        for child in element:
            if child.tag.endswith("}metadata"):
                continue
            visit(child)
            is_bare_group = child.tag == f"{{{SVG}}}g" and not child.attrib
            children.extend(child if is_bare_group else [child])
        element[:] = children
        if not (element.text or "").strip():
            element.text = None
        element.tail = None

    visit(svg)
    used = {use.get(f"{{{XLINK}}}href", "#")[1:] for use in svg.iter(f"{{{SVG}}}use")}
    for path in svg.iter(f"{{{SVG}}}path"):
        if path.get("id") not in used:
            path.attrib.pop("id", None)
    sheet = svg.find(f".//{{{SVG}}}style")
    sheet.text += "".join(f".{name}{{{style}}}" for style, name in classes.items())
    ElementTree.indent(svg, space="")
    return ElementTree.tostring(svg, encoding="unicode") + "\n"


def write(figure, path):
    drawn = io.StringIO()
    figure.savefig(drawn, format="svg", metadata={"Date": None, "Creator": None, "Format": None, "Type": None})
    pyplot.close(figure)
    with open(path, "w", encoding="utf-8") as file:
        file.write(shrink(drawn.getvalue()))


def label_of(variant):
    return f"{variant.removeprefix(KERNELS)} kernels" if variant.startswith(KERNELS) else variant


def legend(figure, chosen, bottom):
    """A legend below all panels."""
    handles = [Line2D([], [], label=label_of(variant), markersize=5, **style) for variant, style in chosen.items()]
    figure.legend(handles=handles, loc="lower center", ncol=4, bbox_to_anchor=(0.5, 0.0))
    figure.tight_layout(rect=(0, bottom, 1, 1))


PANELS = ["ascii", "cyrillic", "han", "emoji"]
OPERATIONS = {
    "scan UTF-8": ("validate UTF-8", ["simdjson validates", "ICU measures"]),
    "scan UTF-16": ("validate UTF-16", []),
    "convert to UTF-16": ("UTF-8 to UTF-16", ["ICU"]),
    "convert to UTF-8": ("UTF-16 to UTF-8", ["ICU"]),
    "equal in UTF-8 and UTF-16": ("equality of UTF-8 and UTF-16", []),
}


def variants_of(results, operation):
    return [*(KERNELS + set_ for set_ in results.kernels()), *OPERATIONS[operation][1]]


def speed_over_length(operation):
    def draw(results, path):
        figure, panels = pyplot.subplots(2, 2, figsize=(9, 6.4), sharex=True, sharey=True)
        chosen = styles(["Vorn", *variants_of(results, operation)])
        for script, axes in zip(PANELS, panels.flat):
            for variant, style in chosen.items():
                found = results.of("Texts", f"{operation}, {script} page", variant)
                if len(found) < 2:
                    raise ReportError(f"{operation}, {script} page/{variant} has no series of lengths")
                found.sort(key=lambda result: result.size)
                # What is chosen lies below, as a band.
                look = dict(style, marker=None, linewidth=5, alpha=0.2) if variant == "Vorn" else style
                look = {"linewidth": 1.3, **look}
                axes.plot([r.bytes for r in found], [r.speed for r in found], markersize=4, **look)
            axes.set_xscale("log", base=2)
            axes.set_yscale("log")
            axes.set_title(SCRIPTS[script])
            axes.set_xticks([4**k for k in range(2, 11, 2)])
            axes.xaxis.set_minor_locator(NullLocator())
            axes.xaxis.set_major_formatter(FuncFormatter(units_of_bytes))
            axes.yaxis.set_minor_locator(NullLocator())
            axes.yaxis.set_major_formatter(FuncFormatter(plain))
        for axes in panels[1]:
            axes.set_xlabel("length of the text")
        for axes in panels[:, 0]:
            axes.set_ylabel("GB/s")
        chosen["Vorn"] = dict(color="#000000", linewidth=5, alpha=0.2)
        legend(figure, chosen, 0.09)
        write(figure, path)

    return draw


def speed_over_script(results, path):
    figure, panels = pyplot.subplots(2, 3, figsize=(9, 5.4), sharex=True, sharey=True)
    chosen = styles([*(KERNELS + set_ for set_ in reversed(results.kernels())), "simdjson validates", "ICU"])
    rows = list(reversed(SCRIPTS))
    for operation, axes in zip(OPERATIONS, panels.flat):
        title, peers = OPERATIONS[operation]
        for variant in variants_of(results, operation):
            found = [results.find("Texts", f"{operation}, {script} page", variant, PAGE_SIZE) for script in rows]
            style = chosen["ICU" if variant.startswith("ICU") else variant]
            axes.plot([r.speed for r in found], range(len(rows)), markersize=5, **dict(style, linestyle="none"))
        axes.set_xscale("log")
        axes.xaxis.set_minor_locator(NullLocator())
        axes.xaxis.set_major_formatter(FuncFormatter(plain))
        axes.set_title(title)
        axes.set_xlabel("GB/s")
        axes.tick_params(labelbottom=True)
        axes.set_yticks(range(len(rows)), [SCRIPTS[script] for script in rows])
    last = panels.flat[-1]
    last.axis("off")
    points = {label_of(variant): dict(style, linestyle="none") for variant, style in chosen.items()}
    handles = [Line2D([], [], label=label, **style) for label, style in points.items()]
    last.legend(handles=handles, loc="center")
    figure.tight_layout()
    write(figure, path)


def overview(results, path):
    """The operations that most users call, beside other libraries."""
    figure, panels = pyplot.subplots(1, 3, figsize=(9, 3.2), sharex=True, sharey=True)
    names = {
        "Vorn": dict(color="#0072B2", marker="o", markersize=7, linestyle="none"),
        # seen behind the one of Vorn
        "simdjson": dict(color="#D55E00", marker="P", markersize=11, linestyle="none"),
        "ICU": dict(color="#777777", marker="X", markersize=7, linestyle="none"),
    }
    rows = list(reversed(SCRIPTS))
    for operation, axes in zip(("scan UTF-8", "convert to UTF-16", "convert to UTF-8"), panels):
        title, peers = OPERATIONS[operation]
        speeds = {
            variant: [results.find("Texts", f"{operation}, {script} page", variant, PAGE_SIZE).speed for script in rows]
            for variant in ["Vorn", *peers]
        }
        axes.hlines(range(len(rows)), [min(row) for row in zip(*speeds.values())],
                    [max(row) for row in zip(*speeds.values())], color="#cccccc", linewidth=2)
        for variant, values in reversed(speeds.items()):
            axes.plot(values, range(len(rows)), **names[variant.split()[0]])
        axes.set_xscale("log")
        axes.xaxis.set_minor_locator(NullLocator())
        axes.xaxis.set_major_formatter(FuncFormatter(plain))
        axes.set_title(title)
        axes.set_xlabel("GB/s, more is better")
        axes.set_yticks(range(len(rows)), [SCRIPTS[script] for script in rows])
    handles = [Line2D([], [], label=name, **style) for name, style in names.items()]
    figure.legend(handles=handles, loc="lower center", ncol=3)
    figure.tight_layout(rect=(0, 0.08, 1, 1))
    write(figure, path)


def time_over_n(area, operations, label):
    """The time of operations over n, with the range of the repetitions as a band."""

    def draw(results, path):
        figure, panels = pyplot.subplots(1, len(operations), figsize=(9, 3.6), sharey=True)
        variants = dict.fromkeys(r.variant for operation in operations for r in results.of(area, operation))
        chosen = styles(sorted(variants, key=is_kernels))
        for operation, axes in zip(operations, panels):
            if not results.of(area, operation):
                raise ReportError(f"there is no benchmark {area}/{operation}")
            for variant, style in chosen.items():
                found = sorted(results.of(area, operation, variant), key=lambda result: result.size)
                sizes = [r.size for r in found]
                axes.fill_between(sizes, [r.times[0] for r in found], [r.times[-1] for r in found],
                                  color=style["color"], alpha=0.15, linewidth=0)
                axes.plot(sizes, [r.median for r in found], markersize=4, **{"linewidth": 1.3, **style})
            axes.set_xscale("log")
            axes.set_yscale("log")
            axes.set_title(operation)
            axes.set_xlabel(label)
            axes.xaxis.set_minor_locator(NullLocator())
            axes.yaxis.set_minor_locator(NullLocator())
            axes.xaxis.set_major_formatter(FuncFormatter(plain))
            axes.yaxis.set_major_formatter(FuncFormatter(units_of_time))
        panels[0].set_ylabel("time of one operation")
        legend(figure, chosen, 0.14)
        write(figure, path)

    return draw


def header_times(results, path):
    found = sorted(results.of("Headers", "compile"), key=lambda result: result.median)
    if not found:
        raise ReportError("there is no benchmark Headers/compile")
    figure, axes = pyplot.subplots(figsize=(9, 0.6 + 0.24 * len(found)))
    for row, result in enumerate(found):
        colour = "#D55E00" if is_peer(result.variant) else "#0072B2"
        axes.barh(row, result.median / 1e9, 0.7, color=colour)
        axes.plot([result.times[0] / 1e9, result.times[-1] / 1e9], [row, row], color="#000000", linewidth=1.2)
    axes.set_yticks(range(len(found)), [result.variant for result in found])
    axes.grid(axis="y", visible=False)
    axes.set_xlabel("seconds; lines: least to most of the repetitions")
    figure.tight_layout()
    write(figure, path)


# Name of the file, what it shows (its alternative text), and how it is drawn.
FIGURES = {
    "overview": ("Speed of validation and conversions for six scripts, 64 Ki units of web pages", overview),
    "scripts": ("Speed of each set of kernels for six scripts, 64 Ki units of web pages", speed_over_script),
    "validate-utf8": ("Speed of validating UTF-8 over the length of the text", speed_over_length("scan UTF-8")),
    "validate-utf16": ("Speed of validating UTF-16 over the length of the text", speed_over_length("scan UTF-16")),
    "to-utf16": ("Speed of converting to UTF-16 over the length of the text", speed_over_length("convert to UTF-16")),
    "to-utf8": ("Speed of converting to UTF-8 over the length of the text", speed_over_length("convert to UTF-8")),
    "equality": (
        "Speed of comparing UTF-8 with UTF-16 over the length of the text",
        speed_over_length("equal in UTF-8 and UTF-16"),
    ),
    "edits": (
        "Time of edits over the length of the text",
        time_over_n("Strings", ["replace a character", "insert and erase", "substring"], "length in bytes"),
    ),
    "arrays": (
        "Time of operations on arrays of vectors over their number",
        time_over_n("Geometry", ["transform of an array", "normalise an array", "bounds of an array"], "vectors"),
    ),
    "events": (
        "Time of calls and changes of events over the number of listeners",
        time_over_n("Events", ["dispatch", "remove and add", "add again"], "listeners"),
    ),
    "trees": (
        "Time of operations on trees over the number of nodes",
        time_over_n("Trees", ["append children and destroy", "walk", "remove and insert in front"], "nodes"),
    ),
    "headers": ("Time to compile each public header alone", header_times),
}
