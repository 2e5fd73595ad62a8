// Prints the hash of each area and of all. With the name of a file it compares them with the file, in which a line
// holds an area and its hash, and ends with 1 if one differs or is missing.
#include "Digest/Digest.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char** argv) {
    constexpr struct {
        const char* name;
        void (*digest)(Digest&);
    } AREAS[] = {
        {"characters", digestCharacters}, {"validation", digestValidation}, {"conversions", digestConversions},
        {"records", digestRecords},       {"orders", digestOrders},         {"searches", digestSearches},
        {"pieces", digestPieces},         {"edits", digestEdits},           {"integers", digestIntegers},
        {"floats", digestFloats},         {"formats", digestFormats},       {"failures", digestFailures},
        {"geometry", digestGeometry},     {"batches", digestBatches},       {"events", digestEvents},
        {"trees", digestTrees},
    };

    std::string printed;
    Digest all;
    const auto print = [&](const char* name, std::uint64_t hash) {
        char line[64];
        std::snprintf(line, sizeof line, "%-12s%08lx%08lx\n", name, static_cast<unsigned long>(hash >> 32),
                      static_cast<unsigned long>(hash & 0xFFFFFFFF));
        printed += line;
    };
    for (const auto& area : AREAS) {
        Digest digest;
        area.digest(digest);
        all.add(digest.value());
        print(area.name, digest.value());
    }
    print("all", all.value());
    std::fputs(printed.c_str(), stdout);
    if (argc < 2) return 0;

    std::ifstream file(argv[1]);
    std::string expected;
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        expected += line;
        expected += '\n';
        if (printed.find(line) == std::string::npos) std::printf("expected: %s\n", line.c_str());
    }
    if (printed == expected) return 0;
    std::puts("the results of this build differ from those of other builds, or have been changed");
    return 1;
}
