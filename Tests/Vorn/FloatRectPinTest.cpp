// Pinned resizing: each of its 36 forms.
#include "Vorn/FloatRect.h"

#include "Support/Floats.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Vorn::FloatRect;
using Vorn::Vector2;
using Four = std::array<float, 4>;

enum Family { INFLATE, RESIZE };

struct Input {
    FloatRect rect;
    Vector2 amount; // amount or size; forms with one float take x for both axes
    unsigned int pin;
    Vector2 offset;
};

struct Form {
    const char* name;
    Family family;
    bool oneFloat;
    bool inPlace;
    const char* function;                            // null: this form does not check
    void (*run)(FloatRect& result, const Input& in); // `result` comes as the rectangle for a form in place
};

// i is the input, r the result.
#define FORM(name, family, oneFloat, inPlace, function, ...)                                         \
    Form {                                                                                           \
        name, family, oneFloat, inPlace, function, [](FloatRect& r, const Input& i) { __VA_ARGS__; } \
    }
#define INFLATE_NAME "Vorn::FloatRect::inflate"
#define INFLATED_COPY_NAME "Vorn::FloatRect::inflatedCopy"
#define RESIZE_NAME "Vorn::FloatRect::resize"
#define RESIZED_COPY_NAME "Vorn::FloatRect::resizedCopy"
#define VECTOR i.amount
#define TWO i.amount.x, i.amount.y
#define ONE i.amount.x
#define OFFSET i.offset
#define OFFSETS i.offset.x, i.offset.y

const Form FORMS[] = {
    FORM("inflate V V", INFLATE, false, true, INFLATE_NAME, r.inflate(VECTOR, i.pin, OFFSET)),
    FORM("inflate V 2", INFLATE, false, true, INFLATE_NAME, r.inflate(VECTOR, i.pin, OFFSETS)),
    FORM("inflate 2 V", INFLATE, false, true, INFLATE_NAME, r.inflate(TWO, i.pin, OFFSET)),
    FORM("inflate 2 2", INFLATE, false, true, INFLATE_NAME, r.inflate(TWO, i.pin, OFFSETS)),
    FORM("inflate 1 V", INFLATE, true, true, INFLATE_NAME, r.inflate(ONE, i.pin, OFFSET)),
    FORM("inflate 1 2", INFLATE, true, true, nullptr, r.inflate(ONE, i.pin, OFFSETS)),
    FORM("inflatedCopy out V V", INFLATE, false, false, INFLATED_COPY_NAME,
         i.rect.inflatedCopy(r, VECTOR, i.pin, OFFSET)),
    FORM("inflatedCopy out V 2", INFLATE, false, false, INFLATED_COPY_NAME,
         i.rect.inflatedCopy(r, VECTOR, i.pin, OFFSETS)),
    FORM("inflatedCopy out 2 V", INFLATE, false, false, INFLATED_COPY_NAME, i.rect.inflatedCopy(r, TWO, i.pin, OFFSET)),
    FORM("inflatedCopy out 2 2", INFLATE, false, false, INFLATED_COPY_NAME,
         i.rect.inflatedCopy(r, TWO, i.pin, OFFSETS)),
    FORM("inflatedCopy out 1 V", INFLATE, true, false, INFLATED_COPY_NAME, i.rect.inflatedCopy(r, ONE, i.pin, OFFSET)),
    FORM("inflatedCopy out 1 2", INFLATE, true, false, INFLATED_COPY_NAME, i.rect.inflatedCopy(r, ONE, i.pin, OFFSETS)),
    FORM("inflatedCopy V V", INFLATE, false, false, INFLATED_COPY_NAME, r = i.rect.inflatedCopy(VECTOR, i.pin, OFFSET)),
    FORM("inflatedCopy V 2", INFLATE, false, false, INFLATED_COPY_NAME,
         r = i.rect.inflatedCopy(VECTOR, i.pin, OFFSETS)),
    FORM("inflatedCopy 2 V", INFLATE, false, false, INFLATED_COPY_NAME, r = i.rect.inflatedCopy(TWO, i.pin, OFFSET)),
    FORM("inflatedCopy 2 2", INFLATE, false, false, INFLATED_COPY_NAME, r = i.rect.inflatedCopy(TWO, i.pin, OFFSETS)),
    FORM("inflatedCopy 1 V", INFLATE, true, false, INFLATED_COPY_NAME, r = i.rect.inflatedCopy(ONE, i.pin, OFFSET)),
    FORM("inflatedCopy 1 2", INFLATE, true, false, INFLATED_COPY_NAME, r = i.rect.inflatedCopy(ONE, i.pin, OFFSETS)),
    FORM("resize V V", RESIZE, false, true, RESIZE_NAME, r.resize(VECTOR, i.pin, OFFSET)),
    FORM("resize V 2", RESIZE, false, true, RESIZE_NAME, r.resize(VECTOR, i.pin, OFFSETS)),
    FORM("resize 2 V", RESIZE, false, true, RESIZE_NAME, r.resize(TWO, i.pin, OFFSET)),
    FORM("resize 2 2", RESIZE, false, true, RESIZE_NAME, r.resize(TWO, i.pin, OFFSETS)),
    FORM("resize 1 V", RESIZE, true, true, RESIZE_NAME, r.resize(ONE, i.pin, OFFSET)),
    FORM("resize 1 2", RESIZE, true, true, RESIZE_NAME, r.resize(ONE, i.pin, OFFSETS)),
    FORM("resizedCopy out V V", RESIZE, false, false, RESIZED_COPY_NAME, i.rect.resizedCopy(r, VECTOR, i.pin, OFFSET)),
    FORM("resizedCopy out V 2", RESIZE, false, false, RESIZED_COPY_NAME, i.rect.resizedCopy(r, VECTOR, i.pin, OFFSETS)),
    FORM("resizedCopy out 2 V", RESIZE, false, false, RESIZED_COPY_NAME, i.rect.resizedCopy(r, TWO, i.pin, OFFSET)),
    FORM("resizedCopy out 2 2", RESIZE, false, false, RESIZED_COPY_NAME, i.rect.resizedCopy(r, TWO, i.pin, OFFSETS)),
    FORM("resizedCopy out 1 V", RESIZE, true, false, RESIZED_COPY_NAME, i.rect.resizedCopy(r, ONE, i.pin, OFFSET)),
    FORM("resizedCopy out 1 2", RESIZE, true, false, RESIZED_COPY_NAME, i.rect.resizedCopy(r, ONE, i.pin, OFFSETS)),
    FORM("resizedCopy V V", RESIZE, false, false, RESIZED_COPY_NAME, r = i.rect.resizedCopy(VECTOR, i.pin, OFFSET)),
    FORM("resizedCopy V 2", RESIZE, false, false, RESIZED_COPY_NAME, r = i.rect.resizedCopy(VECTOR, i.pin, OFFSETS)),
    FORM("resizedCopy 2 V", RESIZE, false, false, RESIZED_COPY_NAME, r = i.rect.resizedCopy(TWO, i.pin, OFFSET)),
    FORM("resizedCopy 2 2", RESIZE, false, false, RESIZED_COPY_NAME, r = i.rect.resizedCopy(TWO, i.pin, OFFSETS)),
    FORM("resizedCopy 1 V", RESIZE, true, false, RESIZED_COPY_NAME, r = i.rect.resizedCopy(ONE, i.pin, OFFSET)),
    FORM("resizedCopy 1 2", RESIZE, true, false, RESIZED_COPY_NAME, r = i.rect.resizedCopy(ONE, i.pin, OFFSETS)),
};
static_assert(std::size(FORMS) == 36);

constexpr unsigned int PINS[] = {0, 1, 2, 3, 4, 6, 8, 9, 12};

const char* const MESSAGE =
    "pinOrigin == ::Vorn::RectPoint::CENTRE || pinOrigin == ::Vorn::RectPoint::LEFT || "
    "pinOrigin == ::Vorn::RectPoint::TOP || pinOrigin == ::Vorn::RectPoint::RIGHT || "
    "pinOrigin == ::Vorn::RectPoint::BOTTOM || pinOrigin == ::Vorn::RectPoint::TOP_LEFT || "
    "pinOrigin == ::Vorn::RectPoint::TOP_RIGHT || pinOrigin == ::Vorn::RectPoint::BOTTOM_LEFT || "
    "pinOrigin == ::Vorn::RectPoint::BOTTOM_RIGHT : invalid origin";

// --- The plain reference: one axis by its table of factors ---

float floatOf(double value) { return static_cast<float>(value); }

double factorOf(Family family, bool low, bool high) {
    if (high) return family == INFLATE ? 2.0 : 1.0;
    if (low) return 0.0;
    return family == INFLATE ? -1.0 : -0.5;
}

Four resultOf(Family family, const Input& in, bool oneFloat) {
    const Four sides = floatsOf(in.rect);
    Four result{};
    for (std::size_t axis = 0; axis < 2; ++axis) {
        const double low = sides[axis];
        const double high = sides[axis + 2];
        const double amount = axis == 0 || oneFloat ? in.amount.x : in.amount.y;
        const double offset = axis == 0 ? in.offset.x : in.offset.y;
        const double k = factorOf(family, (in.pin & (axis == 0 ? 1u : 2u)) != 0, (in.pin & (axis == 0 ? 4u : 8u)) != 0);
        if (family == INFLATE) {
            const float size = floatOf(2.0 * amount + high - low);
            result[axis] = floatOf(low + amount * k - offset);
            result[axis + 2] = floatOf(static_cast<double>(result[axis]) + static_cast<double>(size));
        } else {
            const double delta = amount - high + low;
            result[axis] = floatOf(low + k * delta - offset);
            result[axis + 2] = floatOf(static_cast<double>(result[axis]) + amount);
        }
    }
    return result;
}

void expectForm(const Form& form, const Input& in) {
    FloatRect result(in.rect);
    if (!form.inPlace) result = FloatRect(NOT_A_NUMBER);
    form.run(result, in);
    ASSERT_TRUE(same(result, resultOf(form.family, in, form.oneFloat)))
        << form.name << " of " << describe(in.rect) << "by " << describe(in.amount) << "pin " << in.pin << " offset "
        << describe(in.offset);
}

TEST(PinnedResizing, EveryFormHasTheBitsOfThePlainFormula) {
    RandomFloats random(85);
    for (int round = 0; round < repetitions(100000) / 3 && !testing::Test::HasFatalFailure(); ++round) {
        const Input in = {random.record<FloatRect>(), random.record<Vector2>(), PINS[random.below(9)],
                          random.record<Vector2>()};
        for (const Form& form : FORMS) expectForm(form, in);
    }
}

TEST(PinnedResizing, OtherPinsRaiseAndChangeNothing) {
    const FloatRect original(0, 0, 10, 10);
    std::vector<unsigned int> pins = {0x10000u, 0x7FFFFFFFu, 0x80000000u, 0x80000001u, 0xFFFFFFFFu};
    for (unsigned int pin = 0; pin < 64; ++pin) {
        if (std::find(std::begin(PINS), std::end(PINS), pin) == std::end(PINS)) pins.push_back(pin);
    }
    for (const unsigned int pin : pins) {
        const Input in = {original, Vector2(1, 1), pin, Vector2(0, 0)};
        for (const Form& form : FORMS) {
            if (!form.function) {
                expectForm(form, in); // by the bits as they stand
                continue;
            }
            FloatRect result(original);
            SCOPED_TRACE(form.name);
            expectRaises<1>([&] { form.run(result, in); }, MESSAGE, form.function, "Include/Vorn/FloatRect");
            EXPECT_TRUE(same(result, original)) << pin;
        }
    }
}

TEST(PinnedResizing, TheUncheckedFormUsesTheBits) {
    FloatRect rect(0, 0, 10, 10);
    rect.inflate(1, 5, 0, 0); // LEFT with RIGHT: pinned high on the horizontal axis, centred on the vertical one
    EXPECT_TRUE(same(rect, Four{2, -1, 14, 11}));
    rect = FloatRect(0, 0, 10, 10);
    rect.inflate(1, 16, 0, 0); // no known bit
    EXPECT_TRUE(same(rect, Four{-1, -1, 11, 11}));
    rect = FloatRect(0, 0, 10, 10);
    EXPECT_THROW(rect.inflate(1, 1, 5, 0, 0), Vorn::Exception<1>);
}

TEST(PinnedResizing, WorksAsTheExamplesShow) {
    using namespace Vorn::RectPoint;
    struct Row {
        Family family;
        Vector2 amount;
        unsigned int pin;
        Vector2 offset;
        Four expected;
    };
    const Row rows[] = {
        {INFLATE, {1, 1}, CENTRE, {0, 0}, {-1, -1, 11, 11}},     {INFLATE, {1, 1}, LEFT, {0, 0}, {0, -1, 12, 11}},
        {INFLATE, {1, 1}, TOP, {0, 0}, {-1, 0, 11, 12}},         {INFLATE, {1, 1}, TOP_LEFT, {0, 0}, {0, 0, 12, 12}},
        {INFLATE, {1, 1}, RIGHT, {0, 0}, {2, -1, 14, 11}},       {INFLATE, {1, 1}, BOTTOM, {0, 0}, {-1, 2, 11, 14}},
        {INFLATE, {1, 1}, TOP_RIGHT, {0, 0}, {2, 0, 14, 12}},    {INFLATE, {1, 1}, BOTTOM_LEFT, {0, 0}, {0, 2, 12, 14}},
        {INFLATE, {1, 1}, BOTTOM_RIGHT, {0, 0}, {2, 2, 14, 14}}, {INFLATE, {1, 1}, CENTRE, {3, 4}, {-4, -5, 8, 7}},
        {INFLATE, {-6, 1}, CENTRE, {0, 0}, {6, -1, 4, 11}},      {RESIZE, {12, 12}, CENTRE, {0, 0}, {-1, -1, 11, 11}},
        {RESIZE, {12, 12}, TOP_LEFT, {0, 0}, {0, 0, 12, 12}},    {RESIZE, {12, 12}, RIGHT, {0, 0}, {2, -1, 14, 11}},
        {RESIZE, {12, 12}, BOTTOM, {0, 0}, {-1, 2, 11, 14}},     {RESIZE, {8, 8}, CENTRE, {0, 0}, {1, 1, 9, 9}},
        {RESIZE, {20, 10}, TOP_LEFT, {0, 0}, {0, 0, 20, 10}},    {RESIZE, {-2, 10}, TOP_LEFT, {0, 0}, {0, 0, -2, 10}},
        {RESIZE, {12, 12}, CENTRE, {3, 4}, {-4, -5, 8, 7}},
    };
    for (const Row& row : rows) {
        const Input in = {FloatRect(0, 0, 10, 10), row.amount, row.pin, row.offset};
        for (const Form& form : FORMS) {
            if (form.family != row.family || (form.oneFloat && row.amount.x != row.amount.y)) continue;
            FloatRect result(in.rect);
            form.run(result, in);
            EXPECT_TRUE(same(result, row.expected)) << form.name << " pin " << row.pin;
        }
    }
}

TEST(PinnedResizing, AnOffsetHoldsAHighSide) {
    const FloatRect rect(0, 0, 10, 10);
    EXPECT_TRUE(same(rect.inflatedCopy(1, Vorn::RectPoint::CENTRE, 1, 1), Four{-2, -2, 10, 10}));
    EXPECT_TRUE(same(rect.resizedCopy(12, Vorn::RectPoint::TOP_LEFT, 2, 2), Four{-2, -2, 10, 10}));
}

TEST(PinnedResizing, GrowthStaysInDoubleUntilTheLowSideIsKnown) {
    // 1 - 33554432 is exact in double only.
    FloatRect rect(1, 0, 33554432, 1);
    rect.resize(1, 1, Vorn::RectPoint::RIGHT, 0, 0);
    EXPECT_TRUE(same(rect, Four{-33554428, 0, -33554428, 1}));
}

TEST(PinnedResizing, CopiesLeaveTheSourceAndMayGoToIt) {
    const FloatRect source(0, 0, 10, 10);
    FloatRect out(9.0f);
    source.inflatedCopy(out, 1, 0, 0, 0);
    EXPECT_TRUE(same(source, Four{0, 0, 10, 10}));
    EXPECT_TRUE(same(out, Four{-1, -1, 11, 11}));
    FloatRect itself(source);
    itself.inflatedCopy(itself, 1, 0, 0, 0);
    EXPECT_TRUE(same(itself, Four{-1, -1, 11, 11}));
    itself = source;
    itself.resizedCopy(itself, 12, 0, 0, 0);
    EXPECT_TRUE(same(itself, Four{-1, -1, 11, 11}));
}

TEST(PinnedResizing, PinsHaveTheirValues) {
    using namespace Vorn::RectPoint;
    static_assert(CENTRE == 0u && LEFT == 1u && TOP == 2u && RIGHT == 4u && BOTTOM == 8u);
    static_assert(TOP_LEFT == 3u && TOP_RIGHT == 6u && BOTTOM_LEFT == 9u && BOTTOM_RIGHT == 12u);
}

} // namespace
