#include "PanelLayout.h"

#include <Vorn/ComplexAngle.h>
#include <Vorn/Geometry.h>
#include <Vorn/Matrix3.h>

namespace {

using Vorn::ComplexAngle;
using Vorn::FloatRect;
using Vorn::Matrix3;
using Vorn::Vector2;
namespace Pin = Vorn::RectPoint;

// A rectangle that was reduced beyond its centre is replaced by its centre point.
FloatRect orPoint(const FloatRect& rect) { return rect.isNormalised() ? rect : FloatRect(rect.getCenter()); }

FloatRect shrunk(const FloatRect& rect, float width) {
    return orPoint(rect.inflatedCopy(-width, -width, Pin::CENTRE, Vector2::ZERO));
}

FloatRect areaOf(const Panel& panel, const FloatRect& given) {
    const FloatRect area = shrunk(given.applyRatioCopy(panel.share), panel.gap);
    return (panel.size ? Vorn::anchored(area, *panel.size, panel.pin) : area) + panel.offset;
}

FloatRect insideOf(const Panel& panel, FloatRect area) {
    area.add(0.0f, TITLE_HEIGHT, 0.0f, 0.0f);
    return shrunk(orPoint(area), panel.inset);
}

Matrix3 turnAbout(const Vector2& centre, float degrees, float zoom) {
    Matrix3 turn;
    turn.makeTransform(ComplexAngle(degrees * 0.017453292519943295f), Vector2(zoom), centre);
    Matrix3 toOrigin;
    toOrigin.makeTranslation(-centre);
    return turn * toOrigin;
}

PlacedPanel place(const Panel& panel, const FloatRect& given, const Matrix3& outerToPage, const FloatRect& page) {
    PlacedPanel placed;
    const FloatRect area = areaOf(panel, given);
    placed.area = area;
    placed.inside = insideOf(panel, area);
    placed.share = given.createRatioCopy(area);
    placed.toPage = outerToPage * turnAbout(area.getCenter(), panel.turn, panel.zoom);
    placed.corners = placed.toPage * Vorn::cornersOf(area);
    placed.box = Vorn::boundsOf(placed.corners);
    const FloatRect excess = placed.box - (placed.box & page);
    placed.hidden = FloatRect(-excess.left, -excess.top, excess.right, excess.bottom);
    return placed;
}

} // namespace

PanelLayout layOut(const PanelFile& file) {
    PanelLayout layout;
    layout.page = FloatRect(Vector2::ZERO, file.pageSize);
    for (const Panel& panel : file.panels) {
        if (panel.outer) {
            PlacedPanel& outer = layout.panels[*panel.outer];
            outer.holdsPanels = true;
            layout.panels.push_back(place(panel, outer.inside, outer.toPage, layout.page));
        } else {
            layout.panels.push_back(place(panel, layout.page, Matrix3::IDENTITY, layout.page));
        }
    }
    for (std::size_t second = 0; second < file.panels.size(); ++second) {
        for (std::size_t first = 0; first < second; ++first) {
            if (file.panels[first].outer != file.panels[second].outer) continue;
            const FloatRect &one = layout.panels[first].box, &other = layout.panels[second].box;
            if (Vorn::overlaps(one, other)) layout.overlaps.push_back({first, second, one & other});
        }
    }
    return layout;
}
