// NumberText: numbers as text for the picture and the report.
#pragma once

#include <string>

/// The value with `precision` digits after the point, without a sign if all digits are zero.
std::string fixedText(float value, unsigned int precision);

/// The value without trailing zeros: "12.5", "3".
std::string shortText(float value, unsigned int precision);
