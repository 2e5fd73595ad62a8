"""The tables of the report, as Markdown."""

from results import KERNELS, ReportError, is_kernels, is_peer

SCRIPTS = {
    "ascii": "ASCII",
    "latin": "Latin with accents",
    "cyrillic": "Cyrillic",
    "devanagari": "Devanagari",
    "han": "Han",
    "emoji": "emoji",
}
PAGE_SIZE = 65536  # units of UTF-16


def number(value):
    """Two digits at least, and no more than three: 0.052, 0.83, 1.2, 15, 1480."""
    if value == 0:
        return "0"
    if value < 0.1:
        return f"{value:.2g}"
    if value < 1:
        return f"{value:.2f}"
    return f"{value:.1f}" if value < 10 else f"{value:.0f}"


def duration(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{number(nanoseconds / size)} {unit}"
    return f"{number(nanoseconds)} ns"


def table(header, rows):
    lines = [header, ["---"] * len(header), *rows]
    return "".join("| " + " | ".join(line) + " |\n" for line in lines).replace("|  |", "| |").replace("|  |", "| |")


def machine(environment):
    return table(["Property", "Value"], [[name, value] for name, value in environment.items()])


def speeds(results, operation, peers):
    """Gigabytes per second of each set of kernels and each peer, over pages of each script, and the library's
    speed divided by that of each peer."""
    kernels = results.kernels()
    header = ["Script", "Vorn", *reversed(kernels), *peers, *(f"Vorn / {peer.split()[0]}" for peer in peers)]
    rows = []
    for script, name in SCRIPTS.items():
        variants = ["Vorn", *(KERNELS + set_ for set_ in reversed(kernels)), *peers]
        found = [results.find("Texts", f"{operation}, {script} page", variant, PAGE_SIZE) for variant in variants]
        quotients = [found[0].speed / peer.speed for peer in found[1 + len(kernels) :]]
        rows.append([name, *(number(result.speed) for result in found), *map(number, quotients)])
    return table(header, rows)


SHORT_SIZES = [4, 8, 16, 64]


def short_strings(results):
    """Nanoseconds of a string over a short borrowed buffer, beside an allocation of its record."""
    rows = []
    for script in ("ascii", "cyrillic", "han"):
        for operation, variant, suffix in (
            ("scan UTF-8", "Vorn", "UTF-8"),
            ("scan UTF-8", "Vorn, terminated", "UTF-8, terminated"),
            ("scan UTF-16", "Vorn", "UTF-16"),
        ):
            found = [results.find("Texts", f"{operation}, {script}", variant, size) for size in SHORT_SIZES]
            rows.append([f"{SCRIPTS[script]}, {suffix}", *(number(result.median) for result in found)])
    found = [
        results.find("Texts", "scan UTF-8, ascii", "new and delete of a record", size) for size in SHORT_SIZES
    ]
    rows.append(["`new` and `delete` of a record", *(number(result.median) for result in found)])
    return table(["Text", *(f"{size} units" for size in SHORT_SIZES)], rows)


def ratios(results, area, operations=None):
    """For each operation of an area: the time of this library, also with each set of kernels, and that of the library
    divided by the time of each peer. There is one table for each set of sizes."""
    groups = {}
    for result in results.of(area):
        if operations is None or result.operation in operations:
            groups.setdefault(result.operation, {}).setdefault(result.variant, {})[result.size] = result
    if not groups:
        raise ReportError(f"there are no benchmarks of {area}")

    tables = {}
    for operation, variants in groups.items():
        own = {variant: found for variant, found in variants.items() if not is_peer(variant)}
        if not own:
            raise ReportError(f"{area}/{operation} is measured for other libraries only")
        for variant, found in sorted(own.items(), key=lambda item: is_kernels(item[0])):
            rows = tables.setdefault(tuple(found), [])
            spread = max(result.deviation for result in found.values())
            rows.append(
                [operation, variant, "time", *(duration(r.median) for r in found.values()), f"{100 * spread:.0f} %"]
            )
            if is_kernels(variant):
                continue
            for peer, others in variants.items():
                if is_peer(peer):
                    cells = [
                        number(result.median / others[size].median) if size in others else ""
                        for size, result in found.items()
                    ]
                    rows.append(["", "", f"divided by {peer}", *cells, ""])
    return "\n".join(
        table(["Operation", "Variant", "Figure", *(f"n = {size}" for size in sizes), "Spread"], rows)
        for sizes, rows in tables.items()
    )


STANDARD_HEADERS = "std::string, memory and functional"


def headers(results):
    """The time to compile each header, alone and divided by that of three standard headers."""
    found = results.of("Headers", "compile")
    standard = results.find("Headers", "compile", STANDARD_HEADERS, 17)
    return table(
        ["Header", "Time", "Divided by the standard headers", "Spread"],
        [
            [
                "`<string>`, `<memory>` and `<functional>`" if header is standard else f"`{header.variant}`",
                duration(header.median),
                number(header.median / standard.median),
                f"{100 * header.deviation:.0f} %",
            ]
            for header in found
        ],
    )


def all_results(results):
    rows = [
        [
            f"{r.area}/{r.operation}/{r.variant}/{r.size}",
            duration(r.median),
            duration(r.times[0]),
            duration(r.times[-1]),
            f"{100 * r.deviation:.1f} %",
            number(r.speed) if r.bytes else "",
        ]
        for r in results.all
    ]
    return table(["Benchmark", "Median", "Least", "Most", "Spread", "GB/s"], rows)
