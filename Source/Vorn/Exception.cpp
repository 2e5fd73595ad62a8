#include "Vorn/Exception.h"

#include "Vorn/Assert.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace Vorn {

namespace {

template <int Size>
ExceptionString literal(const char (&text)[Size]) {
    return ExceptionString(text, Size - 1);
}

// Formats into `buffer`, which is clear beforehand, and returns the length of what arrived. Whatever goes wrong, the
// buffer counts as full.
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
    const int total = prefix.size() + length;
    char* const text = message.createString(total);
    if (prefix.size() != 0) std::memcpy(text, prefix.getString(), static_cast<std::size_t>(prefix.size()));
    std::memcpy(text + prefix.size(), buffer, static_cast<std::size_t>(length));
    message.doneCreateString(total);
}

// Raises for a formatting function, whose arguments cannot be handed on to a constructor.
template <int N>
[[noreturn]] void raiseFormatted(const ExceptionString& type, const ExceptionString& file,
                                 const ExceptionString& function, const ExceptionString& lineString, unsigned int line,
                                 const ExceptionString& message) {
    const Exception<N> exception(type, file, function, lineString, line, message);
    throw exception; // a copy, which shares the texts and does not report again
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

const char* AllExceptions::getLogString() const {
    if (m_logString.isNull()) {
        constexpr int CAPACITY = 1024;
        ExceptionString digits;
        digits.doneCreateString(std::snprintf(digits.createString(CAPACITY), CAPACITY, "%u", m_line));

        ExceptionString text = m_file + literal(":");
        text = text + digits;
        text = text + literal(": ");
        text = text + m_function;
        text = text + literal(": Exception: ");
        text = text + m_type;
        text = text + literal(":");
        m_logString = text + m_message;
    }
    return m_logString.getString();
}

void AllExceptions::setLogCallback(void (*callback)(const char*)) noexcept { pLogCallback = callback; }

void AllExceptions::log(const char* text) {
    if (pLogCallback) pLogCallback(text);
}

void AllExceptions::printMessage(const ExceptionString& prefix, const char* format, std::va_list arguments) {
    formatMessage(m_message, prefix, format, arguments);
}

void AllExceptions::report() const {
    if (pLogCallback) pLogCallback(getLogString());
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
