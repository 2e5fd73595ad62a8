#include "Vorn/Text/TextStreams.h"

#include "Vorn/Private/TextDecoding.h"
#include "Vorn/Text/CodePoints.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/TextConversion.h"

#include <cxxabi.h> // abi::__forced_unwind
#include <istream>
#include <locale>
#include <ostream>
#include <string>

namespace Vorn {

namespace {

// Stores a text that was read. Sets the stream's `failbit` if it is malformed or missing.
bool store(std::istream& stream, bool isRead, const std::string& text, String& dest) {
    const MadeString made = isRead ? tryMakeString(text) : MadeString();
    if (!isRead || !made) {
        stream.setstate(std::ios_base::failbit);
        return false;
    }
    dest = made.text;
    return true;
}

// Calls `read`, which reads from the stream's buffer. As the functions of the standard library do, sets `badbit` for an
// exception and throws it again only if the stream throws for `badbit`. Returns true if there was none.
template <class Read>
bool readsFrom(std::istream& stream, Read read) {
    const auto setBadbit = [&] {
        try {
            stream.setstate(std::ios_base::badbit);
        } catch (const std::ios_base::failure&) { // the caller gets the exception of the buffer
        }
    };
    try {
        read();
        return true;
#ifdef __GLIBCXX__
    } catch (const abi::__forced_unwind&) { // the thread is being cancelled
        setBadbit();
        throw;
#endif
    } catch (...) {
        setBadbit();
        if (stream.exceptions() & std::ios_base::badbit) throw;
        return false;
    }
}

} // namespace

void TextStreams::write(std::ostream& stream, TextView text) {
    const std::string bytes = toUTF8(text);
    // The standard library counts bytes: the width grows by the bytes that are no characters of their own.
    const std::streamsize width = stream.width();
    if (width > 0) {
        const auto excess = static_cast<std::streamsize>(bytes.size()) - codePointCount(text);
        stream.width(width + excess);
    }
    stream << bytes;
}

bool TextStreams::readWord(std::istream& stream, String& word) {
    const std::istream::sentry sentry(stream);
    if (!sentry) return false;
    std::string text;
    constexpr int END = std::istream::traits_type::eof();
    int c = END;
    const bool isWhole = readsFrom(stream, [&] {
        std::streamsize left = stream.width() > 0 ? stream.width() : std::streamsize(0x7FFFFFFF);
        const auto& types = std::use_facet<std::ctype<char>>(stream.getloc());
        std::streambuf& buffer = *stream.rdbuf();
        for (c = buffer.sgetc(); c != END && !types.is(std::ctype_base::space, static_cast<char>(c));
             c = buffer.snextc()) {
            if (!VornPrivate::isTrailByte(static_cast<unsigned int>(c)) && left-- == 0) break;
            text.push_back(static_cast<char>(c));
        }
        stream.width(0);
    });
    if (!isWhole) return false;
    if (c == END) stream.setstate(std::ios_base::eofbit);
    return store(stream, !text.empty(), text, word);
}

bool TextStreams::readLine(std::istream& stream, String& line, char delimiter) {
    const std::istream::sentry sentry(stream, true);
    if (!sentry) return false;
    std::string text;
    constexpr int END = std::istream::traits_type::eof();
    int c = END;
    const bool isWhole = readsFrom(stream, [&] {
        std::streambuf& buffer = *stream.rdbuf();
        for (c = buffer.sbumpc(); c != END && static_cast<char>(c) != delimiter; c = buffer.sbumpc())
            text.push_back(static_cast<char>(c));
    });
    if (!isWhole) return false;
    if (c == END) stream.setstate(std::ios_base::eofbit);
    return store(stream, c != END || !text.empty(), text, line);
}

} // namespace Vorn
