#include "Faults/Operation.h"
#include "Vorn/Text/Name.h"
#include "Vorn/Text/TextNumbers.h"
#include "Vorn/Text/TextStreams.h"

#include <iostream>
#include <sstream>

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
        {"Name_LookUp",
         Outcome::ALLOCATES_NOTHING,
         {"Name::find"},
         [](Attempt& attempt) {
             attempt([] {
                 Vorn::Name::lookUp("known");
                 Vorn::Name::lookUp(u"unknown");
             });
         }},
        {"Name_LookUpLongText",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) {
             static const std::u16string text(300, u'a');
             attempt([] { Vorn::Name::lookUp(text); });
         }},
        {"Name_Intern",
         Outcome::THROWS,
         {"Name::intern"},
         [](Attempt& attempt) {
             static int count = 0;
             std::string text = "name that fails ";
             text += std::to_string(++count);
             attempt([&] { Vorn::Name{text}; }, [&] { EXPECT_EQ(Vorn::Name::lookUp(text), std::nullopt); });
         }},
        {"TextStreams_Write",
         Outcome::THROWS,
         {"TextStreams::write"},
         [](Attempt& attempt) {
             static const std::string text(100, 'x');
             attempt([] { Vorn::TextStreams::write(std::cout, text); });
             std::cout << std::endl;
         }},
        {"TextStreams_Read",
         Outcome::THROWS,
         {"TextStreams::readWord", "TextStreams::readLine"},
         [](Attempt& attempt) {
             std::istringstream stream("a_word_that_is_not_small another_word_that_is_not_small");
             stream.exceptions(std::ios_base::badbit); // otherwise only the bit is set
             Vorn::String word;
             attempt([&] {
                 stream >> word;
                 getLine(stream, word);
             });
         }},
    };
}
