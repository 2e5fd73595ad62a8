// Compiled once for each language level; VORN_LEVEL is the name of its function.
#include "Headers/LanguageLevels/Level.h"

#include "Vorn/Vorn.h"

#include <sstream>
#include <type_traits>

namespace {

using namespace Vorn;
using Facts = std::vector<std::pair<std::string, std::string>>;

template <class T>
void addType(Facts& facts, const char* name) {
    std::ostringstream text;
    text << sizeof(T) << " bytes, alignment " << alignof(T) << ", properties " << std::is_trivially_copyable<T>::value
         << std::is_standard_layout<T>::value << std::is_polymorphic<T>::value << std::is_abstract<T>::value
         << std::is_default_constructible<T>::value << std::is_nothrow_default_constructible<T>::value
         << std::is_copy_constructible<T>::value << std::is_nothrow_copy_constructible<T>::value
         << std::is_copy_assignable<T>::value << std::is_nothrow_copy_assignable<T>::value
         << std::is_nothrow_move_constructible<T>::value << std::is_nothrow_move_assignable<T>::value
         << std::is_nothrow_destructible<T>::value << std::is_aggregate<T>::value;
    facts.emplace_back(name, text.str());
}

template <class Value>
void addResult(Facts& facts, const char* name, const Value& value) {
    std::ostringstream text;
    text << std::hexfloat << value;
    facts.emplace_back(name, text.str());
}

// A number for all results of a function over codes, so that one difference shows.
template <class Function>
unsigned long long digest(unsigned int end, Function&& function) {
    unsigned long long sum = 14695981039346656037ull;
    for (unsigned int i = 0; i < end; ++i) sum = (sum ^ function(i)) * 1099511628211ull;
    return sum;
}

template <class T, class = void>
struct HasLess : std::false_type {};
template <class T>
struct HasLess<T, decltype(static_cast<void>(std::declval<const T&>() < std::declval<const T&>()))> : std::true_type {};

void addTypes(Facts& facts) {
#define ADD_TYPE(T) addType<T>(facts, #T)
    ADD_TYPE(ASCIITable);
    ADD_TYPE(AllExceptions);
    ADD_TYPE(ComplexAngle);
    ADD_TYPE(DelegateBase);
    ADD_TYPE(DelegateNode);
    ADD_TYPE(DelegatePOD);
    ADD_TYPE(DynamicObject);
    ADD_TYPE(Event<int>);
    ADD_TYPE(EventBase);
    ADD_TYPE(Exception<4>);
    ADD_TYPE(ExceptionString);
    ADD_TYPE(ExceptionStringJoiner);
    ADD_TYPE(FloatRect);
    ADD_TYPE(InterfaceBase);
    ADD_TYPE(Matrix3);
    ADD_TYPE(RefCounter);
    ADD_TYPE(SharedObjectBase);
    ADD_TYPE(SharedPtr<SharedCounter>);
    ADD_TYPE(String);
    ADD_TYPE(StringData);
    ADD_TYPE(StringDataBufferInfo);
    ADD_TYPE(StringOwnerEntry);
    ADD_TYPE(StringOwnerKey);
    ADD_TYPE(StringOwnerMap<UTF16Char>);
    ADD_TYPE(StringOwnerMap<unsigned char>);
    ADD_TYPE(TreeNodeShared);
    ADD_TYPE(UTF8String);
    ADD_TYPE(Vector2);
    ADD_TYPE(Vector2CornerRect);
    ADD_TYPE(WeakPtr<SharedCounter>);
    addType<Delegate<void, int>>(facts, "Delegate<void, int>");
    addType<Rect<float, float>>(facts, "Rect<float, float>");
    addType<XYPair<float, float>>(facts, "XYPair<float, float>");
#undef ADD_TYPE
}

void addResults(Facts& facts) {
    addResult(facts, "UTF8::getUTF8", digest(0x110100, [](unsigned int c) { return UTF8::getUTF8(c); }));
    addResult(facts, "UTF8::countUTF8", digest(0x110100, [](unsigned int c) { return UTF8::countUTF8(c); }));
    addResult(facts, "UTF16::getUTF16", digest(0x110100, [](unsigned int c) { return UTF16::getUTF16(c); }));
    addResult(facts, "UTF32::getUTF32Char",
              digest(0x10000, [](unsigned int c) { return UTF32::getUTF32Char(static_cast<UTF16Char>(c)); }));
    addResult(facts, "Vector2::length", Vector2(3.25f, -7.5f).length());
    addResult(facts, "ComplexAngle", (ComplexAngle(0.3f) * ComplexAngle(0.4f)).y);
    Matrix3 matrix;
    matrix.makeTransform(0.7f, Vector2(2.0f, 3.0f), Vector2(5.0f, 7.0f));
    addResult(facts, "Matrix3", (matrix * Vector2(0.1f, 0.2f)).x);
    FloatRect rect(0.1f, 0.2f, 10.3f, 20.4f);
    rect.inflate(1.1f, 2.2f, RectPoint::TOP_RIGHT, 0.3f, 0.4f);
    addResult(facts, "FloatRect::inflate", rect.left + rect.top + rect.right + rect.bottom);
    addResult(facts, "order of strings", HasLess<String>::value);
    addResult(facts, "order of rectangles", HasLess<FloatRect>::value);
    addResult(facts, "equality of delegates", Delegate<void, int>() == Delegate<void, int>());
    addResult(facts, "hash", std::hash<String>()(String("caf\xC3\xA9")));
}

Facts facts() {
    Facts all;
    addTypes(all);
    addResults(all);
    return all;
}

Signal::Listener listenerOf(const SharedPtr<SharedCounter>& counter) {
    return Signal::Listener::bindShared<&SharedCounter::add>(counter);
}
void call(Signal& signal, int value) { signal(value); }
SharedPtr<SharedCounter> make() { return makeShared<SharedCounter>(); }

String join(const String& a, const String& b) {
    String joined = a;
    joined += b;
    return joined;
}

void raise() {
    const bool isAlways = false;
    VORN_ASSERT(isAlways, "never!");
}

} // namespace

Level VORN_LEVEL() { return {__cplusplus, facts, listenerOf, call, make, join, raise}; }
