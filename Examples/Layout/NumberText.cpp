#include "NumberText.h"

#include <Vorn/PrintFloat.h>

std::string fixedText(float value, unsigned int precision) {
    // Without a buffer the function returns the size, which is large for the largest floats.
    std::string text(
        Vorn::printDec(value, static_cast<unsigned char*>(nullptr), 0, precision, Vorn::FLOAT_EXPONENT_NONE), ' ');
    Vorn::printDec(value, reinterpret_cast<unsigned char*>(text.data()), static_cast<unsigned int>(text.size()),
                   precision, Vorn::FLOAT_EXPONENT_NONE);
    if (text.find_first_not_of("-0.") == std::string::npos && text.front() == '-') text.erase(0, 1);
    return text;
}

std::string shortText(float value, unsigned int precision) {
    std::string text = fixedText(value, precision);
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') text.pop_back();
    }
    return text;
}
