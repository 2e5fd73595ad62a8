// Texts, numbers and geometry in streams.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/FloatRect.h"
#include "Vorn/GeometryStreams.h"
#include "Vorn/Matrix3.h"
#include "Vorn/Text/TextStreams.h"

#include <iomanip>
#include <locale>
#include <sstream>

void digestFormats(Digest& digest) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    const auto addWritten = [&] {
        digest.add(stream.str());
        stream.str({});
    };
    for (const Vorn::String& string : sampleStrings()) {
        stream << std::setw(12) << std::left << Vorn::TextView(string) << '|' << std::setw(9) << std::right
               << std::setfill('*') << Vorn::TextView(string);
        addWritten();
    }
    const std::vector<float> floats = sampleFloats(60);
    for (std::size_t i = 0; i + 9 <= floats.size(); ++i) {
        const float* const f = floats.data() + i;
        if (f[0] == f[0] && f[1] == f[1] && f[2] == f[2] && f[3] == f[3]) {
            stream << Vorn::Vector2(f[0], f[1]) << Vorn::FloatRect(f[0], f[1], f[2], f[3]);
            addWritten();
        }
    }
    stream << Vorn::Matrix3::IDENTITY << Vorn::Matrix3(0.1f);
    addWritten();

    std::istringstream input("one  \u20AC\u00E9 two\r\nnext line\n\nlast");
    Vorn::String word;
    for (int i = 0; i < 2 && input >> word; ++i) digest.add(word);
    while (Vorn::getLine(input, word)) digest.add(word);
}
