#include "Vorn/Exception.h"

#include "Vorn/Assert.h"

#include "ReportSize.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace Vorn {

namespace {

template <int Size>
ExceptionString literal(const char (&text)[Size]) {
    return ExceptionString(text, Size - 1);
}

// Formats into `buffer`, which contains zeros, and returns the length of the result. If formatting fails, the whole
// buffer is the result.
template <int Size>
int formatBounded(char (&buffer)[Size], const char* format, std::va_list arguments) {
    const int length = std::vsnprintf(buffer, Size, format, arguments);
    return length < 0 || length >= Size ? Size - 1 : length;
}

void formatMessage(ExceptionString& message, const ExceptionString& prefix, const char* format,
                   std::va_list arguments) {
    char buffer[4096] = {};
    errno = 0;
    const int length = formatBounded(buffer, format, arguments);
    const int total = VornPrivate::reportSize(std::uint64_t(std::int64_t{prefix.size()} + length));
    char* const text = message.createString(total);
    if (prefix.size() != 0) std::memcpy(text, prefix.getString(), static_cast<std::size_t>(prefix.size()));
    std::memcpy(text + prefix.size(), buffer, static_cast<std::size_t>(length));
    message.doneCreateString(total);
}

/// The parts of a report, joined without an allocation.
///
/// The line is specified as a join of one part after the other, where each sum is an ExceptionString: its length loses
/// the bits of the flags. A line that reaches these bits is therefore truncated, and the next part is added there.
class ReportLine {
public:
    ReportLine(const ExceptionString& file, unsigned int line, const ExceptionString& function,
               const ExceptionString& type, const ExceptionString& message) noexcept {
        append(file);
        append(literal(":"));
        append(ExceptionString(m_digits, std::snprintf(m_digits, sizeof m_digits, "%u", line)));
        append(literal(": "));
        append(function);
        append(literal(": Exception: "));
        append(type);
        append(literal(":"));
        append(message);
    }

    ReportLine(const ReportLine&) = delete; // one part refers to m_digits
    ReportLine& operator=(const ReportLine&) = delete;

    /// The length in bytes.
    std::int64_t size() const noexcept { return m_size; }

    /// Copies the first `size` bytes, or all if there are fewer. Returns the number of bytes copied.
    std::int64_t copyTo(char* destination, std::int64_t size) const noexcept {
        std::int64_t copied = 0;
        for (const Part& part : m_parts) {
            const std::int64_t count = std::min(part.size, size - copied);
            if (count > 0) std::memcpy(destination + copied, part.text, static_cast<std::size_t>(count));
            copied += count;
        }
        return copied;
    }

private:
    static constexpr int PART_COUNT = 9;

    struct Part {
        const char* text = nullptr;
        std::int64_t size = 0;
    };

    void append(const ExceptionString& part) noexcept {
        constexpr std::int64_t FLAGS = 0xC000;
        truncate(m_size & ~FLAGS);
        m_parts[m_count++] = Part{part.getString(), part.size()};
        m_size += part.size();
    }

    void truncate(std::int64_t size) noexcept {
        for (int i = m_count; m_size > size; --i) {
            const std::int64_t surplus = std::min(m_parts[i - 1].size, m_size - size);
            m_parts[i - 1].size -= surplus;
            m_size -= surplus;
        }
    }

    Part m_parts[PART_COUNT];
    int m_count = 0;
    std::int64_t m_size = 0;
    char m_digits[16];
};

// Builds the exception, which reports itself, and throws a copy, which shares the texts and does not report again.
template <int N>
[[noreturn]] void raiseFormatted(const ExceptionString& type, const ExceptionString& file,
                                 const ExceptionString& function, const ExceptionString& lineString, unsigned int line,
                                 const ExceptionString& message) {
    const Exception<N> exception(type, file, function, lineString, line, message);
    throw exception;
}

} // namespace

void (*AllExceptions::pLogCallback)(const char*) = nullptr;

AllExceptions::AllExceptions(int code, const ExceptionString& type, const ExceptionString& file,
                             const ExceptionString& function, const ExceptionString& lineString,
                             unsigned int line) noexcept
    : m_type(type), m_file(file), m_function(function), m_lineString(lineString), m_line(line), m_code(code) {}

AllExceptions::AllExceptions(int code, const ExceptionString& type, const ExceptionString& file,
                             const ExceptionString& function, const ExceptionString& lineString, unsigned int line,
                             const ExceptionString& message) noexcept
    : m_type(type), m_file(file), m_function(function), m_message(message), m_lineString(lineString), m_line(line),
      m_code(code) {}

AllExceptions::AllExceptions(int code, const ExceptionString& type, const ExceptionString& file,
                             const ExceptionString& function, const ExceptionString& lineString, unsigned int line,
                             const ExceptionString& message, const ExceptionString& logString) noexcept
    : m_type(type), m_file(file), m_function(function), m_message(message), m_logString(logString),
      m_lineString(lineString), m_line(line), m_code(code) {}

AllExceptions::~AllExceptions() = default;

AllExceptions& AllExceptions::operator=(const AllExceptions& other) {
    m_type = other.m_type;
    m_file = other.m_file;
    m_function = other.m_function;
    m_message = other.m_message;
    m_logString = other.m_logString;
    m_lineString = other.m_lineString;
    m_line = other.m_line;
    m_code = other.m_code;
    return *this;
}

const char* AllExceptions::what() const noexcept { return getLogString(); }

bool AllExceptions::tryBuildReport() const noexcept {
    if (!m_logString.isNull()) return true;
    const ReportLine line(m_file, m_line, m_function, m_type, m_message);
    if (line.size() < 1) return true; // the bits of the flags were the whole length
    char* const text = m_logString.tryCreateString(line.size());
    if (!text) return false;
    line.copyTo(text, line.size());
    m_logString.doneCreateString(static_cast<int>(line.size()));
    return true;
}

const char* AllExceptions::getLogString() const noexcept {
    return tryBuildReport() ? m_logString.getString() : "Vorn: out of memory while building the report";
}

void AllExceptions::setLogCallback(void (*callback)(const char*)) noexcept { pLogCallback = callback; }

void AllExceptions::log(const char* text) {
    if (pLogCallback) pLogCallback(text);
}

void AllExceptions::printMessage(const ExceptionString& prefix, const char* format, std::va_list arguments) {
    formatMessage(m_message, prefix, format, arguments);
}

void AllExceptions::report() const {
    if (!pLogCallback) return;
    if (tryBuildReport()) {
        pLogCallback(m_logString.getString());
    } else {
        char line[1024];
        line[ReportLine(m_file, m_line, m_function, m_type, m_message).copyTo(line, sizeof line - 1)] = '\0';
        pLogCallback(line);
    }
}

template <int N>
Exception<N>::Exception(const ExceptionString& type, const ExceptionString& file, const ExceptionString& function,
                        const ExceptionString& lineString, unsigned int line, const ExceptionString& message)
    : AllExceptions(N, type, file, function, lineString, line, message) {
    report();
}

template <int N>
template <int Code, std::enable_if_t<Code == E::ASSERT || Code == E::INTERNAL, int>>
Exception<N>::Exception(const ExceptionString& type, const ExceptionString& file, const ExceptionString& function,
                        const ExceptionString& lineString, unsigned int line, const ExceptionString& prefix,
                        const char* format, ...)
    : AllExceptions(N, type, file, function, lineString, line) {
    std::va_list arguments;
    va_start(arguments, format);
    printMessage(prefix, format, arguments);
    va_end(arguments);
    report();
}

template <int N>
Exception<N>::Exception(const Exception& other) = default;

template <int N>
Exception<N>::~Exception() = default;

template class Exception<E::ASSERT>;
template class Exception<E::INTERNAL>;
template class Exception<E::PARAMETER>;
template class Exception<E::UNICODE>;

template VORN_API Exception<E::ASSERT>::Exception(const ExceptionString&, const ExceptionString&,
                                                  const ExceptionString&, const ExceptionString&, unsigned int,
                                                  const ExceptionString&, const char*, ...);
template VORN_API Exception<E::INTERNAL>::Exception(const ExceptionString&, const ExceptionString&,
                                                    const ExceptionString&, const ExceptionString&, unsigned int,
                                                    const ExceptionString&, const char*, ...);

void throwAssert(const ExceptionString& file, const ExceptionString& function, const ExceptionString& lineString,
                 unsigned int line, const ExceptionString& message) {
    throw Exception<E::ASSERT>(VornPrivate::codeName<E::ASSERT>(), file, function, lineString, line, message);
}

void throwAssert(const ExceptionString& file, const ExceptionString& function, const ExceptionString& lineString,
                 unsigned int line, const ExceptionString& prefix, const char* format, ...) {
    ExceptionString message;
    std::va_list arguments;
    va_start(arguments, format);
    formatMessage(message, prefix, format, arguments);
    va_end(arguments);
    raiseFormatted<E::ASSERT>(VornPrivate::codeName<E::ASSERT>(), file, function, lineString, line, message);
}

void throwInternalAssert(const ExceptionString& file, const ExceptionString& function,
                         const ExceptionString& lineString, unsigned int line, const ExceptionString& message) {
    throw Exception<E::INTERNAL>(VornPrivate::codeName<E::INTERNAL>(), file, function, lineString, line, message);
}

void throwInternalAssert(const ExceptionString& file, const ExceptionString& function,
                         const ExceptionString& lineString, unsigned int line, const ExceptionString& prefix,
                         const char* format, ...) {
    ExceptionString message;
    std::va_list arguments;
    va_start(arguments, format);
    formatMessage(message, prefix, format, arguments);
    va_end(arguments);
    raiseFormatted<E::INTERNAL>(VornPrivate::codeName<E::INTERNAL>(), file, function, lineString, line, message);
}

} // namespace Vorn
