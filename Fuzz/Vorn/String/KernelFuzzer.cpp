// All kernels of text that this machine supports against each other: validation, lengths, conversions and comparison.
// A text is repeated behind blanks, so that each of its characters meets the ends of blocks.
#include "Vorn/Kernels/TextKernels.h"

#include "Reference/SampleTexts.h"
#include "Support/Stream.h"

#include <string>
#include <vector>

namespace {

using namespace VornPrivate;

/// The plain code decides about the block where a kernel stops, and the kernel continues behind it.
template <class Unit, class Result, class Run, class Add>
std::size_t pass(const std::vector<Unit>& text, Result& result, Run run, Run plain, Add add) {
    std::size_t at = 0;
    for (;;) {
        const auto passed = run(text.data() + at, text.size() - at);
        add(result, passed);
        at += passed.length;
        const auto decided = plain(text.data() + at, text.size() - at);
        add(result, decided);
        at += decided.length;
        if (passed.length == 0 || at == text.size()) return at;
    }
}

std::string described(const TextKernels& kernels, const std::vector<unsigned char>& text, bool full) {
    using Run = UTF8Run (*)(const unsigned char*, std::size_t, bool);
    struct Wrapped {
        Run run;
        bool full;
        UTF8Run operator()(const unsigned char* units, std::size_t length) const { return run(units, length, full); }
    };
    UTF8Run sum{};
    const std::size_t end = pass(text, sum, Wrapped{kernels.measureUTF8, full},
                                 Wrapped{allTextKernels[0]->measureUTF8, full}, [](UTF8Run& total, const UTF8Run& run) {
                                     total.characters += run.characters;
                                     total.fourBytes += run.fourBytes;
                                 });
    return "UTF-8 " + std::to_string(end) + ' ' + std::to_string(sum.characters) + ' ' + std::to_string(sum.fourBytes);
}

std::string described(const TextKernels& kernels, const std::vector<UTF16Char>& text, bool full) {
    using Run = UTF16Run (*)(const UTF16Char*, std::size_t, unsigned int, bool);
    struct Wrapped {
        Run run;
        bool full;
        UTF16Run operator()(const UTF16Char* units, std::size_t length) const { return run(units, length, 0x7F, full); }
    };
    UTF16Run sum{};
    const std::size_t end =
        pass(text, sum, Wrapped{kernels.measureUTF16, full}, Wrapped{allTextKernels[0]->measureUTF16, full},
             [](UTF16Run& total, const UTF16Run& run) {
                 total.extraBytes += run.extraBytes;
                 total.pairs += run.pairs;
             });
    return "UTF-16 " + std::to_string(end) + ' ' + std::to_string(sum.extraBytes) + ' ' + std::to_string(sum.pairs);
}

/// Converts a text with a kernel and its rest with the portable one. The units behind a first surrogate exist.
std::vector<unsigned char> toUTF8(const TextKernels& kernels, const std::vector<UTF16Char>& text, Pairs pairs) {
    std::vector<unsigned char> bytes(text.size() * 4 + 8);
    const TextProgress start = kernels.toUTF8(text.data(), text.size(), bytes.data(), bytes.size(), pairs);
    const TextProgress rest = allTextKernels[0]->toUTF8(text.data() + start.source, text.size() - start.source,
                                                        bytes.data() + start.dest, bytes.size() - start.dest, pairs);
    bytes.resize(start.dest + rest.dest);
    return bytes;
}

/// Converts ordinary text, with blanks behind it in place of the last bytes that the portable kernel leaves.
std::vector<UTF16Char> toUTF16(const TextKernels& kernels, std::vector<unsigned char> text, bool exact) {
    const UTF8Run run = allTextKernels[0]->measureUTF8(text.data(), text.size(), true);
    const std::size_t length = run.characters + (exact ? run.fourBytes : 0);
    text.insert(text.end(), 4, 0x20);
    std::vector<UTF16Char> units(text.size());
    const TextProgress start = kernels.toUTF16(text.data(), text.size(), units.data(), units.size(), exact);
    const TextProgress rest = allTextKernels[0]->toUTF16(text.data() + start.source, text.size() - start.source,
                                                         units.data() + start.dest, units.size() - start.dest, exact);
    require(start.dest + rest.dest >= length, kernels.name);
    units.resize(length);
    return units;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Stream stream(data, size);
    const std::size_t blanks = stream.below(70);
    const bool flag = stream.below(2) != 0;
    const std::vector<unsigned char> part = stream.rest();
    std::vector<unsigned char> text(blanks, 0x20);
    for (int round = 0; round < 3; ++round) text.insert(text.end(), part.begin(), part.end());
    std::vector<UTF16Char> wide(blanks, 0x20);
    for (std::size_t i = 0; i + 1 < text.size() - blanks; i += 2) {
        const std::uint8_t unit[] = {text[blanks + i], text[blanks + i + 1]};
        wide.push_back(static_cast<UTF16Char>(Stream(unit, 2).unit()));
    }

    const TextKernels& portable = *allTextKernels[0];
    for (const TextKernels* const* at = allTextKernels + 1; *at; ++at) {
        const TextKernels& kernels = **at;
        if (!kernels.isSupported()) continue;
        requireText(described(kernels, text, flag), described(portable, text, flag), kernels.name);
        requireText(described(kernels, wide, flag), described(portable, wide, flag), kernels.name);
        const Pairs pairs = flag ? Pairs::STORED : Pairs::APART;
        require(toUTF8(kernels, wide, pairs) == toUTF8(portable, wide, pairs), kernels.name);
        const UTF16Run wideRun = portable.scanUTF16(wide.data(), wide.size());
        const std::vector<UTF16Char> validWide(wide.begin(),
                                               wide.begin() + static_cast<std::ptrdiff_t>(wideRun.length));
        require(toUTF8(kernels, validWide, Pairs::EXACT) == toUTF8(portable, validWide, Pairs::EXACT), kernels.name);
        const UTF8Run run = portable.scanUTF8(text.data(), text.size());
        const std::vector<unsigned char> valid(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(run.length));
        require(toUTF16(kernels, valid, flag) == toUTF16(portable, valid, flag), kernels.name);
        const TextProgress equal = kernels.match(wide.data(), wide.size(), text.data(), text.size(), flag);
        const std::vector<UTF16Char> start(wide.begin(), wide.begin() + static_cast<std::ptrdiff_t>(equal.source));
        std::vector<unsigned char> encoded;
        for (std::size_t i = 0; i < start.size(); ++i) {
            unsigned int code = start[i];
            if ((code & 0xFC00) == 0xD800) code = 0x10000 + ((code & 0x3FF) << 10) + (start[++i] & 0x3FFu);
            reference::appendUTF8(encoded, code);
        }
        require(encoded ==
                    std::vector<unsigned char>(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(equal.dest)),
                kernels.name);
        require(kernels.count8(text.data(), text.size(), 0x20) == portable.count8(text.data(), text.size(), 0x20),
                kernels.name);
        require(kernels.count16(wide.data(), wide.size(), 0x20) == portable.count16(wide.data(), wide.size(), 0x20),
                kernels.name);
    }
    return 0;
}
