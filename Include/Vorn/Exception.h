// Exception: the one family of failures that this library raises.
//
// Every failure is an Exception<N>, caught as that, as AllExceptions or as std::exception. It says where and why
// something failed and prints itself as one line:
//
//     file:line: function: Exception: type:message
//
// Each exception reports itself once, when it is built, to the callback of AllExceptions::setLogCallback, before any
// handler runs. Without a callback the line is built only when it is first requested.
//
// Memory: reporting a failure never replaces it by `std::bad_alloc`. If memory ends, `what` returns a fixed text, the
// callback receives the line from a buffer of 1 KiB on the stack, and every other accessor works as always. Only a
// message that is made at run time (a formatted one, or an `ExceptionString` of joined or copied text) ends the process
// then.
//
// Threads: the callback is a plain pointer; set it before other threads raise. An exception belongs to one thread.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/ExceptionString.h"

#include <cstdarg>
#include <exception>
#include <type_traits>

namespace Vorn {

/// The codes of the exception family.
namespace E {
enum Code : int {
    ASSERT = 1,    ///< a check of something that the caller, or a member inlined into the caller, is responsible for
    INTERNAL = 2,  ///< an invariant of the library itself has failed
    PARAMETER = 4, ///< an argument is invalid
    UNICODE = 7    ///< a text is not valid in its encoding
};
} // namespace E

/// Base of the family: where and why something failed.
class VORN_API AllExceptions : public std::exception {
public:
    /// All texts null, line and code 0; reports ":0: : Exception: :".
    AllExceptions() noexcept : m_line(0), m_code(0) {}

    /// Shares the texts of `other`, also a report that it has built already. Does not log.
    AllExceptions(const AllExceptions& other) = default;

    /// As the copy constructor; the `std::exception` base stays as it is.
    AllExceptions& operator=(const AllExceptions& other);

    ~AllExceptions() override;

    /// The same as `getLogString`.
    const char* what() const noexcept override;

    /// The report in one line. It is built at the first call and kept, so later calls return the same pointer. If
    /// memory ends, or the line is longer than 2^31 - 1 bytes, returns "Vorn: out of memory while building the report";
    /// the exception is as before, and the next call tries again.
    const char* getLogString() const noexcept;

    const char* getType() const noexcept { return m_type.getString(); }         ///< such as "::Vorn::E::PARAMETER"
    const char* getMessage() const noexcept { return m_message.getString(); }   ///< null if the site gave none
    const char* getFile() const noexcept { return m_file.getString(); }         ///< source path without its ending
    const char* getFunction() const noexcept { return m_function.getString(); } ///< qualified, no parameters

    /// Always "__LINE__" where the library raises: the name of the macro, not a number. Take `getLine` for the number.
    const char* getLineString() const noexcept { return m_lineString.getString(); }

    unsigned int getLine() const noexcept { return m_line; } ///< line number of the site
    int getCode() const noexcept { return m_code; }          ///< N of `Exception<N>`

    /// Sets the function that receives each report, terminated, while its exception is being built; null for none. If
    /// memory ends, the report is cut at 1023 bytes and is valid for this call alone.
    /// @warning An exception that the callback throws leaves the failing site in place of the one being built.
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

    /// Makes the message: all of `prefix`, then the formatted text, of which at most 4095 bytes are kept. Calls `abort`
    /// if memory ends.
    VORN_PRINTF(3, 0)
    void printMessage(const ExceptionString& prefix, const char* format, std::va_list arguments);

    /// Passes the report to the callback if one is set. The constructors of `Exception<N>` end with it.
    void report() const;

    static void (*pLogCallback)(const char*);

    ExceptionString m_type;
    ExceptionString m_file;
    ExceptionString m_function;
    ExceptionString m_message;
    mutable ExceptionString m_logString; // null until somebody asks for the report
    ExceptionString m_lineString;
    unsigned int m_line;
    int m_code;

private:
    // Fills m_logString unless it is set already. Returns false if memory ends.
    bool tryBuildReport() const noexcept;
};

/// A failure of code N. The library raises `Exception<1>`, `<2>`, `<4>` and `<7>`; there are no others.
template <int N>
class VORN_API Exception : public AllExceptions {
public:
    /// A failure with a fixed message. Ends by reporting to the log callback.
    Exception(const ExceptionString& type, const ExceptionString& file, const ExceptionString& function,
              const ExceptionString& lineString, unsigned int line, const ExceptionString& message);

    /// A failure with the message `prefix` and then at most 4095 bytes formatted as by `printf`; for codes 1 and 2
    /// only. Ends by reporting to the log callback. Calls `abort` if memory ends.
    template <int Code = N, std::enable_if_t<Code == E::ASSERT || Code == E::INTERNAL, int> = 0>
    VORN_PRINTF(8, 9)
    Exception(const ExceptionString& type, const ExceptionString& file, const ExceptionString& function,
              const ExceptionString& lineString, unsigned int line, const ExceptionString& prefix, const char* format,
              ...);

    /// Shares all texts and does not report again.
    Exception(const Exception& other);
    Exception& operator=(const Exception& other) = default;

    ~Exception() override;
};

extern template class Exception<E::ASSERT>;
extern template class Exception<E::INTERNAL>;
extern template class Exception<E::PARAMETER>;
extern template class Exception<E::UNICODE>;

/// Raises `Exception<1>` with a fixed message.
[[noreturn]] VORN_API VORN_COLD void throwAssert(const ExceptionString& file, const ExceptionString& function,
                                                 const ExceptionString& lineString, unsigned int line,
                                                 const ExceptionString& message);

/// Raises `Exception<1>` with the message `prefix` and then at most 4095 formatted bytes. Calls `abort` if memory ends.
[[noreturn]] VORN_API VORN_COLD VORN_PRINTF(6, 7) void throwAssert(const ExceptionString& file,
                                                                   const ExceptionString& function,
                                                                   const ExceptionString& lineString, unsigned int line,
                                                                   const ExceptionString& prefix, const char* format,
                                                                   ...);

/// Raises `Exception<2>` with a fixed message.
[[noreturn]] VORN_API VORN_COLD void throwInternalAssert(const ExceptionString& file, const ExceptionString& function,
                                                         const ExceptionString& lineString, unsigned int line,
                                                         const ExceptionString& message);

/// Raises `Exception<2>` with the message `prefix` and then at most 4095 formatted bytes. Calls `abort` if memory ends.
[[noreturn]] VORN_API
    VORN_COLD VORN_PRINTF(6, 7) void throwInternalAssert(const ExceptionString& file, const ExceptionString& function,
                                                         const ExceptionString& lineString, unsigned int line,
                                                         const ExceptionString& prefix, const char* format, ...);

} // namespace Vorn
