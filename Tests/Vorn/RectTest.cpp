#include "Vorn/Rect.h"

#include "Support/Floats.h"
#include "Support/Report.h"
#include "Vorn/Vector2.h"

#include <gtest/gtest.h>

namespace {

using Rect = Vorn::Rect<float, float>;
using RectBase = Vorn::RectBase<float>;
using Pair = Vorn::XYPair<float, float>;
using Four = std::array<float, 4>;

constexpr const char* FILE_TEXT = "Include/Vorn/Rect";

TEST(Rect, DefaultConstructorWritesNothing) { expectUnwrittenByDefault<Rect>(); }

TEST(Rect, RecordCopiesFourFields) {
    const RectBase source{1.0f, 2.0f, 3.0f, 4.0f};
    RectBase target{};
    target = source;
    EXPECT_TRUE(same(target, Four{1.0f, 2.0f, 3.0f, 4.0f}));
    EXPECT_EQ(source.left, 1.0f);
    EXPECT_EQ(source.top, 2.0f);
    EXPECT_EQ(source.right, 3.0f);
    EXPECT_EQ(source.bottom, 4.0f);
}

TEST(Rect, ConstructorsAndSetAllFillAlike) {
    const RectBase record{1.0f, 2.0f, 3.0f, 4.0f};
    const Pair a(1.0f, 2.0f);
    const Pair b(3.0f, 4.0f);
    EXPECT_TRUE(same(Rect(record), record));
    EXPECT_TRUE(same(Rect(Rect(record)), record));

    Rect rect(9.0f);
    const auto expectBoth = [&rect](const Rect& constructed, const Four& expected) {
        EXPECT_TRUE(same(constructed, expected));
        EXPECT_TRUE(same(rect, expected));
    };
    rect.setAll(1.0f, 2.0f, 3.0f, 4.0f);
    expectBoth(Rect(1.0f, 2.0f, 3.0f, 4.0f), {1.0f, 2.0f, 3.0f, 4.0f});
    rect.setAll(1.0f, 2.0f, 3.0f);
    expectBoth(Rect(1.0f, 2.0f, 3.0f), {1.0f, 2.0f, 3.0f, 2.0f});
    rect.setAll(1.0f, 2.0f);
    expectBoth(Rect(1.0f, 2.0f), {1.0f, 2.0f, 1.0f, 2.0f});
    rect.setAll(5.0f);
    expectBoth(Rect(5.0f), {5.0f, 5.0f, 5.0f, 5.0f});
    rect.setAll(a);
    expectBoth(Rect(a), {1.0f, 2.0f, 1.0f, 2.0f});
    rect.setAll(a, b);
    expectBoth(Rect(a, b), {1.0f, 2.0f, 3.0f, 4.0f});
    rect.setAll(Vorn::Vector2(6.0f, 7.0f));
    expectBoth(Rect(Vorn::Vector2(6.0f, 7.0f)), {6.0f, 7.0f, 6.0f, 7.0f});
}

TEST(Rect, AssignmentCopies) {
    Rect rect(0.0f);
    EXPECT_EQ(&(rect = Rect(1.0f, 2.0f, 3.0f, 4.0f)), &rect);
    EXPECT_TRUE(same(rect, Four{1.0f, 2.0f, 3.0f, 4.0f}));
    EXPECT_EQ(&(rect = RectBase{5.0f, 6.0f, 7.0f, 8.0f}), &rect);
    EXPECT_TRUE(same(rect, Four{5.0f, 6.0f, 7.0f, 8.0f}));
}

TEST(Rect, SideNumbersAreLeftTopRightBottom) {
    for (unsigned int side = 0; side < 4; ++side) {
        const Rect constant(10.0f, 11.0f, 12.0f, 13.0f);
        EXPECT_EQ(constant[side], 10.0f + static_cast<float>(side));
        EXPECT_EQ(constant.getSide(side), 10.0f + static_cast<float>(side));

        Four expected = {10.0f, 11.0f, 12.0f, 13.0f};
        expected[side] = 99.0f;
        Rect byIndex(constant), byName(constant);
        byIndex[side] = 99.0f;
        byName.setSide(side, 99.0f);
        EXPECT_TRUE(same(byIndex, expected)) << side;
        EXPECT_TRUE(same(byName, expected)) << side;
    }
}

TEST(Rect, TwoPartSidesAreOrientationAndEnd) {
    struct Row {
        unsigned int orient;
        unsigned int end;
        unsigned int side;
    };
    for (const Row& row : {Row{0, 0, 0}, Row{1, 0, 1}, Row{0, 1, 2}, Row{1, 1, 3}}) {
        Rect rect(10.0f, 11.0f, 12.0f, 13.0f);
        EXPECT_EQ(rect.getSide(row.orient, row.end), 10.0f + static_cast<float>(row.side));
        rect.setSide(row.orient, row.end, 99.0f);
        Four expected = {10.0f, 11.0f, 12.0f, 13.0f};
        expected[row.side] = 99.0f;
        EXPECT_TRUE(same(rect, expected)) << row.side;
    }
}

TEST(Rect, OrientationsSetAPairOfSides) {
    Rect rect(1.0f, 2.0f, 3.0f, 4.0f);
    rect.setByOrient(0, 10.0f, 30.0f);
    EXPECT_TRUE(same(rect, Four{10.0f, 2.0f, 30.0f, 4.0f}));
    rect.setByOrient(1, 20.0f, 40.0f);
    EXPECT_TRUE(same(rect, Four{10.0f, 20.0f, 30.0f, 40.0f}));
}

TEST(Rect, CornersSetTheTwoSidesThatMeet) {
    const Four expected[] = {
        {5.0f, 6.0f, 3.0f, 4.0f}, {5.0f, 2.0f, 3.0f, 6.0f}, {1.0f, 6.0f, 5.0f, 4.0f}, {1.0f, 2.0f, 5.0f, 6.0f}};
    for (unsigned int corner = 0; corner < 4; ++corner) {
        Rect byFloats(1.0f, 2.0f, 3.0f, 4.0f), byPair(byFloats);
        byFloats.setByCorner(corner, 5.0f, 6.0f);
        byPair.setByCorner(corner, Pair(5.0f, 6.0f));
        EXPECT_TRUE(same(byFloats, expected[corner])) << corner;
        EXPECT_TRUE(same(byPair, expected[corner])) << corner;
    }
}

TEST(Rect, NumbersBeyondTheEndRaiseAndChangeNothing) {
    Rect rect(1.0f, 2.0f, 3.0f, 4.0f);
    const Rect& constant = rect;
    for (const unsigned int side : {4u, 5u, 0x80000000u, 0xFFFFFFFFu}) {
        expectRaises<1>([&] { rect[side] = 9.0f; }, "side < 4 : Invalid side!", "Vorn::Rect<float,float>::operator []",
                        FILE_TEXT);
        expectRaises<1>([&] { (void)constant[side]; }, "side < 4 : Invalid side!",
                        "Vorn::Rect<float,float>::operator []", FILE_TEXT);
        expectRaises<1>([&] { rect.setSide(side, 9.0f); }, "side < 4 : Invalid side!",
                        "Vorn::Rect<float,float>::setSide", FILE_TEXT);
        expectRaises<1>([&] { (void)rect.getSide(side); }, "side < 4 : Invalid side!",
                        "Vorn::Rect<float,float>::getSide", FILE_TEXT);
        expectRaises<1>([&] { rect.setByCorner(side, 9.0f, 9.0f); }, "corner < 4 : Invalid corner!",
                        "Vorn::Rect<float,float>::setByCorner", FILE_TEXT);
        expectRaises<1>([&] { rect.setByCorner(side, Pair(9.0f)); }, "corner < 4 : Invalid corner!",
                        "Vorn::Rect<float,float>::setByCorner", FILE_TEXT);
    }
    for (const unsigned int number : {2u, 3u, 4u, 0xFFFFFFFFu}) {
        expectRaises<1>([&] { rect.setSide(number, 0, 9.0f); }, "orient < 2 : Invalid orient!",
                        "Vorn::Rect<float,float>::setSide", FILE_TEXT);
        expectRaises<1>([&] { rect.setSide(number, number, 9.0f); }, "orient < 2 : Invalid orient!",
                        "Vorn::Rect<float,float>::setSide", FILE_TEXT);
        expectRaises<1>([&] { rect.setSide(1, number, 9.0f); }, "side < 2 : Invalid side!",
                        "Vorn::Rect<float,float>::setSide", FILE_TEXT);
        expectRaises<1>([&] { (void)rect.getSide(number, 0); }, "orient < 2 : Invalid orient!",
                        "Vorn::Rect<float,float>::getSide", FILE_TEXT);
        expectRaises<1>([&] { (void)rect.getSide(number, number); }, "orient < 2 : Invalid orient!",
                        "Vorn::Rect<float,float>::getSide", FILE_TEXT);
        expectRaises<1>([&] { (void)rect.getSide(1, number); }, "side < 2 : Invalid side!",
                        "Vorn::Rect<float,float>::getSide", FILE_TEXT);
        expectRaises<1>([&] { rect.setByOrient(number, 9.0f, 9.0f); }, "orient < 2 : invalid orientation",
                        "Vorn::Rect<float,float>::setByOrient", FILE_TEXT);
    }
    EXPECT_TRUE(same(rect, Four{1.0f, 2.0f, 3.0f, 4.0f}));
}

TEST(Rect, EqualityComparesFloatsOfAllFourSides) {
    const Rect rect(1.0f, 2.0f, 3.0f, 4.0f);
    EXPECT_TRUE(rect == Rect(rect));
    EXPECT_FALSE(rect != Rect(rect));
    for (unsigned int side = 0; side < 4; ++side) {
        Rect other(rect);
        other[side] = 9.0f;
        EXPECT_FALSE(rect == other) << side;
        EXPECT_TRUE(rect != other) << side;
        other[side] = NOT_A_NUMBER;
        EXPECT_FALSE(other == other) << side;
        EXPECT_TRUE(other != other) << side;
    }
    EXPECT_TRUE(Rect(0.0f) == Rect(-0.0f));
}

} // namespace
