// Layout: computes the layout of nested panels and draws it.
//
//     Layout [INPUT [OUTPUT]]
//
// INPUT is a text file in the format of PanelFile.h, by default the sample beside this source. OUTPUT is the SVG
// picture, by default Layout.svg. The program prints a report: the position of each panel, its share of the area of the
// outer panel and its box on the page; then overlaps, panels beyond the page and panels without space. It reports lines
// that cannot be read with their number and skips them. It returns 1 if a file cannot be read or written.
#include "NumberText.h"
#include "PanelFile.h"
#include "PanelLayout.h"
#include "Picture.h"

#include <Vorn/Text/TextBuilder.h>
#include <Vorn/Text/TextChange.h>
#include <Vorn/Text/TextConversion.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <system_error>

namespace {

using Vorn::FloatRect;

std::string inColumn(const std::string& text, unsigned int width) { return toUTF8(Vorn::padStart(text, width)); }

std::string sides(const FloatRect& rect, float factor, unsigned int precision, unsigned int width) {
    std::string text;
    for (unsigned int side = 0; side < 4; ++side) text += inColumn(fixedText(rect[side] * factor, precision), width);
    return text;
}

std::string sizeText(const Vorn::Vector2& size) { return fixedText(size.x, 1) + " x " + fixedText(size.y, 1); }

std::string nameOf(const Panel& panel) { return toUTF8(Vorn::concat('"', panel.name, '"')); }

void report(const PanelFile& file, const PanelLayout& layout) {
    std::cout << "panels: " << file.panels.size() << ", page: " << sizeText(file.pageSize)
              << ", lines skipped: " << file.skipped.size() << "\n\n"
              << "          size before       part of the area around it, %                  box on the page\n"
                 "line     turn and zoom    left     top   right  bottom     left      top    right   bottom   name\n";
    for (std::size_t i = 0; i < file.panels.size(); ++i) {
        const Panel& panel = file.panels[i];
        const PlacedPanel& placed = layout.panels[i];
        std::cout << inColumn(std::to_string(panel.line), 4) << inColumn(sizeText(placed.area.getSize()), 20)
                  << sides(placed.share, 100.0f, 1, 8) << sides(placed.box, 1.0f, 1, 9) << "   " << nameOf(panel)
                  << '\n';
    }
    std::cout << '\n';
    for (const Overlap& overlap : layout.overlaps)
        std::cout << "boxes overlap by " << sizeText(overlap.common.getSize()) << ": "
                  << nameOf(file.panels[overlap.first]) << " and " << nameOf(file.panels[overlap.second]) << '\n';
    for (std::size_t i = 0; i < file.panels.size(); ++i) {
        const PlacedPanel& placed = layout.panels[i];
        if (!placed.hasRoom()) std::cout << "no room: " << nameOf(file.panels[i]) << '\n';
        if (placed.hidden != FloatRect::ZERO)
            std::cout << "beyond the page by" << sides(placed.hidden, 1.0f, 1, 6)
                      << " (left, top, right, bottom): " << nameOf(file.panels[i]) << '\n';
    }
}

void write(const std::filesystem::path& path, const std::string& text) {
    std::ofstream output(path, std::ios::binary);
    output << text;
    output.close();
    if (!output)
        throw std::runtime_error("cannot write " + path.string() + ": " + std::generic_category().message(errno));
}

PanelFile read(const std::filesystem::path& path) {
    try {
        return readPanelFile(path);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(std::string("cannot read ") + error.what());
    }
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount > 3) {
        std::cerr << "Usage: Layout [INPUT [OUTPUT]]\n";
        return 1;
    }
    const std::filesystem::path input = argumentCount > 1 ? arguments[1] : LAYOUT_SAMPLE;
    const std::filesystem::path output = argumentCount > 2 ? arguments[2] : "Layout.svg";
    try {
        const PanelFile file = read(input);
        for (const SkippedLine& skipped : file.skipped)
            std::cerr << input.filename().string() << ':' << skipped.line << ": skipped: " << skipped.reason << '\n';
        const PanelLayout layout = layOut(file);
        write(output, drawPicture(file, layout));
        report(file, layout);
    } catch (const std::exception& exception) {
        std::cerr << "Layout: " << exception.what() << '\n';
        return 1;
    }
    return 0;
}
