#include "Picture.h"

#include "NumberText.h"

#include <Vorn/Text/CodePoints.h>
#include <Vorn/Text/TextBuilder.h>
#include <Vorn/Text/TextChange.h>
#include <Vorn/Text/TextConversion.h>
#include <Vorn/Text/TextNumbers.h>

#include <algorithm>

namespace {

using Vorn::FloatRect;
using Vorn::Vector2;

constexpr float CORNER_RADIUS = 7.0f;

std::string coordinate(float value) { return shortText(value, 2); }

std::string point(const Vector2& at) { return coordinate(at.x) + " " + coordinate(at.y); }

std::string colourText(unsigned int colour) {
    return toUTF8(Vorn::concat('#', toUpperASCII(padStart(Vorn::toText(colour, 16), 6, U'0'))));
}

std::string escaped(const Vorn::String& name) {
    return toUTF8(replaceAll(replaceAll(replaceAll(name, "&", "&amp;"), "<", "&lt;"), ">", "&gt;"));
}

// Approximate widths in font sizes, because no font is available. East Asian letters and emoji are square.
constexpr float LETTER_WIDTH = 0.6f;
constexpr float SQUARE_WIDTH = 1.0f;

float estimateWidth(const Vorn::String& name) {
    float width = 0.0f;
    for (const Vorn::UTF32Char code : codePoints(name))
        width += (code >= 0x2E80 && code < 0xFB00) || code >= 0x1F000 ? SQUARE_WIDTH : LETTER_WIDTH;
    return width;
}

// Returns true if white text has the better contrast, by the perceived brightness of red, green and blue.
bool isDark(unsigned int colour) {
    const unsigned int red = colour >> 16;
    const unsigned int green = colour >> 8 & 0xFF;
    const unsigned int blue = colour & 0xFF;
    return 299 * red + 587 * green + 114 * blue < 135000;
}

// The outline with round corners. Each corner is a curve that begins and ends one radius away from it.
std::string outline(const PlacedPanel& panel, float zoomedRadius) {
    const Vector2* const corners = panel.corners.corners;
    const Vector2 round[] = {corners[0], corners[2], corners[3], corners[1]}; // the corners are stored in columns
    std::string path;
    for (unsigned int i = 0; i < 4; ++i) {
        const Vector2& corner = round[i];
        const Vector2 before = corner + (round[(i + 3) % 4] - corner).normalisedCopy() * zoomedRadius;
        const Vector2 after = corner + (round[(i + 1) % 4] - corner).normalisedCopy() * zoomedRadius;
        path += (i == 0 ? "M" : " L") + point(before) + " Q" + point(corner) + " " + point(after);
    }
    return path + " Z";
}

// A text in the coordinates of the panel, which are rotated and scaled.
std::string label(const PlacedPanel& panel, const Vector2& at, float size, const std::string& attributes,
                  const std::string& text) {
    const float* const m = panel.toPage.m;
    std::string transform;
    for (const unsigned int column : {0u, 1u})
        for (const unsigned int row : {0u, 1u}) transform += shortText(m[3 * row + column], 4) + " ";
    return "    <text transform=\"matrix(" + transform + point(panel.toPage * at) + ")\" font-size=\"" +
           coordinate(size) + "\"" + attributes + ">" + text + "</text>\n";
}

std::string labels(const Panel& panel, const PlacedPanel& placed) {
    const FloatRect& area = placed.area;
    const std::string ink = isDark(panel.fill) ? " fill=\"#FFFFFF\"" : " fill=\"#1F2933\"";
    const std::string name = escaped(panel.name);
    const float textWidth = area.getWidth() * 0.9f;
    const float widest = textWidth / estimateWidth(panel.name);
    if (placed.holdsPanels) {
        const Vector2 at(area.left + 12.0f, area.top + 21.0f);
        return label(placed, at, std::min(15.0f, widest), ink + " font-weight=\"bold\"", name);
    }
    const float size = std::min({20.0f, widest, area.getHeight() * 0.34f});
    const std::string middle = ink + " text-anchor=\"middle\"";
    const Vector2 centre = area.getCenter();
    const std::string measures = shortText(area.getWidth(), 1) + " x " + shortText(area.getHeight(), 1);
    const float measuresSize = std::min(size * 0.6f, textWidth / (static_cast<float>(measures.size()) * LETTER_WIDTH));
    return label(placed, centre, size, middle, name) + label(placed, centre + Vector2(0.0f, size * 0.95f), measuresSize,
                                                             middle + " fill-opacity=\"0.7\"", measures);
}

std::string draw(const Panel& panel, const PlacedPanel& placed) {
    // The matrix rotates and scales equally in both directions, so the length of its first column is the scale.
    const float zoom = Vector2(placed.toPage.m[0], placed.toPage.m[3]).length();
    const float shorter = std::min(placed.area.getWidth(), placed.area.getHeight());
    const float radius = std::min(CORNER_RADIUS, shorter * 0.5f) * zoom;
    std::string text = "  <g>\n    <title>" + escaped(panel.name) + "</title>\n";
    text += "    <path d=\"" + outline(placed, radius) + "\" fill=\"" + colourText(panel.fill) +
            "\" stroke=\"#1F2933\" stroke-opacity=\"0.25\"/>\n";
    return text + labels(panel, placed) + "  </g>\n";
}

std::string rectangle(const FloatRect& rect, const std::string& attributes) {
    return "  <rect x=\"" + coordinate(rect.left) + "\" y=\"" + coordinate(rect.top) + "\" width=\"" +
           coordinate(rect.getWidth()) + "\" height=\"" + coordinate(rect.getHeight()) + "\" " + attributes + "/>\n";
}

} // namespace

std::string drawPicture(const PanelFile& file, const PanelLayout& layout) {
    const std::string width = coordinate(file.pageSize.x);
    const std::string height = coordinate(file.pageSize.y);
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                       width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + " " + height +
                       "\" font-family=\"sans-serif\">\n";
    text += "  <defs>\n"
            "    <pattern id=\"overlap\" width=\"6\" height=\"6\" patternUnits=\"userSpaceOnUse\" "
            "patternTransform=\"rotate(45)\">\n"
            "      <rect width=\"2\" height=\"6\" fill=\"#D64545\" fill-opacity=\"0.4\"/>\n"
            "    </pattern>\n"
            "  </defs>\n";
    text += rectangle(layout.page, "fill=\"" + colourText(file.pageFill) + "\"");
    for (std::size_t i = 0; i < file.panels.size(); ++i)
        if (layout.panels[i].hasRoom()) text += draw(file.panels[i], layout.panels[i]);
    for (std::size_t i = 0; i < file.panels.size(); ++i)
        if (file.panels[i].turn != 0.0f)
            text += rectangle(layout.panels[i].box,
                              "fill=\"none\" stroke=\"#1F2933\" stroke-opacity=\"0.45\" stroke-dasharray=\"4 3\"");
    for (const Overlap& overlap : layout.overlaps)
        text += rectangle(overlap.common, "fill=\"url(#overlap)\" stroke=\"#D64545\" stroke-opacity=\"0.6\"");
    return text + "</svg>\n";
}
