// Compiles and runs the code of Documentation/Geometry.md, and checks its picture and its sentences.
#include "Vorn/Vorn.h"

#include "Support/GuidePage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace Vorn;

const GuidePage& page() {
    static const GuidePage geometry(VORN_GUIDES "Geometry.md");
    return geometry;
}

std::string written(const FloatRect& rect) {
    std::ostringstream stream;
    stream << rect;
    return stream.str();
}

std::string written(const Vector2& vec) {
    std::ostringstream stream;
    stream << vec;
    return stream.str();
}

TEST(GeometryGuide, EachBlockOfCodeIsCompiledHere) {
    expectCodeStandsIn(VORN_GUIDE_TESTS "GeometryGuideTest.cpp", page());
}

TEST(GeometryGuide, Points) {
    const Vector2 from(10.0f, 20.0f);
    const Vector2 to(13.0f, 24.0f);
    const Vector2 way = to - from;
    const float distance = exactLength(way);        // 5
    const Vector2 direction = exactNormalised(way); // (0.6, 0.8)
    const Vector2 middle = from.midPoint(to);       // (11.5, 22)
    const Vector2 step = from + direction * 2.5f;   // (11.5, 22)
    EXPECT_EQ(distance, 5.0f);
    EXPECT_EQ(written(direction), "(0.6, 0.8)");
    EXPECT_EQ(written(middle), "(11.5, 22)");
    EXPECT_EQ(written(step), "(11.5, 22)");

    VORN_ALLOW_SURPRISES_BEGIN
    EXPECT_NE(Vector2::ZERO.length(), 0.0f);
    for (float x = 1.0f; x < 4.0f; x += 0.01f) EXPECT_NEAR(Vector2(x, 0.0f).length() / x, 1.0f, 0.002f);
    VORN_ALLOW_SURPRISES_END
}

TEST(GeometryGuide, Rotations) {
    const ComplexAngle turn(0.5f); // radians
    const Vector2 turned = turn * Vector2::UNIT_X;
    const ComplexAngle twice = turn * turn;   // 1 radian: angles are added by *
    const ComplexAngle back = turn.inverse(); // -0.5 radians
    EXPECT_EQ(turned, Vector2(float(std::cos(0.5)), float(std::sin(0.5))));
    EXPECT_GT(turned.y, 0.0f) << "from the x axis to the y axis";
    EXPECT_NEAR(std::atan2(twice.y, twice.x), 1.0, 1e-6);
    EXPECT_NEAR(std::atan2(back.y, back.x), -0.5, 1e-6);
}

TEST(GeometryGuide, Matrices) {
    Matrix3 shift = Matrix3::IDENTITY;
    shift.makeTranslation(100.0f, 0.0f);
    const Matrix3 grow = Matrix3::IDENTITY.scaledCopy(2.0f, 2.0f);
    const Vector2 point(1.0f, 1.0f);
    const Vector2 grownFirst = shift * grow * point; // (102, 2)
    const Vector2 movedFirst = grow * shift * point; // (202, 2)
    EXPECT_EQ(written(grownFirst), "(102, 2)");
    EXPECT_EQ(written(movedFirst), "(202, 2)");

    const ComplexAngle turn(0.5f);
    Matrix3 local = Matrix3::IDENTITY;
    local.makeTransform(turn, Vector2(2.0f, 2.0f), Vector2(100.0f, 0.0f)); // scales, then rotates, then moves
    const std::optional<Matrix3> toLocal = inverseAtAnyScale(local);       // empty if there is no inverse
    const Vector2 expected = turn * (point * 2.0f) + Vector2(100.0f, 0.0f);
    const Vector2 transformed = local * point;
    EXPECT_LT(exactLength(transformed - expected), 1e-4f);
    ASSERT_TRUE(toLocal);
    EXPECT_LT(exactLength(*toLocal * transformed - point), 1e-4f);

    VORN_ALLOW_SURPRISES_BEGIN
    EXPECT_EQ(point * shift, point) << "the translation is ignored";
    EXPECT_EQ(written(grow.translatedCopy(100.0f, 0.0f) * point), "(102, 2)") << "not scaled";
    Matrix3 inverse = Matrix3::IDENTITY;
    inverse.makeInverseTransform(turn, Vector2(2.0f, 2.0f), Vector2(100.0f, 0.0f));
    EXPECT_GT(exactLength(inverse * transformed - point), 1.0f);
    VORN_ALLOW_SURPRISES_END
    const Matrix3 small = Matrix3::IDENTITY.scaledCopy(0x1p-12f, 0x1p-11f); // a determinant of 2 to the power -23
    EXPECT_THROW(small.inversedCopy(), Exception<2>);
    EXPECT_NO_THROW(Matrix3::IDENTITY.scaledCopy(0x1p-11f, 0x1p-11f).inversedCopy());
    EXPECT_TRUE(inverseAtAnyScale(small));
}

TEST(GeometryGuide, RectanglesAndBounds) {
    const FloatRect panel(0.0f, 0.0f, 320.0f, 200.0f); // left, top, right, bottom
    const FloatRect moved = panel + Vector2(300.0f, 20.0f);
    const FloatRect both = panel | moved;              // (0, 0, 620, 220)
    const FloatRect common = panel & moved;            // (300, 20, 320, 200)
    const bool isShared = overlaps(panel, moved);      // true; touching edges are no overlap
    const bool isHit = panel.isInside(320.0f, 200.0f); // true; the edges are inside
    const Vector2 size = common.size();                // (20, 180)
    EXPECT_EQ(written(both), "(0, 0, 620, 220)");
    EXPECT_EQ(written(common), "(300, 20, 320, 200)");
    EXPECT_TRUE(isShared && isHit);
    EXPECT_FALSE(overlaps(panel, panel + Vector2(320.0f, 0.0f)));
    EXPECT_EQ(written(size), "(20, 180)");
    EXPECT_FALSE((panel & (panel + Vector2(400.0f, 0.0f))).isNormalised());

    const FloatRect half = panel.applyRatioCopy(0.5f, 0.0f, 1.0f, 1.0f); // (160, 0, 320, 200)
    EXPECT_EQ(written(half), "(160, 0, 320, 200)");

    Matrix3 local = Matrix3::IDENTITY;
    local.makeTransform(ComplexAngle(0.0f, 1.0f), Vector2(2.0f, 2.0f), Vector2(100.0f, 0.0f));
    const std::vector<Vector2> points = {{3.0f, 1.0f}, {-2.0f, 4.0f}, {0.0f, 0.0f}};
    const FloatRect bounds = boundsOf(points);     // (-2, 0, 3, 4)
    const FloatRect area = boundsOf(panel, local); // also right for rotations
    EXPECT_EQ(written(bounds), "(-2, 0, 3, 4)");
    EXPECT_EQ(written(area), "(-300, 0, 100, 640)");
}

struct Vertex {
    Vector2 position;
    unsigned int colour;
};

TEST(GeometryGuide, ManyPoints) {
    Matrix3 shift = Matrix3::IDENTITY;
    shift.makeTranslation(100.0f, 0.0f);
    const Matrix3 grow = Matrix3::IDENTITY.scaledCopy(2.0f, 2.0f);
    std::vector<Vector2> corners = {{0.0f, 0.0f}, {1.0f, 0.0f}, {1.0f, 1.0f}, {0.0f, 1.0f}, {2.0f, 3.0f}};
    transform(shift, corners); // in place: each corner becomes shift * corner
    std::vector<Vector2> grown(corners.size());
    transform(grow, corners, grown); // into another array
    EXPECT_EQ(corners.back(), shift * Vector2(2.0f, 3.0f));
    EXPECT_EQ(grown.back(), grow * corners.back());

    std::vector<Vertex> vertices = {{{1.0f, 2.0f}, 3u}, {{4.0f, 5.0f}, 6u}};
    transform(shift, VectorSpan(vertices, &Vertex::position));
    EXPECT_EQ(vertices[1].position, Vector2(104.0f, 5.0f));
    EXPECT_EQ(vertices[1].colour, 6u);
}

TEST(GeometryGuide, Pins) {
    const FloatRect panel(0.0f, 0.0f, 320.0f, 200.0f);
    const FloatRect badge = anchored(panel, Vector2(16.0f, 16.0f), RectPoint::TOP_RIGHT, 4.0f); // (300, 4, 316, 20)
    const FloatRect dialog = anchored(panel, Vector2(100.0f, 60.0f), RectPoint::CENTRE);
    EXPECT_EQ(written(badge), "(300, 4, 316, 20)");
    EXPECT_EQ(dialog.getCenter(), panel.getCenter());

    const FloatRect grown = anchored(panel, Vector2(400.0f, 300.0f), RectPoint::BOTTOM_RIGHT);
    EXPECT_EQ(written(grown), "(-80, -100, 320, 200)");
    VORN_ALLOW_SURPRISES_BEGIN
    EXPECT_NE(panel.resizedCopy(400.0f, 300.0f, RectPoint::BOTTOM_RIGHT, 0.0f, 0.0f).right, panel.right);
    EXPECT_NE(panel.inflatedCopy(8.0f, 8.0f, RectPoint::BOTTOM_RIGHT, 0.0f, 0.0f).bottom, panel.bottom);
    VORN_ALLOW_SURPRISES_END

    const Vector2 middle(11.5f, 22.0f);
    std::ostringstream stream;
    stream << badge << ' ' << middle; // (300, 4, 316, 20) (11.5, 22)
    EXPECT_EQ(stream.str(), "(300, 4, 316, 20) (11.5, 22)");
}

// The rectangles of the picture are where `anchored` puts them.
TEST(GeometryGuide, ThePictureOfThePins) {
    std::ifstream file(VORN_GUIDES "Pictures/Pins.svg");
    std::map<std::string, FloatRect> drawn;
    const std::regex rectangle("<rect id=\"(\\w+)\" .*x=\"(\\d+)\" y=\"(\\d+)\" width=\"(\\d+)\" height=\"(\\d+)\".*");
    for (std::string line; std::getline(file, line);) {
        std::smatch match;
        if (!std::regex_search(line, match, rectangle)) continue;
        const auto number = [&match](std::size_t i) { return std::stof(match[i].str()); };
        const FloatRect rect(number(2), number(3), number(2) + number(4), number(3) + number(5));
        drawn.emplace(match[1].str(), rect);
    }
    ASSERT_EQ(drawn.size(), 10u);
    const FloatRect panel = drawn["PANEL"];
    const std::map<std::string, unsigned int> pins = {
        {"TOP_LEFT", RectPoint::TOP_LEFT},
        {"TOP", RectPoint::TOP},
        {"TOP_RIGHT", RectPoint::TOP_RIGHT},
        {"LEFT", RectPoint::LEFT},
        {"CENTRE", RectPoint::CENTRE},
        {"RIGHT", RectPoint::RIGHT},
        {"BOTTOM_LEFT", RectPoint::BOTTOM_LEFT},
        {"BOTTOM", RectPoint::BOTTOM},
        {"BOTTOM_RIGHT", RectPoint::BOTTOM_RIGHT},
    };
    for (const auto& [name, pin] : pins) {
        EXPECT_EQ(drawn.at(name), anchored(panel, drawn.at(name).size(), pin, 16.0f)) << name;
    }
}

TEST(GeometryGuide, Costs) {
    EXPECT_EQ(page().row("Vector2")[1], std::to_string(sizeof(Vector2)));
    EXPECT_EQ(page().row("ComplexAngle")[1], std::to_string(sizeof(ComplexAngle)));
    EXPECT_EQ(page().row("FloatRect")[1], std::to_string(sizeof(FloatRect)));
    EXPECT_EQ(page().row("Matrix3")[1], std::to_string(sizeof(Matrix3)));
}

} // namespace
