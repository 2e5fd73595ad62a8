#include "Faults/Operation.h"
#include "Vorn/Text/TextNumbers.h"

std::vector<Operation> textNumberOperations() {
    return {
        {"TextNumbers_Parse",
         Outcome::ALLOCATES_NOTHING,
         {"NumberText::read", "NumberText::print", "NumberText::copy"},
         [](Attempt& attempt) {
             attempt([] {
                 char buffer[Vorn::NumberText::CAPACITY];
                 Vorn::parse<int>("-17");
                 Vorn::parse<bool>(u"true");
                 Vorn::parse<float>(u"-1.7e3");
                 Vorn::parse<double>("0x1.8p3");
                 Vorn::writeText(buffer, sizeof buffer, -17);
                 Vorn::writeText(buffer, sizeof buffer, true);
                 Vorn::writeText(buffer, sizeof buffer, 1.5f);
                 Vorn::writeText(buffer, sizeof buffer, 0.1);
             });
         }},
        {"TextNumbers_ParseLongText",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) {
             static const std::u16string digits(200, u'7');
             attempt([] { Vorn::parse<double>(digits); });
         }},
        {"TextNumbers_ToText",
         Outcome::THROWS,
         {"NumberText::makeString", "toFixedText(double, unsigned int)", "toHexText(double)"},
         [](Attempt& attempt) {
             attempt([] {
                 Vorn::toText(17);
                 Vorn::toFixedText(1.5, 2000);
                 Vorn::toHexText(1.5);
             });
         }},
    };
}
