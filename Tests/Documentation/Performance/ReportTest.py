"""Tests the report of the benchmarks, ./dev bench --report, without running benchmarks, and the page that it renews.

With --plots, it draws all plots, which needs matplotlib.
"""

import json
import pathlib
import re
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[2]
sys.path.insert(0, str(ROOT / "Benchmarks" / "Report"))
sys.dont_write_bytecode = True

import report  # noqa: E402: the path is set first
import tables  # noqa: E402
from aims import aims  # noqa: E402
from results import ReportError, Results  # noqa: E402

PAGE = ROOT / "Documentation" / "Performance.md"
PLOTS = ROOT / "Documentation" / "Performance"
LONGEST_PLOT = 40 * 1024  # bytes
ENVIRONMENT = {"processor": "a processor", "commit": "0123456789"}
FIGURES = [plot.stem for plot in PLOTS.glob("*.svg")]


def run_of(name, nanoseconds, **more):
    """A repetition as Google Benchmark records it."""
    return {
        "name": name,
        "run_name": name,
        "run_type": "iteration",
        "real_time": 2 * nanoseconds,
        "cpu_time": nanoseconds,
        "time_unit": "ns",
        **more,
    }


def recorded():
    """A small run, recorded from the program and shortened."""
    return json.loads((HERE / "Recorded.json").read_text(encoding="utf-8"))


def complete_run():
    """A run with all benchmarks that the report needs."""
    runs = []

    def add(name, size, label=""):
        speed = 1e9 * (1 + len(name) % 7)
        runs.append(run_of(f"{name}/{size}", 100 + len(runs), bytes_per_second=speed, label=label))

    def add_texts(text, sizes, variants, label):
        for operation, names in variants.items():
            for variant in names:
                for size in sizes:
                    add(f"Texts/{operation}, {text}/{variant}", size, label)

    kernels = [f"kernels {name}" for name in ("portable", "SSE2", "SSE4.2", "AVX2", "AVX-512 VBMI2")]
    variants = {
        "scan UTF-8": ["Vorn", "simdjson validates", "ICU measures", *kernels],
        "scan UTF-16": ["Vorn", *kernels],
        "convert to UTF-16": ["Vorn", "ICU", *kernels],
        "convert to UTF-8": ["Vorn", "ICU", *kernels],
        "equal in UTF-8 and UTF-16": ["Vorn", *kernels],
    }
    words = {
        "scan UTF-8": ["Vorn", "Vorn, terminated", "new and delete of a record"],
        "scan UTF-16": ["Vorn"],
        "copy": ["Vorn::String", "icu::UnicodeString"],
    }
    labels = {"ascii": "ASCII", "emoji": "Unicode"}
    for script in tables.SCRIPTS:
        label = labels.get(script, "UCS-2")
        add_texts(f"{script} page", [64, 1024, 65536], variants, label)
        add_texts(script, [4, 8, 16, 64], words, label)
    add_texts("prose", [77777], variants, "UCS-2")
    for name in (
        "Strings/replace a character/Vorn",
        "Strings/replace a character/std::string",
        "Strings/insert and erase/Vorn",
        "Strings/substring/Vorn",
        "Everyday/find/Vorn",
        "Pieces/split/Vorn",
        "Names/format with fmt/String",
        "Names/format with fmt/fmt",
        "Numbers/parse float/parseFloat",
        "Numbers/parse float/fast_float",
        "Geometry/normalise/Vorn",
        "Geometry/normalise/glm",
        "Objects/copy a pointer/Vorn::SharedPtr",
        "Events/dispatch/Vorn::Event",
        "Events/dispatch/boost::signals2",
        "Events/remove and add/Vorn::Event",
        "Events/add again/Vorn::Event",
        "Trees/append children and destroy/Vorn::TreeNode",
        "Trees/walk/Vorn::TreeNode",
        "Trees/remove and insert in front/Vorn::TreeNode",
    ):
        for size in (1, 100):
            add(name, size)
    for operation in ("transform", "normalise", "bounds"):
        for variant in ("Vorn", "Vorn, one by one", "glm", *kernels):
            for size in (64, 4096):
                add(f"Geometry/{operation} {'an' if operation == 'normalise' else 'of an'} array/{variant}", size)
    for header in ("Vorn.h", "SharedPtr.h", "Event.h", "std::string, memory and functional"):
        add(f"Headers/compile/{header}", "17/manual_time")
    return {"context": {"date": "2030-01-02T03:04:05+00:00", "load_avg": [0.5]}, "benchmarks": runs}


class Tables(unittest.TestCase):
    def test_a_recorded_run_becomes_the_expected_tables(self):
        results = Results(recorded())
        made = "\n".join(
            [
                tables.machine(ENVIRONMENT),
                tables.ratios(results, "Events"),
                tables.headers(results),
                tables.all_results(results),
            ]
        )
        self.assertEqual(made, (HERE / "Expected.md").read_text(encoding="utf-8"))

    def test_numbers_have_two_or_three_digits(self):
        for value, text in (
            (0, "0"),
            (0.0123, "0.012"),
            (0.5, "0.50"),
            (1, "1.0"),
            (9.94, "9.9"),
            (10.4, "10"),
            (1234, "1234"),
        ):
            self.assertEqual(tables.number(value), text)
        for value, text in ((0.5, "0.50 ns"), (1500, "1.5 µs"), (2.5e6, "2.5 ms"), (3e9, "3.0 s")):
            self.assertEqual(tables.duration(value), text)

    def test_aims_compare_the_least_figure(self):
        run = complete_run()
        rows = aims(Results(run)).splitlines()
        self.assertEqual(len(rows), 2 + 16)
        for benchmark in run["benchmarks"]:
            if benchmark["name"] == "Texts/scan UTF-8, han page/Vorn/65536":
                benchmark["bytes_per_second"] = 0.001e9
        row = aims(Results(run)).splitlines()[2]
        self.assertIn("(han)", row)
        self.assertIn("missed by 1 of 6 texts", row)


class Failures(unittest.TestCase):
    def test_a_failed_benchmark_stops_the_report(self):
        run = recorded()
        run["benchmarks"][0].update(error_occurred=True, error_message="wrong answer")
        with self.assertRaisesRegex(ReportError, "wrong answer"):
            Results(run)

    def test_an_empty_run_stops_the_report(self):
        with self.assertRaisesRegex(ReportError, "no results"):
            Results({"benchmarks": []})

    def test_a_name_of_another_form_stops_the_report(self):
        with self.assertRaisesRegex(ReportError, "not Area/operation/variant/size"):
            Results({"benchmarks": [run_of("Events/dispatch/1", 1)]})

    def test_a_missing_library_stops_the_report(self):
        for peer in ("ICU", "simdjson", "fast_float", "fmt", "std::", "boost::", "glm"):
            run = complete_run()
            run["benchmarks"] = [b for b in run["benchmarks"] if not b["name"].split("/")[2].startswith(peer)]
            with self.assertRaisesRegex(ReportError, peer):
                Results(run).require_peers()

    def test_a_missing_benchmark_stops_the_report(self):
        for name in (
            "Texts/convert to UTF-8, han page/ICU/65536",
            "Texts/scan UTF-8, cyrillic/Vorn, terminated/8",
            "Headers/compile/Event.h/17/manual_time",
        ):
            run = complete_run()
            run["benchmarks"] = [b for b in run["benchmarks"] if b["name"] != name]
            with self.assertRaisesRegex(ReportError, "there is no benchmark"):
                report.make_blocks(Results(run), ENVIRONMENT, {})

    def test_an_area_without_a_table_stops_the_report(self):
        run = complete_run()
        run["benchmarks"].append(run_of("Sounds/play/Vorn/1", 1))
        with self.assertRaisesRegex(ReportError, "no table for: Sounds"):
            report.make_blocks(Results(run), ENVIRONMENT, {})

    def test_a_file_without_results_stops_the_report(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "Results.json"
            for text in ("", "{", "{}", "[]"):
                path.write_text(text, encoding="utf-8")
                with self.assertRaisesRegex(ReportError, "holds no results"):
                    Results.read(path)
        with self.assertRaisesRegex(ReportError, "holds no results"):
            Results.read(path)

    def test_a_failed_run_stops_the_report(self):
        for program, message in (("/bin/false", "end with 1"), ("/missing", "cannot run")):
            with self.assertRaisesRegex(ReportError, message):
                report.run_benchmarks(program, None, "unused.json")

    def test_pages_with_wrong_blocks_are_refused(self):
        block = "<!-- report: machine -->\n<!-- end of report -->\n"
        for page, blocks, message in (
            (block, {}, "does not make"),
            (block, {"machine": "", "plot one": ""}, "no block for: plot one"),
            ("<!-- report: machine -->\n", {"machine": ""}, "without its other one"),
            (block + "<!-- end of report -->\n", {"machine": ""}, "without its other one"),
        ):
            with self.subTest(page=page), self.assertRaisesRegex(ReportError, message):
                report.replace_blocks(page, blocks)


class Page(unittest.TestCase):
    """Documentation/Performance.md, its plots, and the plot of the README."""

    def test_every_block_is_one_that_the_report_makes(self):
        blocks = report.make_blocks(Results(complete_run()), ENVIRONMENT, {name: name for name in FIGURES})
        page = PAGE.read_text(encoding="utf-8")
        renewed = report.replace_blocks(page, blocks)
        self.assertEqual(report.BLOCK.sub("", page), report.BLOCK.sub("", renewed))
        self.assertEqual(report.replace_blocks(renewed, blocks), renewed)

    def test_every_block_has_a_table_or_a_plot(self):
        for _, name, text, _ in report.BLOCK.findall(PAGE.read_text(encoding="utf-8")):
            with self.subTest(block=name):
                if name.startswith("plot "):
                    file = re.escape(name.removeprefix("plot "))
                    self.assertRegex(text, rf"\A\n!\[[^\]]+\]\(Performance/{file}\.svg\)\n\n\Z")
                    continue
                rows = [line.count(" |") for line in text.strip().splitlines() if line]
                self.assertGreater(len(rows), 2)
                self.assertTrue(all(line.startswith("| ") for line in text.split("\n") if line))

    def test_every_plot_exists_and_is_small(self):
        named = set(re.findall(r"\(Performance/([^)]+)\)", PAGE.read_text(encoding="utf-8")))
        self.assertEqual(named, {plot.name for plot in PLOTS.iterdir()})
        for name in named:
            with self.subTest(plot=name):
                text = (PLOTS / name).read_text(encoding="utf-8")
                self.assertLess(len(text.encode()), LONGEST_PLOT)
                self.assertTrue(text.startswith("<svg "))
                self.assertNotIn("<metadata", text)
                self.assertIn("fill: #ffffff", text)  # the same in light and dark pages

    def test_the_readme_shows_a_plot(self):
        named = re.findall(r"!\[[^\]]+\]\((Documentation/Performance/[^)]+\.svg)\)", (ROOT / "README.md").read_text())
        self.assertEqual(len(named), 1)
        self.assertTrue((ROOT / named[0]).is_file())

    def test_the_page_names_no_path_of_a_machine(self):
        for path in (PAGE, *PLOTS.iterdir()):
            self.assertNotRegex(path.read_text(encoding="utf-8"), r"(?<![\w.])/(home|root|tmp|work|vorn|usr)/")


class Plots(unittest.TestCase):
    def test_all_plots_are_drawn_small_and_always_alike(self):
        import plots

        self.assertEqual(set(plots.FIGURES), set(FIGURES))
        results = Results(complete_run())
        with tempfile.TemporaryDirectory() as folder:
            for name, (description, draw) in plots.FIGURES.items():
                with self.subTest(plot=name):
                    path = pathlib.Path(folder) / name
                    draw(results, path)
                    text = path.read_text(encoding="utf-8")
                    self.assertLess(len(text.encode()), LONGEST_PLOT)
                    self.assertTrue(description)
                    self.assertNotRegex(text, r"\d\.\d\d")  # coordinates are rounded
                    draw(results, path)
                    self.assertEqual(path.read_text(encoding="utf-8"), text)

    def test_a_missing_series_stops_the_report(self):
        import plots

        run = complete_run()
        run["benchmarks"] = [b for b in run["benchmarks"] if "han page/ICU/" not in b["name"]]
        with self.assertRaisesRegex(ReportError, "no series of lengths"):
            plots.FIGURES["to-utf8"][1](Results(run), "unused.svg")


if __name__ == "__main__":
    if "--plots" in sys.argv:
        try:
            import matplotlib  # noqa: F401
        except ImportError:
            sys.exit(print("skipped: the package python3-matplotlib is missing"))
        sys.argv[1:] = ["Plots"]
    else:
        sys.argv[1:] = ["Tables", "Failures", "Page"]
    unittest.main()
