"""The aims for speed, each with what this run has measured."""

from results import KERNELS
from tables import PAGE_SIZE, SCRIPTS, SHORT_SIZES, STANDARD_HEADERS, number, table

AVX2 = KERNELS + "AVX2"
SSE42 = KERNELS + "SSE4.2"
POINTS = 4096


class Texts:
    """The texts that an aim is for: generated pages, and those of a folder."""

    def __init__(self, results):
        self.pages = {f"{script} page": PAGE_SIZE for script in SCRIPTS}
        self.corpus = {}
        self.charsets = {}
        for result in results.of("Texts", variant="Vorn"):
            operation, text = result.operation.split(", ", 1)
            if operation != "scan UTF-8":
                continue
            if text.removesuffix(" page") not in SCRIPTS:
                self.corpus[text] = result.size
            self.charsets[text] = result.label

    def select(self, texts, charsets):
        return {text: size for text, size in texts.items() if self.charsets[text] in charsets}


def least(values, show_name=True):
    """The smallest of the values, with its name."""
    name, value = min(values.items(), key=lambda item: item[1])
    return f"{number(value)} ({name.removesuffix(' page')})" if show_name else number(value)


def text_row(results, texts, work, aim, charsets, measure):
    """A row whose figure is to be `aim` at least. `measure(variant, text, size)` returns the figure of a text."""
    text, limit = aim

    def figures(variant, selected):
        return {name: measure(variant, name, size) for name, size in selected.items()}

    pages = texts.select(texts.pages, charsets)
    corpus = texts.select(texts.corpus, charsets)
    own = figures("Vorn", pages)
    cells = [work, text, least(own)]
    for variant in (AVX2, SSE42):
        has_kernels = variant.removeprefix(KERNELS) in results.kernels()
        cells.append(least(figures(variant, pages)) if has_kernels else "")
    everything = dict(own)
    if corpus:
        of_corpus = figures("Vorn", corpus)
        everything.update(of_corpus)
        cells.append(least(of_corpus, show_name=False))
    else:
        cells.append("")
    missed = sum(value < limit for value in everything.values())
    cells.append("met" if not missed else f"missed by {missed} of {len(everything)} texts")
    return cells


def simple_row(work, aim, value, is_met, unit):
    return [work, aim, f"{number(value)}{unit}", "", "", "", "met" if is_met else "missed"]


def aims(results):
    texts = Texts(results)

    def find(operation, text, variant, size):
        return results.find("Texts", f"{operation}, {text}", variant, size)

    def against(operation, peer, peer_operation=None):
        def measure(variant, text, size):
            own = find(operation, text, variant, size).speed
            return own / find(peer_operation or operation, text, peer, size).speed

        return measure

    validation = against("scan UTF-8", "simdjson validates")
    wide_validation = against("scan UTF-16", "simdjson validates", "scan UTF-8")
    to_utf16 = against("convert to UTF-16", "ICU")
    to_utf8 = against("convert to UTF-8", "ICU")

    def equality(variant, text, size):
        return find("equal in UTF-8 and UTF-16", text, variant, size).speed

    rows = [
        text_row(results, texts, *row)
        for row in (
            ("validate UTF-8, not ASCII", ("0.8 of simdjson's speed", 0.8), ["UCS-2", "Unicode"], validation),
            ("validate UTF-8, ASCII", ("0.6 of simdjson's speed", 0.6), ["ASCII"], validation),
            (
                "validate UTF-16 without pairs",
                ("25/13 of simdjson's speed for the UTF-8", 25 / 13),
                ["UCS-2"],
                wide_validation,
            ),
            (
                "validate UTF-16 with pairs",
                ("6/13 of simdjson's speed for the UTF-8", 6 / 13),
                ["Unicode"],
                wide_validation,
            ),
            ("UTF-8 to UTF-16, ASCII", ("6 times ICU's speed", 6), ["ASCII"], to_utf16),
            ("UTF-8 to UTF-16, UCS-2", ("3 times ICU's speed", 3), ["UCS-2"], to_utf16),
            ("UTF-16 to UTF-8, ASCII and UCS-2", ("4 times ICU's speed", 4), ["ASCII", "UCS-2"], to_utf8),
            ("UTF-8 to UTF-16, Unicode", ("ICU's speed", 1), ["Unicode"], to_utf16),
            ("UTF-16 to UTF-8, Unicode", ("ICU's speed", 1), ["Unicode"], to_utf8),
            (
                "equality of UTF-8 with UTF-16",
                ("6 GB/s", 6),
                ["ASCII", "UCS-2", "Unicode"],
                equality,
            ),
        )
    ]

    def own_part(operation, script, variant, size):
        """The time of a short string without that of its record's allocation."""
        record = find("scan UTF-8", script, "new and delete of a record", size)
        return find(operation, script, variant, size).median - record.median

    for work, scripts in (("ASCII", ["ascii"]), ("other scripts", [s for s in SCRIPTS if s != "ascii"])):
        slowest = max(
            own_part(operation, script, "Vorn", size)
            for operation in ("scan UTF-8", "scan UTF-16")
            for script in scripts
            for size in SHORT_SIZES
        )
        name = f"`String` of 4 to 64 units, {work}, without the allocation"
        rows.append(simple_row(name, "8 ns at most", slowest, slowest <= 8, " ns"))

    def points(variant):
        glm = results.find("Geometry", "transform of an array", "glm", POINTS)
        return glm.median / results.find("Geometry", "transform of an array", variant, POINTS).median

    supported = [result.variant for result in results.of("Geometry", "transform of an array")]
    is_met = points("Vorn") >= 1 and not (AVX2 in supported and points(AVX2) < 1.5)
    rows.append(
        [
            f"transform of {POINTS} points",
            "glm's speed, 1.5 times with AVX2",
            number(points("Vorn")),
            *(number(points(variant)) if variant in supported else "" for variant in (AVX2, SSE42)),
            "",
            "met" if is_met else "missed",
        ]
    )

    def header_row(header, limit):
        std = results.find("Headers", "compile", STANDARD_HEADERS, 17)
        ratio = results.find("Headers", "compile", header, 17).median / std.median
        return simple_row(
            f"time to compile `{header}`", f"{limit:.2f} of three standard headers at most", ratio, ratio <= limit, ""
        )

    rows += [header_row("Vorn.h", 0.8 / 0.62), header_row("SharedPtr.h", 0.5 / 0.62), header_row("Event.h", 0.5 / 0.62)]
    return table(["Work", "Aim", "Vorn", "with AVX2", "with SSE4.2", "`--corpus`", "Result"], rows)
