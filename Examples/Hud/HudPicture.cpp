#include "HudPicture.h"

#include <Vorn/Vorn.h>

#include <algorithm>

namespace {

using Vorn::FloatRect;
using Vorn::String;
using Vorn::TextBuilder;
using Vorn::TextView;

String escaped(TextView text) {
    return replaceAll(replaceAll(replaceAll(text, "&", "&amp;"), "<", "&lt;"), "\"", "&quot;");
}

// An approximate width in font sizes, because no font is available. East Asian characters and emoji are square.
float estimateWidth(TextView text) {
    float width = 0.0f;
    for (const Vorn::UTF32Char c : codePoints(text)) {
        const bool isPartOfEmoji = c == 0x200D || c == 0xFE0F;
        if (!isPartOfEmoji) width += (c >= 0x2E80 && c < 0xFB00) || c >= 0x1F000 ? 1.0f : 0.6f;
    }
    return width;
}

void drawRect(TextBuilder& svg, const FloatRect& rect, TextView colour, TextView attributes) {
    svg.append("  <rect x=\"", rect.left, "\" y=\"", rect.top, "\" width=\"", rect.getWidth(), "\" height=\"",
               rect.getHeight(), "\" fill=\"#", colour, "\" ", attributes, "/>\n");
}

void drawWidget(TextBuilder& svg, const Hud& hud, const Widget& widget) {
    const FloatRect& area = widget.area;
    const auto fill = hud.colours.find(widget.fill);
    const bool isGauge = widget.level.has_value();
    if (fill != hud.colours.end()) {
        const String colour = colourText(fill->second);
        drawRect(svg, area, colour,
                 isGauge ? "rx=\"5\" fill-opacity=\"0.35\"" : "rx=\"5\" stroke=\"#FFFFFF\" stroke-opacity=\"0.3\"");
        if (isGauge) {
            FloatRect full = area;
            full.right = area.left + area.getWidth() * *widget.level;
            drawRect(svg, full, colour, "rx=\"5\"");
        }
    }
    if (widget.label.isEmpty()) return;
    const bool isAtTop = widget.getChildCount() > 0;
    const float size =
        std::min({16.0f, area.getHeight() * 0.7f, area.getWidth() * 0.92f / estimateWidth(widget.label)});
    const Vorn::Vector2 centre = area.getCenter();
    svg.append("  <text x=\"", centre.x, "\" y=\"", isAtTop ? area.top + 22.0f : centre.y + size * 0.35f,
               "\" font-size=\"", size, "\">", escaped(widget.label), "</text>\n");
}

} // namespace

String drawPicture(const Hud& hud) {
    const FloatRect& screen = hud.screen->area;
    TextBuilder svg;
    svg.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"",
               screen.getWidth(), "\" height=\"", screen.getHeight(),
               "\" font-family=\"sans-serif\" text-anchor=\"middle\">\n"
               "  <style>text { fill: #FFFFFF; }</style>\n");
    drawRect(svg, screen, "0B1026", "");
    for (const Widget& widget : std::as_const(*hud.screen).depthFirst())
        if (widget.getParent()) drawWidget(svg, hud, widget);
    svg.append("</svg>\n");
    return svg.take();
}
