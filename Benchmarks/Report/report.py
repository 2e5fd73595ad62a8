"""Runs the benchmarks and writes a page with their figures, tables and plots: ./dev bench --report.

The page of the documentation has blocks, between lines of <!-- report: NAME --> and <!-- end of report -->. With
--update-documentation they are replaced; the text around them is written by hand.
"""

import argparse
import json
import os
import pathlib
import re
import subprocess
import sys

sys.dont_write_bytecode = True  # the sources stay as they are

import aims  # noqa: E402
import tables  # noqa: E402
from results import Results, ReportError  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = ROOT / "Documentation" / "Performance.md"
PLOTS = "Performance"  # folder of the plots, beside the page
BLOCK = re.compile(r"(<!-- report: (.+?) -->\n)(.*?)(<!-- end of report -->\n)", re.S)
MARKER = re.compile(r"<!-- (?:report: .+?|end of report) -->")

AREAS = ["Strings", "Everyday", "Pieces", "Names", "Numbers", "Geometry", "Objects", "Events", "Trees"]
REPETITIONS = 5
SECONDS = 0.01  # of each repetition


def figure_block(name, description):
    return f"![{description}]({PLOTS}/{name}.svg)\n"


def make_blocks(results, environment, figures):
    """The Markdown of each block, by its name. `figures` has the descriptions of the plots."""
    validators = ["simdjson validates", "ICU measures"]
    made = {
        "machine": tables.machine(environment),
        "aims": aims.aims(results),
        "speed of validating UTF-8": tables.speeds(results, "scan UTF-8", validators),
        "speed of validating UTF-16": tables.speeds(results, "scan UTF-16", []),
        "speed of converting to UTF-16": tables.speeds(results, "convert to UTF-16", ["ICU"]),
        "speed of converting to UTF-8": tables.speeds(results, "convert to UTF-8", ["ICU"]),
        "speed of comparing": tables.speeds(results, "equal in UTF-8 and UTF-16", []),
        "short strings": tables.short_strings(results),
        "times of headers": tables.headers(results),
        "times of copies": tables.ratios(results, "Texts", ["copy, ascii"]),
    }
    unknown = {result.area for result in results.all} - {"Texts", "Headers", *AREAS}
    if unknown:
        raise ReportError(f"the report has no table for: {', '.join(sorted(unknown))}")
    for area in AREAS:
        made[f"times of {area}"] = tables.ratios(results, area)
    for name, description in figures.items():
        made[f"plot {name}"] = figure_block(name, description)
    return made


def replace_blocks(page, blocks):
    """The page with new blocks. Each block of the page must be known, and each plot must have its block."""
    used = set()

    def replaced(match):
        name = match.group(2)
        if name not in blocks:
            raise ReportError(f'the page has a block "{name}", which the report does not make')
        used.add(name)
        return match.group(1) + "\n" + blocks[name] + "\n" + match.group(4)

    renewed = BLOCK.sub(replaced, page)
    if len(MARKER.findall(page)) != 2 * len(BLOCK.findall(page)):
        raise ReportError("the page has a marker of a block without its other one")
    unused = [name for name in blocks if name.startswith("plot ") and name not in used]
    if unused:
        raise ReportError(f"the page has no block for: {', '.join(unused)}")
    return renewed


def whole_page(blocks, results):
    """A page with all blocks and all results."""
    parts = ["# Benchmarks\n"]
    parts += [f"## {name[0].upper()}{name[1:]}\n\n{text}" for name, text in blocks.items()]
    parts.append(f"## All results\n\n{tables.all_results(results)}")
    return "\n".join(parts)


# The machine and the build --------------------------------------------------------------------------------------------


def output_of(*command):
    try:
        return subprocess.run(command, check=True, capture_output=True, text=True, cwd=ROOT).stdout.strip()
    except (OSError, subprocess.CalledProcessError) as error:
        raise ReportError(f"{command[0]} fails: {error}") from error


def processor():
    fields = dict(re.findall(r"^(.+?)\s*: (.*)$", pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8"), re.M))
    family, model = fields.get("cpu family", "?"), fields.get("model", "?")
    return f"{fields.get('model name', 'unknown')} (family {family}, model {model}), {os.cpu_count()} processors"


def compiler_and_flags(build):
    """The compiler's version and the flags of a source of the library, without paths and warnings."""
    try:
        commands = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
        arguments = next(c["command"] for c in commands if c["file"].endswith("/Source/Vorn/String.cpp")).split()
    except (OSError, ValueError, StopIteration) as error:
        raise ReportError(f"{build} is no build of the benchmarks: {error!r}") from error
    compiler = next(argument for argument in arguments if "ccache" not in argument)
    flags = [a for a in arguments if re.match(r"-(O|f|m|std=|DNDEBUG|g|D_)", a) and "/" not in a]
    return output_of(compiler, "--version").splitlines()[0], " ".join(flags)


def describe(build, recorded, results):
    compiler, flags = compiler_and_flags(build)
    commit = output_of("git", "rev-parse", "--short=10", "HEAD")
    if output_of("git", "status", "--porcelain", "--", "Source", "Include", "Benchmarks", ":!Benchmarks/Report"):
        commit += " with changes"
    load = recorded["context"].get("load_avg") or [0]
    return {
        "processor": processor(),
        "sets of kernels": ", ".join(results.kernels()),
        "compiler": compiler,
        "flags": f"`{flags}`",
        "commit": commit,
        "date": recorded["context"]["date"][:10],
        "repetitions": f"{results.repetitions} of {SECONDS:g} s or more, of all benchmarks in random order",
        "load before the run": f"{load[0]:.1f}",
    }


# The command ----------------------------------------------------------------------------------------------------------


def run_benchmarks(program, corpus, results_file):
    command = [
        str(program),
        f"--benchmark_repetitions={REPETITIONS}",
        f"--benchmark_min_time={SECONDS}",
        "--benchmark_enable_random_interleaving=true",
        f"--benchmark_out={results_file}",
        "--benchmark_out_format=json",
    ]
    if corpus:
        command += ["--corpus", corpus]
    print("report: running all benchmarks, which takes some minutes", flush=True)
    try:
        finished = subprocess.run(command, stdout=subprocess.DEVNULL, check=False)
    except OSError as error:
        raise ReportError(f"cannot run the benchmarks: {error}") from error
    if finished.returncode != 0:
        raise ReportError(f"the benchmarks end with {finished.returncode}: see {results_file}")


def parse_arguments():
    parser = argparse.ArgumentParser(prog="./dev bench --report", description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--corpus", metavar="DIR", help="also measure the texts of this folder")
    parser.add_argument("--update-documentation", action="store_true", help="renew Documentation/Performance.md")
    parser.add_argument("--results", type=pathlib.Path, metavar="FILE", help="use these results instead of a run")
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    import plots  # needs matplotlib, which the tables do not

    folder = arguments.build.resolve() / "Report"
    (folder / PLOTS).mkdir(parents=True, exist_ok=True)
    results_file = arguments.results or folder / "Results.json"
    if not arguments.results:
        run_benchmarks(arguments.build / "Benchmarks" / "VornBenchmarks", arguments.corpus, results_file)
    results = Results.read(results_file)
    results.require_peers()
    environment = describe(arguments.build, json.loads(results_file.read_text(encoding="utf-8")), results)
    blocks = make_blocks(results, environment, {name: text for name, (text, _) in plots.FIGURES.items()})
    page = PAGE.read_text(encoding="utf-8")
    renewed = replace_blocks(page, blocks)

    targets = [folder / PLOTS]
    if arguments.update_documentation:
        targets.append(PAGE.parent / PLOTS)
    for target in targets:
        target.mkdir(exist_ok=True)
        for name, (_, draw) in plots.FIGURES.items():
            draw(results, target / f"{name}.svg")
    (folder / "Report.md").write_text(whole_page(blocks, results), encoding="utf-8")
    print(f"report: the page is {folder / 'Report.md'}")
    if arguments.update_documentation:
        PAGE.write_text(renewed, encoding="utf-8")
        print(f"report: {PAGE.relative_to(ROOT)} is renewed; look at its plots before you commit them")


if __name__ == "__main__":
    try:
        main()
    except ReportError as error:
        sys.exit(f"report: {error}")
