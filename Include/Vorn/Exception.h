/// @file
/// Exception: the family of exceptions that report failures.
///
/// Every failure is an Exception<N>. It can be caught as that, as AllExceptions or as std::exception. It contains where
/// and why the failure happened, and prints as one line:
///
///     file:line: function: Exception: type:message
///
/// Each exception is reported once, in its constructor, to the callback of AllExceptions::setLogCallback, before any
/// handler runs. Without a callback the line is built only when it is first requested.
///
/// Memory: a failure is never replaced by `std::bad_alloc`. If the line cannot be allocated, `what` returns a fixed
/// text, the callback receives the line in a buffer of 1 KiB on the stack, and all other functions work as before. The
/// process ends only if a message that is built at run time cannot be allocated (a formatted message, or an
/// `ExceptionString` of joined or copied text).
///
/// Threads: the callback is a plain pointer; set it before other threads throw. One exception must be used by one
/// thread at a time, because `what` stores the line.
#pragma once

#if !defined(__cpp_exceptions)
#error "Vorn reports failures as exceptions: compile without -fno-exceptions"
#endif

#include "Vorn/Config.h"
#include "Vorn/ExceptionString.h"
#include "Vorn/Private/Surprise.h"

#include <cstdarg>
#include <exception>
#include <type_traits>

namespace Vorn {

/// The codes of the exception family.
namespace E {
enum Code : int {
    ASSERT = 1,    ///< a contract of the caller is broken
    INTERNAL = 2,  ///< an invariant of the library is broken
    PARAMETER = 4, ///< an argument is invalid
    UNICODE = 7    ///< a text is not valid in its encoding
};
} // namespace E

/// The base class of all failures: where and why something failed.
class VORN_API AllExceptions : public std::exception {
public:
    /// An exception with null texts and with 0 as line and code. Its report is ":0: : Exception: :".
    AllExceptions() noexcept : m_line(0), m_code(0) {}

    /// Shares the texts of `other`, including its report if that has been built. Does not call the callback.
    AllExceptions(const AllExceptions& other) = default;

    /// Shares the texts as the copy constructor does. The `std::exception` base is not assigned.
    AllExceptions& operator=(const AllExceptions& other);

    ~AllExceptions() override;

    /// Returns the report, as `getLogString` does.
    const char* what() const noexcept override;

    /// Returns the report as one line, valid until the exception and its copies are destroyed or assigned.
    ///
    /// The line is built by the first call; later calls return the same pointer. If it cannot be allocated or is longer
    /// than 2^31 - 1 bytes, returns "Vorn: out of memory while building the report" and leaves the exception unchanged;
    /// the next call tries again.
    const char* getLogString() const noexcept;

    const char* getType() const noexcept {
        return m_type.getString();
    } ///< name of the code, such as "::Vorn::E::PARAMETER"
    const char* getMessage() const noexcept { return m_message.getString(); } ///< message, or null if there is none
    const char* getFile() const noexcept { return m_file.getString(); } ///< path of the source without its extension
    const char* getFunction() const noexcept {
        return m_function.getString();
    } ///< qualified name of the function, without parameters

    /// Returns "__LINE__" for all failures of the library: the NAME of the macro, not the number. See `getLine`.
    VORN_SURPRISE("returns the name of the macro; use getLine()")
    const char* getLineString() const noexcept { return m_lineString.getString(); }

    unsigned int getLine() const noexcept { return m_line; } ///< line number of the check
    int getCode() const noexcept { return m_code; }          ///< N of `Exception<N>`

    /// Sets the function that receives each report while its exception is constructed; null for none.
    ///
    /// The report is terminated. If it cannot be allocated, it is truncated to 1023 bytes and valid during the call
    /// only.
    /// @warning An exception that the callback throws REPLACES the failure that is being reported. Do not throw from
    ///     the callback.
    static void setLogCallback(void (*callback)(const char*)) noexcept;

    /// Passes `text` to the callback if one is set.
    static void log(const char* text);

protected:
    AllExceptions(int code, const ExceptionString& type, const ExceptionString& file, const ExceptionString& function,
                  const ExceptionString& lineString, unsigned int line) noexcept;
    AllExceptions(int code, const ExceptionString& type, const ExceptionString& file, const ExceptionString& function,
                  const ExceptionString& lineString, unsigned int line, const ExceptionString& message) noexcept;
    AllExceptions(int code, const ExceptionString& type, const ExceptionString& file, const ExceptionString& function,
                  const ExceptionString& lineString, unsigned int line, const ExceptionString& message,
                  const ExceptionString& logString) noexcept;

    /// Builds the message from `prefix` and at most 4095 bytes of the formatted text. Calls `abort` if memory ends.
    VORN_PRINTF(3, 0)
    void printMessage(const ExceptionString& prefix, const char* format, std::va_list arguments);

    /// Passes the report to the callback if one is set. The constructors of `Exception<N>` end with this call.
    void report() const;

    static void (*pLogCallback)(const char*);

    ExceptionString m_type;
    ExceptionString m_file;
    ExceptionString m_function;
    ExceptionString m_message;
    mutable ExceptionString m_logString; // null until the report is built
    ExceptionString m_lineString;
    unsigned int m_line;
    int m_code;

private:
    // Builds m_logString unless it is set. Returns false if memory ends.
    bool tryBuildReport() const noexcept;
};

/// A failure with the code N, which is 1, 2, 4 or 7.
template <int N>
class VORN_API Exception : public AllExceptions {
public:
    /// Builds a failure with a fixed message and passes its report to the callback.
    Exception(const ExceptionString& type, const ExceptionString& file, const ExceptionString& function,
              const ExceptionString& lineString, unsigned int line, const ExceptionString& message);

    /// Builds a failure with a message of `prefix` and at most 4095 bytes that are formatted as by `printf`, and passes
    /// its report to the callback. Only for the codes 1 and 2. Calls `abort` if memory ends.
    template <int Code = N, std::enable_if_t<Code == E::ASSERT || Code == E::INTERNAL, int> = 0>
    VORN_PRINTF(8, 9)
    Exception(const ExceptionString& type, const ExceptionString& file, const ExceptionString& function,
              const ExceptionString& lineString, unsigned int line, const ExceptionString& prefix, const char* format,
              ...);

    /// Shares all texts. Does not report again.
    Exception(const Exception& other);
    Exception& operator=(const Exception& other) = default;

    ~Exception() override;
};

extern template class Exception<E::ASSERT>;
extern template class Exception<E::INTERNAL>;
extern template class Exception<E::PARAMETER>;
extern template class Exception<E::UNICODE>;

/// Throws `Exception<1>` with a fixed message.
[[noreturn]] VORN_API VORN_COLD void throwAssert(const ExceptionString& file, const ExceptionString& function,
                                                 const ExceptionString& lineString, unsigned int line,
                                                 const ExceptionString& message);

/// Throws `Exception<1>` with a message of `prefix` and at most 4095 bytes that are formatted as by `printf`. Calls
/// `abort` if memory ends.
[[noreturn]] VORN_API VORN_COLD VORN_PRINTF(6, 7) void throwAssert(const ExceptionString& file,
                                                                   const ExceptionString& function,
                                                                   const ExceptionString& lineString, unsigned int line,
                                                                   const ExceptionString& prefix, const char* format,
                                                                   ...);

/// Throws `Exception<2>` with a fixed message.
[[noreturn]] VORN_API VORN_COLD void throwInternalAssert(const ExceptionString& file, const ExceptionString& function,
                                                         const ExceptionString& lineString, unsigned int line,
                                                         const ExceptionString& message);

/// Throws `Exception<2>` with a message of `prefix` and at most 4095 bytes that are formatted as by `printf`. Calls
/// `abort` if memory ends.
[[noreturn]] VORN_API
    VORN_COLD VORN_PRINTF(6, 7) void throwInternalAssert(const ExceptionString& file, const ExceptionString& function,
                                                         const ExceptionString& lineString, unsigned int line,
                                                         const ExceptionString& prefix, const char* format, ...);

} // namespace Vorn
