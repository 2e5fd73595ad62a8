// ReportText: the file and function texts of failure reports, built at compile time. Support of Assert.h; not for
// direct use.
#pragma once

#include <cstddef>

namespace VornPrivate {

/// A terminated text of at most `Capacity` bytes that is built at compile time.
template <std::size_t Capacity>
struct FixedText {
    constexpr void append(char character) { characters[size++] = character; }
    constexpr void append(const char* text, int count) {
        for (int i = 0; i < count; ++i) append(text[i]);
    }
    constexpr void clear() {
        while (size > 0) characters[--size] = '\0';
    }

    char characters[Capacity + 1] = {};
    int size = 0;
};

constexpr bool startsWith(const char* text, const char* start) {
    while (*start && *text == *start) {
        ++text;
        ++start;
    }
    return !*start;
}

constexpr bool isIdentifierCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// The file text of a report, from the path that the compiler reports: the path without its extension. For a public
/// header it begins at the root of the repository ("Include/Vorn/String/StringData"), wherever the header is installed.
/// The build shortens the paths of sources.
///
/// `ownPath` is the path of this header. It shows the folder in which the public headers are.
template <std::size_t Size, std::size_t OwnSize = sizeof(__FILE__)>
constexpr FixedText<Size + 8> sourcePath(const char (&path)[Size], const char (&ownPath)[OwnSize] = __FILE__) {
    constexpr int LENGTH = int(Size) - 1;
    int name = 0;     // start of the file name
    int end = LENGTH; // index after the last character of the result
    for (int i = 0; i < LENGTH; ++i)
        if (path[i] == '/' || path[i] == '\\') name = i + 1;
    for (int i = LENGTH - 1; i > name; --i) {
        if (path[i] == '.') {
            end = i;
            break;
        }
    }

    FixedText<Size + 8> result;
    constexpr int OWN_NAME = sizeof("Private/ReportText.h") - 1;
    constexpr int LIBRARY = sizeof("Vorn/") - 1;
    constexpr int COMMON = int(OwnSize) - 1 - OWN_NAME; // length of the folder, "Vorn/" included
    int common = 0;
    while (common < COMMON && common < LENGTH && path[common] == ownPath[common]) ++common;
    const bool isPublicHeader = common == COMMON;
    if (isPublicHeader) result.append("Include/", 8);
    for (int i = isPublicHeader ? COMMON - LIBRARY : 0; i < end; ++i) result.append(path[i] == '\\' ? '/' : path[i]);
    return result;
}

/// Parses the description of a function by the compiler, such as "T Vorn::(anonymous namespace)::f<T>(int) [T = char]".
template <std::size_t Size>
class FunctionReader {
public:
    constexpr explicit FunctionReader(const char (&description)[Size]) : m_description(description) {}

    constexpr FixedText<Size + 1> qualifiedName() {
        int depth = 0; // of template brackets
        while (m_position < int(Size) - 1 && !m_complete) {
            const char c = m_description[m_position];
            if (depth == 0 && atWord("operator")) {
                readOperator();
            } else if (depth == 0 && atWord("decltype")) {
                skipDecltype();
            } else if (depth == 0 && atWord("(anonymous namespace)::")) {
                leaveScope("(anonymous namespace)::");
            } else if (depth == 0 && atWord("{anonymous}::")) {
                leaveScope("{anonymous}::");
            } else if (c == '<') {
                ++depth;
                ++m_position;
            } else if (c == '>') {
                --depth;
                ++m_position;
            } else if (depth > 0) {
                ++m_position;
            } else if (c == '(' && m_name.size == 0) {
                ++m_position; // the result is a pointer to a function or similar: "void (* f())(int)"
            } else if (c == '(') {
                m_complete = true;
            } else if (c == ' ' || c == '*' || c == '&') {
                m_name.clear(); // the characters so far belong to the result type
                ++m_position;
            } else {
                m_name.append(c);
                ++m_position;
            }
        }
        while (m_name.size > 0 && m_name.characters[m_name.size - 1] == ':') m_name.characters[--m_name.size] = '\0';
        return m_name;
    }

private:
    constexpr bool atWord(const char* word) const {
        if (!startsWith(m_description + m_position, word)) return false;
        if (!isIdentifierCharacter(*word)) return true;
        int length = 0;
        while (word[length]) ++length;
        return (m_position == 0 || !isIdentifierCharacter(m_description[m_position - 1])) &&
               !isIdentifierCharacter(m_description[m_position + length]);
    }

    // A function in an unnamed namespace is reported without namespaces.
    constexpr void leaveScope(const char* marker) {
        m_name.clear();
        for (; *marker; ++marker) ++m_position;
    }

    // A result type that is an expression: "decltype(auto) f()", "decltype ((a + b)) f(T, T)".
    constexpr void skipDecltype() {
        int depth = 0; // of parentheses
        do {
            const char c = m_description[m_position++];
            depth += c == '(' ? 1 : c == ')' ? -1 : 0;
        } while (m_position < int(Size) - 1 && (depth > 0 || m_description[m_position - 1] != ')'));
    }

    // Reads "operator", a blank and the symbol or type, up to the parameters.
    constexpr void readOperator() {
        m_name.append("operator ", 9);
        m_position += 8;
        while (m_description[m_position] == ' ') ++m_position;
        if (startsWith(m_description + m_position, "()")) {
            m_name.append("()", 2);
            m_position += 2;
        }
        while (m_position < int(Size) - 1 && m_description[m_position] != '(')
            m_name.append(m_description[m_position++]);
        m_complete = true;
    }

    const char* m_description;
    int m_position = 0;
    bool m_complete = false;
    FixedText<Size + 1> m_name;
};

/// The qualified name in the description of a function, without result, parameters and template arguments.
template <std::size_t Size>
constexpr FixedText<Size + 1> qualifiedName(const char (&description)[Size]) {
    return FunctionReader<Size>(description).qualifiedName();
}

} // namespace VornPrivate
