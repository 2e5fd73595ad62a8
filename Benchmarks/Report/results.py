"""The results of a run of the benchmarks, read from the JSON file of Google Benchmark."""

import dataclasses
import json
import re
import statistics


class ReportError(Exception):
    """The report cannot be made. The text says why."""


@dataclasses.dataclass(frozen=True)
class Result:
    """One benchmark, "Area/operation/variant/size", with the times of its repetitions."""

    area: str
    operation: str
    variant: str
    size: int
    times: tuple  # nanoseconds of one iteration, in order of size
    bytes: int  # bytes that an iteration processes; 0 if they are not counted
    label: str

    @property
    def median(self):
        return statistics.median(self.times)

    @property
    def deviation(self):
        """Median of the distances from the median, divided by the median."""
        return statistics.median(abs(time - self.median) for time in self.times) / self.median

    @property
    def speed(self):
        """Gigabytes per second."""
        if not self.bytes:
            raise ReportError(f"{self.operation}/{self.variant}/{self.size} does not count bytes")
        return self.bytes / self.median


PEERS = re.compile(
    r"(std::|ICU|icu::|boost::|glm|fmt|fast_float|simdjson|mem(chr|cmp)|dense_hash_map|new and delete|vector of)"
)
# Each of these libraries must be among the results.
REQUIRED_PEERS = ["ICU", "simdjson", "fast_float", "fmt", "std::", "boost::", "glm"]
KERNELS = "kernels "


def is_peer(variant):
    """Whether the variant is another library, not this one."""
    return PEERS.match(variant) is not None


def is_kernels(variant):
    """Whether the variant is this library with a chosen set of kernels."""
    return variant.startswith(KERNELS)


class Results:
    """All benchmarks of a run, in the order of the program."""

    def __init__(self, recorded):
        collected = {}
        for run in recorded["benchmarks"]:
            if run.get("run_type") == "aggregate":
                continue
            name = run.get("run_name", run["name"])
            if run.get("error_occurred"):
                raise ReportError(f"{name}: {run.get('error_message', 'unknown error')}")
            measures_itself = name.endswith("/manual_time")
            parts = name.removesuffix("/manual_time").split("/")
            if len(parts) != 4 or not parts[3].isdecimal():
                raise ReportError(f'a benchmark is called "{name}", not Area/operation/variant/size')
            if run["time_unit"] != "ns":
                raise ReportError(f"{name} is not measured in nanoseconds")
            time = run["real_time"] if measures_itself else run["cpu_time"]
            if not time > 0:
                raise ReportError(f"{name} took {time} ns")
            entry = collected.setdefault(tuple(parts), {"times": [], "order": run.get("family_index", 0)})
            entry["times"].append(time)
            entry["bytes"] = round(run.get("bytes_per_second", 0) * time * 1e-9)
            entry["label"] = run.get("label", "")
        if not collected:
            raise ReportError("the run has no results")
        # The repetitions run in random order, so the file is in random order, too.
        self.all = [
            Result(area, operation, variant, int(size), tuple(sorted(entry["times"])), entry["bytes"], entry["label"])
            for (area, operation, variant, size), entry in sorted(collected.items(), key=lambda item: item[1]["order"])
        ]
        self.repetitions = max(len(result.times) for result in self.all)
        self._by_name = {(r.area, r.operation, r.variant, r.size): r for r in self.all}

    @staticmethod
    def read(path):
        try:
            with open(path, encoding="utf-8") as file:
                return Results(json.load(file))
        except (OSError, ValueError, KeyError, TypeError) as error:
            raise ReportError(f"{path} holds no results: {error!r}") from error

    def find(self, area, operation, variant, size):
        try:
            return self._by_name[area, operation, variant, size]
        except KeyError:
            raise ReportError(f"there is no benchmark {area}/{operation}/{variant}/{size}") from None

    def of(self, area, operation=None, variant=None):
        """The results of an area, of one of its operations, or of a variant of that, in order."""
        return [
            result
            for result in self.all
            if result.area == area
            and operation in (None, result.operation)
            and variant in (None, result.variant)
        ]

    def kernels(self):
        """The names of the sets of kernels that this processor supports, the fastest last."""
        names = [r.variant.removeprefix(KERNELS) for r in self.of("Texts") if is_kernels(r.variant)]
        return list(dict.fromkeys(names))

    def require_peers(self):
        for peer in REQUIRED_PEERS:
            if not any(result.variant.startswith(peer) for result in self.all):
                raise ReportError(f"the run has no benchmark of {peer}")
