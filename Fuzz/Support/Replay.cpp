// Runs a fuzz target over its stored inputs, without libFuzzer, so that every compiler and both process sizes repeat
// what the fuzzer has found. A file of inputs holds one input per line, in hexadecimal; "#" begins a comment.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

unsigned int digitOf(char character) {
    static const std::string digits("0123456789ABCDEF");
    const std::size_t digit = digits.find(character);
    if (digit == std::string::npos) throw std::runtime_error(std::string("no hexadecimal digit: ") + character);
    return static_cast<unsigned int>(digit);
}

std::vector<std::uint8_t> inputOf(const std::string& line) {
    if (line.size() % 2 != 0) throw std::runtime_error("half a byte: " + line);
    std::vector<std::uint8_t> input;
    for (std::size_t i = 0; i < line.size(); i += 2)
        input.push_back(static_cast<std::uint8_t>(digitOf(line[i]) * 16 + digitOf(line[i + 1])));
    return input;
}

std::size_t replay(const std::string& path) {
    std::ifstream stream(path);
    if (!stream) throw std::runtime_error("cannot open " + path);
    std::size_t runs = 0;
    for (std::string line; std::getline(stream, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::fprintf(stderr, "%s\n", line.c_str()); // the last line of a failure is its input
        const std::vector<std::uint8_t> input = inputOf(line);
        LLVMFuzzerTestOneInput(input.data(), input.size());
        ++runs;
    }
    if (runs == 0) throw std::runtime_error("no inputs in " + path);
    return runs;
}

} // namespace

int main(int count, char** arguments) try {
    if (count != 2) throw std::runtime_error("usage: replay FILE");
    std::printf("%zu inputs\n", replay(arguments[1]));
    return 0;
} catch (const std::exception& exception) {
    std::fprintf(stderr, "replay: %s\n", exception.what());
    return 1;
}
