#include "NumberText.h"

#include <Vorn/PrintFloat.h>
#include <Vorn/Text/TextConversion.h>
#include <Vorn/Text/TextPieces.h>
#include <Vorn/Text/TextSearch.h>

std::string fixedText(float value, unsigned int precision) {
    // Without a buffer the function returns the size, which is large for the largest floats.
    std::string text(
        Vorn::printDec(value, static_cast<unsigned char*>(nullptr), 0, precision, Vorn::FLOAT_EXPONENT_NONE), ' ');
    Vorn::printDec(value, text.data(), static_cast<unsigned int>(text.size()), precision, Vorn::FLOAT_EXPONENT_NONE);
    const bool isZero = Vorn::findNoneOf(text, "-0.") == Vorn::NOT_FOUND;
    return isZero ? toUTF8(Vorn::removePrefix(text, "-")) : text;
}

std::string shortText(float value, unsigned int precision) {
    const std::string text = fixedText(value, precision);
    return Vorn::contains(text, '.') ? toUTF8(Vorn::removeSuffix(Vorn::trimEnd(text, '0'), ".")) : text;
}
