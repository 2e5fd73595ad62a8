// Compares every form of the operations that differ only in their parameters with the formula of the operation.
#include "Vorn/FloatRect.h"

#include "Support/Floats.h"

#include <gtest/gtest.h>

namespace {

using Vorn::FloatRect;
using Vorn::Vector2;
using Four = std::array<float, 4>;

// --- The plain reference: sides by number, 0 and 1 low, 2 and 3 high ---

using Formula = Four (*)(const Four& own, const Four& other);

float floatOf(double value) { return static_cast<float>(value); }

template <class Operation>
Four each(const Four& a, const Four& b, Operation operation) {
    Four result{};
    for (std::size_t i = 0; i < 4; ++i) {
        result[i] = floatOf(operation(static_cast<double>(a[i]), static_cast<double>(b[i])));
    }
    return result;
}

Four sum(const Four& a, const Four& b) {
    return each(a, b, [](double x, double y) { return x + y; });
}
Four difference(const Four& a, const Four& b) {
    return each(a, b, [](double x, double y) { return x - y; });
}
Four product(const Four& a, const Four& b) {
    return each(a, b, [](double x, double y) { return x * y; });
}
Four quotient(const Four& a, const Four& b) {
    return each(a, b, [](double x, double y) { return x / y; });
}
Four remainder(const Four& a, const Four& b) {
    return each(a, b, [](double x, double y) { return std::fmod(x, y); });
}
Four merged(const Four& a, const Four& b) {
    Four result(a);
    for (std::size_t i = 0; i < 4; ++i) {
        if (i < 2 ? b[i] < a[i] : b[i] > a[i]) result[i] = b[i];
    }
    return result;
}
Four grown(const Four& a, const Four& point) {
    Four result(a);
    for (std::size_t i = 0; i < 2; ++i) {
        if (point[i] < a[i]) {
            result[i] = point[i];
        } else if (point[i] > a[i + 2]) {
            result[i + 2] = point[i];
        }
    }
    return result;
}
Four clipped(const Four& a, const Four& b) {
    Four result(a);
    for (std::size_t i = 0; i < 4; ++i) {
        if (i < 2 ? b[i] > a[i] : b[i] < a[i]) result[i] = b[i];
    }
    return result;
}
Four ratioApplied(const Four& a, const Four& ratio) {
    Four result{};
    for (std::size_t i = 0; i < 4; ++i) {
        const std::size_t low = i % 2;
        const float size = floatOf(static_cast<double>(a[low + 2]) - static_cast<double>(a[low]));
        result[i] = floatOf(static_cast<double>(a[low]) + static_cast<double>(ratio[i]) * static_cast<double>(size));
    }
    return result;
}
Four ratioCreated(const Four& a, const Four& b) {
    Four result{};
    for (std::size_t i = 0; i < 4; ++i) {
        const std::size_t low = i % 2;
        const float size = floatOf(static_cast<double>(a[low + 2]) - static_cast<double>(a[low]));
        if (!(size > 0.0f)) continue;
        result[i] = floatOf((static_cast<double>(b[i]) - static_cast<double>(a[low])) / static_cast<double>(size));
    }
    return result;
}
Four inverted(const Four& a, const Four&) { return {a[2], a[3], a[0], a[1]}; }
Four horizontallyReflected(const Four& a, const Four&) { return {a[2], a[1], a[0], a[3]}; }
Four verticallyReflected(const Four& a, const Four&) { return {a[0], a[3], a[2], a[1]}; }

// --- The forms. A form reads the second rectangle as that, as a vector (left, top) or as a float (left) ---

enum Argument { RECT, VECTOR, FLOAT };

Vector2 vectorOf(const FloatRect& b) { return {b.left, b.top}; }

struct Form {
    const char* name;
    Formula expected;
    Argument argument;
    void (*actual)(FloatRect& result, const FloatRect& b); // `result` comes as the first rectangle
};

// The result and the arguments are both called r and b in the rows below.
#define FORM(name, formula, argument, ...)                                                              \
    Form {                                                                                              \
        name, formula, argument, [](FloatRect& r, [[maybe_unused]] const FloatRect& b) { __VA_ARGS__; } \
    }
#define IN_PLACE(operation, operand) EXPECT_EQ(&(r operation operand), &r)
#define FOUR b.left, b.top, b.right, b.bottom
#define POINT b.left, b.top

const Form FORMS[] = {
    FORM("+= rect", sum, RECT, IN_PLACE(+=, b)),
    FORM("+= vector", sum, VECTOR, IN_PLACE(+=, vectorOf(b))),
    FORM("+= float", sum, FLOAT, IN_PLACE(+=, b.left)),
    FORM("+ rect", sum, RECT, r = r + b),
    FORM("+ vector", sum, VECTOR, r = r + vectorOf(b)),
    FORM("+ float", sum, FLOAT, r = r + b.left),
    FORM("add(4)", sum, RECT, r.add(FOUR)),
    FORM("add(x, y)", sum, VECTOR, r.add(POINT)),
    FORM("translate(x, y)", sum, VECTOR, r.translate(POINT)),
    FORM("addCopy(out, rect)", sum, RECT, const FloatRect a(r); a.addCopy(r, b)),
    FORM("addCopy(out, vector)", sum, VECTOR, const FloatRect a(r); a.addCopy(r, vectorOf(b))),
    FORM("addCopy(out, float)", sum, FLOAT, const FloatRect a(r); a.addCopy(r, b.left)),
    FORM("addCopy(out, 4)", sum, RECT, const FloatRect a(r); a.addCopy(r, FOUR)),
    FORM("addCopy(out, x, y)", sum, VECTOR, const FloatRect a(r); a.addCopy(r, POINT)),
    FORM("addCopy(4)", sum, RECT, r = r.addCopy(FOUR)),
    FORM("addCopy(x, y)", sum, VECTOR, r = r.addCopy(POINT)),
    FORM("translateCopy(out, vector)", sum, VECTOR, const FloatRect a(r); a.translateCopy(r, vectorOf(b))),
    FORM("translateCopy(out, float)", sum, FLOAT, const FloatRect a(r); a.translateCopy(r, b.left)),
    FORM("translateCopy(out, x, y)", sum, VECTOR, const FloatRect a(r); a.translateCopy(r, POINT)),
    FORM("translateCopy(x, y)", sum, VECTOR, r = r.translateCopy(POINT)),

    FORM("-= rect", difference, RECT, IN_PLACE(-=, b)),
    FORM("-= vector", difference, VECTOR, IN_PLACE(-=, vectorOf(b))),
    FORM("-= float", difference, FLOAT, IN_PLACE(-=, b.left)),
    FORM("- rect", difference, RECT, r = r - b),
    FORM("- vector", difference, VECTOR, r = r - vectorOf(b)),
    FORM("- float", difference, FLOAT, r = r - b.left),
    FORM("subtract(4)", difference, RECT, r.subtract(FOUR)),
    FORM("subtract(x, y)", difference, VECTOR, r.subtract(POINT)),
    FORM("reverseTranslate(x, y)", difference, VECTOR, r.reverseTranslate(POINT)),
    FORM("subtractCopy(out, rect)", difference, RECT, const FloatRect a(r); a.subtractCopy(r, b)),
    FORM("subtractCopy(out, vector)", difference, VECTOR, const FloatRect a(r); a.subtractCopy(r, vectorOf(b))),
    FORM("subtractCopy(out, float)", difference, FLOAT, const FloatRect a(r); a.subtractCopy(r, b.left)),
    FORM("subtractCopy(out, 4)", difference, RECT, const FloatRect a(r); a.subtractCopy(r, FOUR)),
    FORM("subtractCopy(out, x, y)", difference, VECTOR, const FloatRect a(r); a.subtractCopy(r, POINT)),
    FORM("subtractCopy(4)", difference, RECT, r = r.subtractCopy(FOUR)),
    FORM("subtractCopy(x, y)", difference, VECTOR, r = r.subtractCopy(POINT)),
    FORM("reverseTranslateCopy(out, vector)", difference, VECTOR, const FloatRect a(r);
         a.reverseTranslateCopy(r, vectorOf(b))),
    FORM("reverseTranslateCopy(out, float)", difference, FLOAT, const FloatRect a(r);
         a.reverseTranslateCopy(r, b.left)),
    FORM("reverseTranslateCopy(out, x, y)", difference, VECTOR, const FloatRect a(r); a.reverseTranslateCopy(r, POINT)),
    FORM("reverseTranslateCopy(x, y)", difference, VECTOR, r = r.reverseTranslateCopy(POINT)),

    FORM("*= rect", product, RECT, IN_PLACE(*=, b)),
    FORM("*= vector", product, VECTOR, IN_PLACE(*=, vectorOf(b))),
    FORM("*= float", product, FLOAT, IN_PLACE(*=, b.left)),
    FORM("* rect", product, RECT, r = r * b),
    FORM("* vector", product, VECTOR, r = r * vectorOf(b)),
    FORM("* float", product, FLOAT, r = r * b.left),

    FORM("|= rect", merged, RECT, IN_PLACE(|=, b)),
    FORM("| rect", merged, RECT, r = r | b),
    FORM("merge(rect)", merged, RECT, r.merge(b)),
    FORM("merge(4)", merged, RECT, r.merge(FOUR)),
    FORM("mergedCopy(out, rect)", merged, RECT, const FloatRect a(r); a.mergedCopy(r, b)),
    FORM("mergedCopy(out, 4)", merged, RECT, const FloatRect a(r); a.mergedCopy(r, FOUR)),
    FORM("mergedCopy(rect)", merged, RECT, r = r.mergedCopy(b)),
    FORM("mergedCopy(4)", merged, RECT, r = r.mergedCopy(FOUR)),
    FORM("|= vector", grown, VECTOR, IN_PLACE(|=, vectorOf(b))),
    FORM("merge(x, y)", grown, VECTOR, r.merge(POINT)),
    FORM("| vector", merged, VECTOR, r = r | vectorOf(b)),
    FORM("mergedCopy(out, vector)", merged, VECTOR, const FloatRect a(r); a.mergedCopy(r, vectorOf(b))),
    FORM("mergedCopy(out, x, y)", merged, VECTOR, const FloatRect a(r); a.mergedCopy(r, POINT)),
    FORM("mergedCopy(vector)", merged, VECTOR, r = r.mergedCopy(vectorOf(b))),
    FORM("mergedCopy(x, y)", merged, VECTOR, r = r.mergedCopy(POINT)),

    FORM("&= rect", clipped, RECT, IN_PLACE(&=, b)),
    FORM("& rect", clipped, RECT, r = r & b),
    FORM("clip(rect)", clipped, RECT, r.clip(b)),
    FORM("clip(4)", clipped, RECT, r.clip(FOUR)),
    FORM("intersection(4)", clipped, RECT, r.intersection(FOUR)),
    FORM("intersectionCopy(out, rect)", clipped, RECT, const FloatRect a(r); a.intersectionCopy(r, b)),
    FORM("intersectionCopy(out, 4)", clipped, RECT, const FloatRect a(r); a.intersectionCopy(r, FOUR)),
    FORM("intersectionCopy(rect)", clipped, RECT, r = r.intersectionCopy(b)),
    FORM("intersectionCopy(4)", clipped, RECT, r = r.intersectionCopy(FOUR)),

    FORM("applyRatio(rect)", ratioApplied, RECT, r.applyRatio(b)),
    FORM("applyRatio(4)", ratioApplied, RECT, r.applyRatio(FOUR)),
    FORM("applyRatioCopy(out, rect)", ratioApplied, RECT, const FloatRect a(r); a.applyRatioCopy(r, b)),
    FORM("applyRatioCopy(out, 4)", ratioApplied, RECT, const FloatRect a(r); a.applyRatioCopy(r, FOUR)),
    FORM("applyRatioCopy(rect)", ratioApplied, RECT, r = r.applyRatioCopy(b)),
    FORM("applyRatioCopy(4)", ratioApplied, RECT, r = r.applyRatioCopy(FOUR)),
    FORM("createRatio(rect)", ratioCreated, RECT, r.createRatio(b)),
    FORM("createRatio(4)", ratioCreated, RECT, r.createRatio(FOUR)),
    FORM("createRatioCopy(out, rect)", ratioCreated, RECT, const FloatRect a(r); a.createRatioCopy(r, b)),
    FORM("createRatioCopy(out, 4)", ratioCreated, RECT, const FloatRect a(r); a.createRatioCopy(r, FOUR)),
    FORM("createRatioCopy(rect)", ratioCreated, RECT, r = r.createRatioCopy(b)),
    FORM("createRatioCopy(4)", ratioCreated, RECT, r = r.createRatioCopy(FOUR)),

    FORM("invert", inverted, RECT, r.invert()),
    FORM("invertedCopy(out)", inverted, RECT, const FloatRect a(r); a.invertedCopy(r)),
    FORM("invertedCopy into itself", inverted, RECT, r.invertedCopy(r)),
    FORM("invertedCopy", inverted, RECT, r = r.invertedCopy()),
    FORM("reflectHorz", horizontallyReflected, RECT, r.reflectHorz()),
    FORM("horzReflectedCopy(out)", horizontallyReflected, RECT, const FloatRect a(r); a.horzReflectedCopy(r)),
    FORM("horzReflectedCopy", horizontallyReflected, RECT, r = r.horzReflectedCopy()),
    FORM("reflectedCopy(0)", horizontallyReflected, RECT, r = r.reflectedCopy(0)),
    FORM("reflectedCopy(out, 0)", horizontallyReflected, RECT, const FloatRect a(r); a.reflectedCopy(r, 0)),
    FORM("reflectVert", verticallyReflected, RECT, r.reflectVert()),
    FORM("vertReflectedCopy(out)", verticallyReflected, RECT, const FloatRect a(r); a.vertReflectedCopy(r)),
    FORM("vertReflectedCopy", verticallyReflected, RECT, r = r.vertReflectedCopy()),
    FORM("reflectedCopy(1)", verticallyReflected, RECT, r = r.reflectedCopy(1)),
    FORM("reflectedCopy(out, 1)", verticallyReflected, RECT, const FloatRect a(r); a.reflectedCopy(r, 1)),
};

// These operations check their divisor, so no divisor is zero or NaN.
const Form DIVIDING_FORMS[] = {
    FORM("/= rect", quotient, RECT, IN_PLACE(/=, b)),
    FORM("/= vector", quotient, VECTOR, IN_PLACE(/=, vectorOf(b))),
    FORM("/= float", quotient, FLOAT, IN_PLACE(/=, b.left)),
    FORM("/ rect", quotient, RECT, r = r / b),
    FORM("/ vector", quotient, VECTOR, r = r / vectorOf(b)),
    FORM("/ float", quotient, FLOAT, r = r / b.left),
    FORM("%= rect", remainder, RECT, IN_PLACE(%=, b)),
    FORM("%= vector", remainder, VECTOR, IN_PLACE(%=, vectorOf(b))),
    FORM("%= float", remainder, FLOAT, IN_PLACE(%=, b.left)),
    FORM("% rect", remainder, RECT, r = r % b),
    FORM("% vector", remainder, VECTOR, r = r % vectorOf(b)),
    FORM("% float", remainder, FLOAT, r = r % b.left),
};

Four operandOf(Argument argument, const FloatRect& b) {
    if (argument == RECT) return floatsOf(b);
    if (argument == VECTOR) return {b.left, b.top, b.left, b.top};
    return {b.left, b.left, b.left, b.left};
}

template <std::size_t Count>
void expectPlainBits(const Form (&forms)[Count], const FloatRect& a, const FloatRect& b) {
    for (const Form& form : forms) {
        FloatRect result(a);
        form.actual(result, b);
        ASSERT_TRUE(same(result, form.expected(floatsOf(a), operandOf(form.argument, b))))
            << form.name << " of " << describe(a) << "and " << describe(b);
    }
}

TEST(FloatRectForms, HaveTheBitsOfThePlainFormula) {
    RandomFloats random(83);
    for (int round = 0; round < repetitions(100000) / 3 && !testing::Test::HasFatalFailure(); ++round) {
        const FloatRect a = random.record<FloatRect>();
        const FloatRect b = random.record<FloatRect>();
        expectPlainBits(FORMS, a, b);
    }
}

TEST(FloatRectForms, DivideWithTheBitsOfThePlainFormula) {
    RandomFloats random(84);
    for (int round = 0; round < repetitions(100000) / 3 && !testing::Test::HasFatalFailure(); ++round) {
        const FloatRect a = random.record<FloatRect>();
        FloatRect b = random.record<FloatRect>();
        for (unsigned int side = 0; side < 4; ++side) {
            if (!(b[side] < 0.0f || b[side] > 0.0f)) b[side] = DENORMAL;
        }
        expectPlainBits(DIVIDING_FORMS, a, b);
    }
}

TEST(FloatRectForms, TakeTheRectangleItselfAsOperand) {
    FloatRect rect(1, 2, 3, 4);
    const FloatRect& itself = rect;
    rect += itself;
    EXPECT_TRUE(same(rect, Four{2, 4, 6, 8}));
    rect *= itself;
    EXPECT_TRUE(same(rect, Four{4, 16, 36, 64}));
    rect |= itself;
    rect &= itself;
    EXPECT_TRUE(same(rect, Four{4, 16, 36, 64}));
    rect /= itself;
    EXPECT_TRUE(same(rect, Four{1, 1, 1, 1}));
    rect -= itself;
    EXPECT_TRUE(same(rect, Four{0, 0, 0, 0}));
}

} // namespace
