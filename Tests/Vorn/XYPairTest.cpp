#include "Vorn/XYPair.h"

#include "Support/Floats.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

namespace {

using Pair = Vorn::XYPair<float, float>;
using PairBase = Vorn::XYPairBase<float>;

std::array<float, 2> values(float x, float y) { return {x, y}; }

TEST(XYPair, RecordCopiesBothFields) {
    const PairBase source{1.5f, -0.0f};
    PairBase target{7.0f, 8.0f};
    target = source;
    EXPECT_TRUE(same(target, values(1.5f, -0.0f)));
}

TEST(XYPair, DefaultConstructorWritesNothing) { expectUnwrittenByDefault<Pair>(); }

TEST(XYPair, ConstructorsFillFromWhatTheyTake) {
    const PairBase record{1.0f, 2.0f};
    const float elements[] = {3.0f, 4.0f, 5.0f};
    EXPECT_TRUE(same(Pair(record), values(1.0f, 2.0f)));
    EXPECT_TRUE(same(Pair(elements), values(3.0f, 4.0f)));
    EXPECT_TRUE(same(Pair(6.0f), values(6.0f, 6.0f)));
    EXPECT_TRUE(same(Pair(7.0f, 8.0f), values(7.0f, 8.0f)));
    EXPECT_TRUE(same(Pair(Pair(7.0f, 8.0f)), values(7.0f, 8.0f)));
}

TEST(XYPair, AssignmentCopiesOrFills) {
    Pair pair(1.0f, 2.0f);
    Pair& copied = pair = Pair(3.0f, 4.0f);
    EXPECT_EQ(&copied, &pair);
    EXPECT_TRUE(same(pair, values(3.0f, 4.0f)));
    Pair& filled = pair = 5.0f;
    EXPECT_EQ(&filled, &pair);
    EXPECT_TRUE(same(pair, values(5.0f, 5.0f)));
}

TEST(XYPair, IndexReachesBothComponents) {
    Pair pair(1.0f, 2.0f);
    const Pair& constant = pair;
    EXPECT_EQ(&constant[0], &pair.x);
    EXPECT_EQ(&constant[1], &pair.y);
    EXPECT_EQ(&pair[0], &pair.x);
    EXPECT_EQ(&pair[1], &pair.y);
    pair[1] = 9.0f;
    EXPECT_TRUE(same(pair, values(1.0f, 9.0f)));
}

TEST(XYPair, IndexBeyondOneRaises) {
    Pair pair(1.0f, 2.0f);
    const Pair& constant = pair;
    for (const unsigned int index : {2u, 3u, 0x80000000u, 0xFFFFFFFFu}) {
        expectRaises<1>([&] { (void)pair[index]; }, "index <= 1 : Invalid index!",
                        "Vorn::XYPair<float,float>::operator []", "Include/Vorn/XYPair");
        expectRaises<1>([&] { (void)constant[index]; }, "index <= 1 : Invalid index!",
                        "Vorn::XYPair<float,float>::operator []", "Include/Vorn/XYPair");
    }
}

TEST(XYPair, EqualityComparesFloats) {
    struct Row {
        const char* name;
        Pair a;
        Pair b;
        bool equal;
    };
    const Row rows[] = {
        {"the same", {1.0f, 2.0f}, {1.0f, 2.0f}, true},
        {"other x", {1.0f, 2.0f}, {3.0f, 2.0f}, false},
        {"other y", {1.0f, 2.0f}, {1.0f, 3.0f}, false},
        {"exchanged", {1.0f, 2.0f}, {2.0f, 1.0f}, false},
        {"zeros of both signs", {0.0f, -0.0f}, {-0.0f, 0.0f}, true},
        {"infinities", {INFINITE, -INFINITE}, {INFINITE, -INFINITE}, true},
        {"NaN in x", {NOT_A_NUMBER, 2.0f}, {NOT_A_NUMBER, 2.0f}, false},
        {"NaN in y", {1.0f, NOT_A_NUMBER}, {1.0f, NOT_A_NUMBER}, false},
        {"neighbours", {1.0f, 1.0f}, {1.0f, std::nextafter(1.0f, 2.0f)}, false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.a == row.b, row.equal) << row.name;
        EXPECT_EQ(row.b == row.a, row.equal) << row.name;
        EXPECT_EQ(row.a != row.b, !row.equal) << row.name;
    }
}

} // namespace
