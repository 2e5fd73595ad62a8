// Strings, their substrings, comparison, concatenation and editing, driven by a stream of bytes. Texts are checked
// against plain copies; what the library may refuse, it may refuse, and then nothing has changed.
#include "Vorn/String/Interop.h"
#include "Vorn/String/UTF8String.h"

#include "Support/ReclaimedLeak.h"
#include "Support/Stream.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <type_traits>
#include <vector>

namespace {

using namespace Vorn;

using Byte = unsigned char;

constexpr unsigned int ALL = 0xFFFFFFFF;
constexpr std::size_t MOST_STRINGS = 12;
constexpr std::size_t LONGEST_TEXT = 400;

class Machine {
public:
    explicit Machine(Stream stream) : m_stream(stream) {}

    void run() {
        while (!m_stream.ended()) step();
    }

private:
    // The library has raised one of its exceptions.
    struct Refused {};

    struct Edited {
        UTF8String string;
        std::string text;
    };

    // A text in its own block, with a unit behind it that a substring at the end reads.
    template <class CharType>
    void addString() {
        const unsigned int length = m_stream.next() % 24;
        CharType* const block = new CharType[length + 2]();
        for (unsigned int i = 0; i < length; ++i)
            block[i] = static_cast<CharType>(sizeof(CharType) == 1 ? m_stream.next() : m_stream.unit());
        try {
            const String string(block, length, STRING_DATA_DYNAMIC);
            m_strings.push_back(string);
        } catch (const Exception<7>&) {
            delete[] block;
        }
    }

    template <class CharType>
    void takeSubstring(const String& string) {
        const int offset = static_cast<int>(m_stream.next()) - 40;
        const unsigned int length = m_stream.next() % 64;
        const StringData& data = *string.getData();
        const bool isAtHand = data.getPrivateBuffer<CharType>() != nullptr;
        const String result(reclaimingUnits([&] { return data.substr<CharType>(offset, length < 60 ? length : ALL); }));
        const unsigned int found = result.getData()->getBufferInfo<CharType>().m_length;
        require(found <= data.getBufferInfo<CharType>().m_length || !isAtHand, "a substring is longer than its parent");
        if (isAtHand && found != 0) {
            const CharType* const buffer = data.getPrivateBuffer<CharType>();
            const unsigned int start = static_cast<unsigned int>(
                offset < 0 ? offset + static_cast<int>(data.getBufferInfo<CharType>().m_length) : offset);
            require(std::equal(buffer + start, buffer + start + found, result.getData()->getPrivateBuffer<CharType>()),
                    "a substring has another text");
        }
        m_strings.push_back(result);
    }

    // Runs what leaks its block of units when it raises.
    template <class Callable>
    auto reclaimingUnits(Callable&& run) {
        ReclaimedLeak leak;
        bool isRefused = false;
        std::invoke_result_t<Callable> result{};
        leak.start();
        try {
            result = run();
        } catch (const AllExceptions&) {
            isRefused = true;
        }
        leak.stop();
        if (isRefused) {
            leak.freeBlocks([](void* block) { delete[] static_cast<Byte*>(block); });
            throw Refused();
        }
        return result;
    }

    void compare(const String& a, const String& b) {
        require((a == b) == (b == a), "equality has a direction");
        require((a != b) == !(a == b), "inequality is not the negation");
        require((a <= b) == !(b < a) && (a > b) == (b < a), "the operators disagree");
        require(!(a == b) || a.getCharset() == b.getCharset(), "equal texts of two charsets");
        const bool inUTF8 = a.getData()->getPrivateBuffer<Byte>() && b.getData()->getPrivateBuffer<Byte>();
        require(!inUTF8 || (a < b) + (b < a) + (a == b) == 1, "texts in UTF-8 have no order");
    }

    void ask(const String& string) {
        const signed char needle[] = {static_cast<signed char>(m_stream.next() % 127 + 1), 0};
        const bool found = string.contains(reinterpret_cast<const char*>(needle));
        require(found == (string.count(needle[0]) != 0), "count and contains disagree");
        string.startsWith(needle);
        string.endsWith(needle);
        string.equals(needle);
        string.getUnicodeCharAt(static_cast<int>(m_stream.next()) - 128);
        string.getUnicodeLength();
        hashOf(string);
    }

    void join(std::size_t index, const String& other) {
        String& string = m_strings[index];
        StringData* const record = string.getData();
        const unsigned int count = record->getRefCount();
        try {
            reclaimingUnits([&] { return &(string += other); });
        } catch (const Refused&) {
            // The reference that a refused handle has lost while another handle keeps the record.
            if (string.getData() == record && record->getRefCount() < count) record->incRefCount();
            if (!string.getData()) m_strings.erase(m_strings.begin() + static_cast<std::ptrdiff_t>(index));
            throw;
        }
    }

    void edit(Edited& edited) {
        UTF8String& string = edited.string;
        std::string& text = edited.text;
        const int index = static_cast<int>(m_stream.next() % 48) - 4;
        const unsigned int length = m_stream.next() % 16;
        const unsigned int c = m_stream.unit();
        const std::size_t start = index < 0 ? text.size() : static_cast<std::size_t>(index);
        switch (m_stream.next() % 6) {
        case 0:
            string.append(c);
            text.append(view(string).substr(text.size()));
            require(string.getLength() == text.size(), "an append has another length");
            break;
        case 1:
            string.insert('i', index);
            text.insert(start, 1, 'i');
            break;
        case 2:
            string.replace('r', index, length);
            text.replace(start, length, 1, 'r');
            break;
        case 3:
            string.erase(index, length);
            if (length != 0) text.erase(static_cast<std::size_t>(index < 0 ? index + int(text.size()) : index), length);
            break;
        case 4: {
            const String copy = string;
            string.replace(copy, index, length);
            text.replace(start, length, std::string(text));
            break;
        }
        default:
            string.reserve(length * 4);
            string.appendDecimal(c % 1000);
            text += std::to_string(c % 1000);
            break;
        }
    }

    void search(const Edited& edited) {
        const UTF8String& string = edited.string;
        const int index = static_cast<int>(m_stream.next() % 32) - 8;
        const unsigned int c = m_stream.unit();
        const unsigned int n = string.getLength();
        require(string.find(c, index) <= n, "found behind the end");
        require(string.skip(c, index) <= n, "skipped behind the end");
        require(string.find(ASCIITable::getSpaceTable(), index) <= n, "found behind the end");
        require(string.skip(ASCIITable::getSpaceTable(), index) <= n, "skipped behind the end");
        string.match(ASCIITable::getSpaceTable(), index);
        require(string.find(view(string).substr(n / 2).data(), 0) <= n, "found behind the end");
        for (unsigned int i = 0; i < n;) {
            const unsigned int next = string.next(i);
            require(next > i && next <= n, "no step forwards");
            i = next;
        }
        string.previous(static_cast<unsigned int>(index) % 64);
    }

    // The bytes of a text may end in a string, where an edit fails, but never change.
    void check(const Edited& edited) const {
        require(view(edited.string) == edited.text, "an edited text differs from its copy");
        require(!edited.string.getData()->getBufferInfo<Byte>().m_nullTerminated ||
                    edited.string.getBuffer()[edited.text.size()] == 0,
                "the terminator is missing");
    }

    void step() {
        try {
            const unsigned int operation = m_stream.next() % 12;
            if (operation < 2 || m_strings.empty()) {
                if (m_strings.size() >= MOST_STRINGS) m_strings.pop_front();
                if (operation == 0)
                    addString<Byte>();
                else
                    addString<UTF16Char>();
                return;
            }
            const std::size_t index = m_stream.next() % m_strings.size();
            const String string = m_strings[index];
            const String other = m_strings[m_stream.next() % m_strings.size()];
            const bool isBelowLimit = m_strings.size() < MOST_STRINGS;
            Edited* const edited = m_edited.empty() ? nullptr : &m_edited[m_stream.next() % m_edited.size()];
            switch (operation) {
            case 2:
                if (isBelowLimit) takeSubstring<Byte>(string);
                break;
            case 3:
                if (isBelowLimit) takeSubstring<UTF16Char>(string);
                break;
            case 4: compare(string, other); break;
            case 5: ask(string); break;
            case 6:
                if (view(string).size() + view(other).size() < LONGEST_TEXT) join(index, other);
                break;
            case 7: m_strings.erase(m_strings.begin() + static_cast<std::ptrdiff_t>(index)); break;
            case 8:
                string.getCString();
                string.getData()->getTerminatedBuffer<UTF16Char>();
                break;
            case 9: {
                if (m_edited.size() >= 4) m_edited.pop_front();
                UTF8String copy(string);
                copy.reserve(0); // its own, so that no substring uses a block that is edited in place
                m_edited.push_back({copy, std::string(view(copy))});
                break;
            }
            case 10:
                if (edited && edited->text.size() < LONGEST_TEXT) {
                    // Half of the time another handle refers to the text, which then must not change.
                    const std::string before = edited->text;
                    const String holder = m_stream.next() % 2 ? edited->string : String();
                    try {
                        edit(*edited);
                    } catch (const AllExceptions&) {
                        check(*edited);
                        require(holder.isNull() || holder == before, "a refused edit changed another's text");
                        throw;
                    }
                    check(*edited);
                    require(holder.isNull() || holder == before, "an edit changed another's text");
                }
                break;
            default:
                if (edited) search(*edited);
                break;
            }
        } catch (const Refused&) {
        } catch (const AllExceptions&) {
        }
    }

    Stream m_stream;
    std::deque<String> m_strings;
    std::deque<Edited> m_edited;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Machine(Stream(data, size)).run();
    return 0;
}
