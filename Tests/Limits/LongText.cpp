#include "Limits/LongText.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <new>
#include <system_error>
#include <vector>

namespace {

std::atomic<std::size_t> g_allocations{0};

} // namespace

// The blocks are left as malloc gives them, so that pages of a large one that nobody writes take no memory.
void* operator new(std::size_t size) {
    ++g_allocations;
    if (void* const block = std::malloc(size)) return block;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }

namespace limits {

namespace {

// A multiple of each pattern's length and of every page size up to 64 KiB, and small enough to stay in the cache.
constexpr std::size_t FILE_BYTES = 3 * 1024 * 1024;

[[noreturn]] void fail(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

void* mapOrFail(void* at, std::size_t bytes, int protection, int flags, int file) {
    void* const mapping = mmap(at, bytes, protection, flags, file, 0);
    if (mapping == MAP_FAILED) fail("mmap");
    return mapping;
}

std::uint64_t availableKibibytes() {
    std::ifstream file("/proc/meminfo");
    std::string name;
    for (std::uint64_t kibibytes; file >> name >> kibibytes; file.ignore(16, '\n'))
        if (name == "MemAvailable:") return kibibytes;
    return 0;
}

constexpr bool isSanitized() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
    return true;
#endif
#endif
    return false;
}

constexpr bool isOptimized() {
#ifdef __OPTIMIZE__
    return true;
#else
    return false;
#endif
}

} // namespace

std::string reasonToSkip() {
    if (sizeof(void*) < 8) return "a process of 32 bits has no address space for such texts";
    if (isSanitized()) return "sanitizers need memory and minutes for each byte of such texts";
    if (!isOptimized()) return "code that is not optimised takes minutes for such texts";
    if (availableKibibytes() < 8 * 1024 * 1024) return "less than 8 GiB of memory are available";
    return {};
}

std::size_t allocationCount() { return g_allocations; }

LongMemory::LongMemory(std::string_view pattern, std::uint64_t bytes, Writes writes) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t usedBytes = (static_cast<std::size_t>(bytes) + page - 1) / page * page;
    const std::size_t lead = usedBytes - static_cast<std::size_t>(bytes);
    m_mappedBytes = usedBytes + page;

    const int file = memfd_create("LongMemory", 0);
    if (file < 0 || FILE_BYTES % pattern.size() != 0) fail("memfd_create");
    std::vector<char> repeated(FILE_BYTES);
    for (std::size_t i = 0; i < FILE_BYTES; ++i)
        repeated[i] = pattern[(i + pattern.size() - lead % pattern.size()) % pattern.size()];
    if (write(file, repeated.data(), FILE_BYTES) != static_cast<ssize_t>(FILE_BYTES)) fail("write");

    m_mapping = static_cast<unsigned char*>(
        mapOrFail(nullptr, m_mappedBytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1));
    const int sharing = writes == ALIASED ? MAP_SHARED : MAP_PRIVATE;
    for (std::size_t offset = 0; offset < usedBytes; offset += FILE_BYTES)
        mapOrFail(m_mapping + offset, std::min(FILE_BYTES, usedBytes - offset), PROT_READ | PROT_WRITE,
                  sharing | MAP_FIXED | MAP_NORESERVE, file);
    close(file);
    m_begin = m_mapping + lead;
}

LongMemory::~LongMemory() { munmap(m_mapping, m_mappedBytes); }

} // namespace limits
