// NumberText: numbers as text for the picture and the report.
#pragma once

#include <string>

/// The value with `precision` digits behind the point, and no sign if all digits are zero.
std::string fixedText(float value, unsigned int precision);

/// The same without zeros at the end: "12.5", "3".
std::string shortText(float value, unsigned int precision);
