// The processor time that the compiler takes for a file that includes one public header and nothing else, beside the
// headers of the standard library that most files include. The size is the language level.
#include "Support/Measure.h"

#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <string>
#include <vector>

namespace {

struct Compilation {
    bool isSuccessful;
    double seconds; // of the processor
};

// Compiles a file that includes `headers`, without output.
Compilation compile(const std::vector<std::string>& headers, std::size_t languageLevel) {
    std::vector<std::string> arguments = {VORN_COMPILER, "-fsyntax-only", "-I", VORN_INCLUDE_DIRECTORY};
    arguments.push_back("-std=c++" + std::to_string(languageLevel));
    for (const std::string& header : headers) {
        arguments.push_back("-include");
        arguments.push_back(header);
    }
    arguments.insert(arguments.end(), {"-x", "c++", "/dev/null"});
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    pid_t process = 0;
    if (posix_spawn(&process, VORN_COMPILER, nullptr, nullptr, pointers.data(), environ) != 0) return {false, 0};
    int status = 0;
    rusage usage{};
    if (wait4(process, &status, 0, &usage) != process) return {false, 0};
    const auto secondsOf = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return {WIFEXITED(status) && WEXITSTATUS(status) == 0, secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime)};
}

bool add(const std::string& variant, const std::vector<std::string>& headers) {
    const auto measure = [headers](Run& run) {
        for (auto _ : run.loop()) {
            const Compilation compilation = compile(headers, run.size());
            run.expect(compilation.isSuccessful, true);
            run.setSeconds(compilation.seconds);
        }
    };
    return addBenchmark("Headers/compile/" + variant, 17, measure, true);
}

bool addAll() {
    for (const std::string header :
         {"Vorn.h", "Text.h", "Geometry.h", "ParseInt.h", "Exception.h", "String/String.h", "String/UTF8String.h",
          "Text/MakeString.h", "Text/TextNumbers.h", "Text/Name.h", "SharedObjects/SharedPtr.h",
          "SharedObjects/Event.h", "SharedObjects/Delegate.h", "SharedObjects/TreeNode.h"}) {
        add(header.substr(header.find('/') + 1), {"Vorn/" + header}); // a slash divides the name of a benchmark
    }
    return add("std::string, memory and functional", {"string", "memory", "functional"});
}

[[maybe_unused]] const bool registered = addAll();

} // namespace
