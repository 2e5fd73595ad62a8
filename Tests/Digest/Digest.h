// Digest: a hash of results that must be the same on every platform, with every compiler and at every optimisation
// level. Each area of the library has a function that adds its results over fixed input; Main.cpp compares the hashes
// with Digest.txt.
//
// What differs by platform is not added: sizes and hashes of the type size_t, results of the type wchar_t, `char` and
// `long`, addresses, sign and payload of a NaN, paths and lines of failures, integers and hexadecimal floats that are
// printed into units of UTF-16 (whose halves depend on the byte order), and printDec with FLOAT_EXPONENT_AUTO (which
// the standard library formats).
#pragma once

#include "Vorn/Exception.h"
#include "Vorn/Text/TextView.h"
#include "Vorn/Vector2.h"

#include <cstdint>
#include <cstring>
#include <exception>
#include <string_view>
#include <type_traits>

class Digest {
public:
    std::uint64_t value() const { return m_hash; }

    /// Adds integers, as 64 bits.
    template <class Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
    void add(Integer number) {
        static_assert(!std::is_same_v<Integer, char>, "its sign differs by platform");
        std::uint64_t bits = static_cast<std::uint64_t>(static_cast<std::int64_t>(number));
        if (std::is_unsigned_v<Integer>) bits = static_cast<std::uint64_t>(number);
        for (int i = 0; i < 8; ++i, bits >>= 8) addByte(static_cast<unsigned char>(bits & 0xFF));
    }

    /// Adds the bits of floats.
    void add(float number) { addFloat<std::uint32_t>(number); }
    void add(double number) { addFloat<std::uint64_t>(number); }
    void add(const Vorn::XYPairBase<float>& pair) { addAll(pair.x, pair.y); }

    /// Adds the length and the units of texts.
    void add(std::string_view text) { addText<unsigned char>(text); }
    void add(std::u16string_view text) { addText<std::uint16_t>(text); }
    void add(std::u32string_view text) { addText<std::uint32_t>(text); }
    void add(const char* text) { add(std::string_view(text)); }
    template <class Text, std::enable_if_t<std::is_base_of_v<Vorn::String, Text>, int> = 0>
    void add(const Text& text) {
        addView(text);
    }
    void addView(Vorn::TextView text) {
        add(text.isUTF8());
        add(text.getLength());
        for (unsigned int i = 0; i < text.getLength(); ++i)
            text.isUTF8() ? add(text.getUTF8()[i]) : add(static_cast<std::uint16_t>(text.getUTF16()[i]));
    }

    template <class... Values>
    void addAll(const Values&... values) {
        (add(values), ...);
    }

    /// Adds what `run` returns, or the failure that it throws.
    template <class Callable>
    void addOutcome(Callable&& run) {
        try {
            if constexpr (std::is_void_v<decltype(run())>)
                run();
            else
                add(run());
            add(0);
        } catch (const Vorn::AllExceptions& failure) {
            addAll(failure.getCode(), failure.getMessage(), failure.getFunction(), failure.getType());
        }
    }

private:
    // FNV-1a.
    void addByte(unsigned char byte) { m_hash = (m_hash ^ byte) * 0x100000001B3; }

    template <class Bits, class Float>
    void addFloat(Float number) {
        Bits bits = 0;
        if (number == number)
            std::memcpy(&bits, &number, sizeof bits);
        else
            add("NaN");
        add(bits);
    }

    template <class Unit, class View>
    void addText(View text) {
        add(static_cast<std::uint64_t>(text.size()));
        for (const auto unit : text) add(static_cast<Unit>(unit));
    }

    std::uint64_t m_hash = 0xCBF29CE484222325;
};

/// The areas.
void digestBatches(Digest& digest);
void digestCharacters(Digest& digest);
void digestConversions(Digest& digest);
void digestEdits(Digest& digest);
void digestEvents(Digest& digest);
void digestFailures(Digest& digest);
void digestFloats(Digest& digest);
void digestFormats(Digest& digest);
void digestGeometry(Digest& digest);
void digestIntegers(Digest& digest);
void digestOrders(Digest& digest);
void digestPieces(Digest& digest);
void digestRecords(Digest& digest);
void digestSearches(Digest& digest);
void digestTrees(Digest& digest);
void digestValidation(Digest& digest);
