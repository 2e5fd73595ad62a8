#include "PanelFile.h"

#include "../TextReport/TextFile.h"
#include "LineReader.h"

#include <Vorn/Exception.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

using Vorn::FloatRect;
using Vorn::Vector2;

constexpr float FARTHEST = 10000.0f; // pixels
constexpr std::size_t DEEPEST = 8;   // nested panels; with zooms up to 10 no float overflows

unsigned int readPin(LineReader& reader) {
    namespace Pin = Vorn::RectPoint;
    constexpr struct {
        std::string_view name;
        unsigned int pin;
    } PINS[] = {{"centre", Pin::CENTRE},
                {"left", Pin::LEFT},
                {"top", Pin::TOP},
                {"right", Pin::RIGHT},
                {"bottom", Pin::BOTTOM},
                {"top-left", Pin::TOP_LEFT},
                {"top-right", Pin::TOP_RIGHT},
                {"bottom-left", Pin::BOTTOM_LEFT},
                {"bottom-right", Pin::BOTTOM_RIGHT}};
    const std::string_view word = reader.word();
    for (const auto& known : PINS)
        if (known.name == word) return known.pin;
    throw LineError("there is no pin \"" + std::string(word) + "\"");
}

Vector2 readVector(LineReader& reader, float least, float most) {
    const float x = reader.number(least, most);
    return {x, reader.number(least, most)};
}

void readProperty(LineReader& reader, Panel& panel) {
    const std::string_view word = reader.word();
    if (word == "share") {
        const Vector2 leftTop = readVector(reader, -1.0f, 2.0f);
        panel.share = FloatRect(leftTop, readVector(reader, -1.0f, 2.0f));
        if (!panel.share.isNormalised()) throw LineError("the share ends before it begins");
    } else if (word == "gap") {
        panel.gap = reader.number(0.0f, FARTHEST);
    } else if (word == "size") {
        panel.size = readVector(reader, 1.0f, FARTHEST);
    } else if (word == "pin") {
        panel.pin = readPin(reader);
    } else if (word == "offset") {
        panel.offset = readVector(reader, -FARTHEST, FARTHEST);
    } else if (word == "inset") {
        panel.inset = reader.number(0.0f, FARTHEST);
    } else if (word == "turn") {
        panel.turn = reader.number(-360.0f, 360.0f);
    } else if (word == "zoom") {
        panel.zoom = reader.number(0.1f, 10.0f);
    } else if (word == "fill") {
        panel.fill = reader.colour();
    } else {
        throw LineError("there is no property \"" + std::string(word) + "\"");
    }
}

void readPage(LineReader& reader, PanelFile& file) {
    const unsigned int width = reader.number(1u, 10000u);
    const unsigned int height = reader.number(1u, 10000u);
    unsigned int fill = file.pageFill;
    if (!reader.isAtEnd()) {
        if (reader.word() != "fill") throw LineError("a page has a width, a height and at most a fill");
        fill = reader.colour();
    }
    if (!reader.isAtEnd()) throw LineError("a page has a width, a height and at most a fill");
    file.pageSize = Vector2(static_cast<float>(width), static_cast<float>(height));
    file.pageFill = fill;
}

// The open panel at each depth; no value if its line was skipped.
using OpenPanels = std::vector<std::optional<std::size_t>>;

void readPanel(LineReader& reader, std::size_t depth, Panel panel, PanelFile& file, OpenPanels& open) {
    if (depth >= DEEPEST) throw LineError("it lies inside too many panels");
    if (depth > 0) {
        panel.outer = open[depth - 1];
        if (!panel.outer) throw LineError("the panel around it was skipped");
    }
    panel.name = reader.name();
    while (!reader.isAtEnd()) readProperty(reader, panel);
    file.panels.push_back(panel);
    open[depth] = file.panels.size() - 1;
}

// Throws `Exception<7>` for a text that is not UTF-8.
void validate(std::string_view text) {
    if (!text.empty())
        Vorn::String(text.data(), static_cast<unsigned int>(text.size()), Vorn::STRING_DATA_EXTERNAL, false);
}

void readLine(std::string_view text, unsigned int line, PanelFile& file, OpenPanels& open) {
    LineReader reader(text);
    const std::size_t blanks = reader.skipBlanks();
    const std::size_t depth = blanks / 2;
    LineReader page = reader;
    if (page.isAtEnd()) {
        validate(text);
    } else if (page.word() == "page") {
        validate(text);
        readPage(page, file);
    } else {
        if (depth > open.size()) throw LineError("there is no panel around it: the line stands too far right");
        open.resize(depth);
        open.emplace_back(); // set when the panel has been read: a failure before that also skips its inner panels
        validate(text);
        if (blanks % 2 != 0) throw LineError("it begins with an odd number of blanks");
        Panel panel;
        panel.line = line;
        readPanel(reader, depth, panel, file, open);
    }
}

} // namespace

PanelFile readPanelFile(const std::filesystem::path& path) {
    TextFile source = readTextFile(path);
    if (source.isUTF16) throw std::runtime_error(path.string() + ": UTF-16, where UTF-8 is expected");
    PanelFile file;
    file.text = std::move(source.utf8);

    std::string_view rest(reinterpret_cast<const char*>(file.text.data()), file.text.size() - 1);
    OpenPanels open;
    for (unsigned int line = 1; !rest.empty(); ++line) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view text = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
        try {
            readLine(text, line, file, open);
        } catch (const Vorn::Exception<Vorn::E::UNICODE>& exception) {
            file.skipped.push_back({line, std::string("not UTF-8: ") + exception.getMessage()});
        } catch (const LineError& error) {
            file.skipped.push_back({line, error.what()});
        }
    }
    return file;
}
