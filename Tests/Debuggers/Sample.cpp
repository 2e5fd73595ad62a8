// Values that gdb looks at; see Expected.txt.
#include <Vorn/Vorn.h>

#include <cstring>
#include <string>
#include <utility>

namespace {

// gdb stops here and looks at the caller.
[[gnu::noinline]] void stopHere() { asm volatile(""); }

// What gdb finds before a constructor has run: an object of any bytes.
template <class T>
union Unconstructed {
    Unconstructed() { std::memset(bytes, 0xA5, sizeof(bytes)); }
    ~Unconstructed() {}

    unsigned char bytes[sizeof(T)];
    T value;
};

} // namespace

struct Panel : Vorn::TreeNode<Panel> {
    explicit Panel(int panelWidth) : width(panelWidth) {}
    void onPress(int) {}
    int onAsk() { return width; }

    int width;
};

void logPress(int) {}
void logFirst(int) {}
void logLast(int) {}

void showText() {
    const Vorn::String nullString;
    const Vorn::String emptyString = Vorn::String::getEmptyString();
    const Vorn::String utf8("K\xC3\xB6ln \"am\" Rhein");
    const Vorn::String utf16(u"\u041A\u0451\u043B\u044C\u043D \U0001F600");
    const Vorn::String withNull("a\xC0\x80z");
    const Vorn::String part("unterminated", 5);
    const Vorn::StringData& record = *utf16.getData();
    Vorn::String movedTo("moved");
    const Vorn::String movedFrom = std::move(movedTo);
    Vorn::UTF8String edited("edit");
    edited += "ed";

    const Vorn::ExceptionString nullText;
    const Vorn::ExceptionString literal("literal", 7);
    const Vorn::ExceptionString joined(literal + Vorn::ExceptionString(" joined", 7));
    const Vorn::AllExceptions emptyFailure;
    const auto text = [](const char* units) {
        return Vorn::ExceptionString(units, static_cast<int>(std::strlen(units)));
    };
    const Vorn::Exception<4> failure(text("::Vorn::E::PARAMETER"), text("Source/Panel"), text("Panel::load"),
                                     text("__LINE__"), 12, text("no such \"panel\""));

    const Vorn::TextView emptyView;
    const Vorn::TextView view = utf16;
    Vorn::TextBuilder builder;
    builder.append("width ", 12);
    const Vorn::TextBuilder emptyBuilder;
    const Vorn::Name name("panel.width");
    const Vorn::Name emptyName;
    const Vorn::CodePoint point(U'\u041A');

    const Unconstructed<Vorn::String> corruptString;
    const Unconstructed<Vorn::StringData> corruptRecord;
    const Unconstructed<Vorn::ExceptionString> corruptText;
    const Unconstructed<Vorn::Exception<2>> corruptFailure;
    const Unconstructed<Vorn::TextView> corruptView;
    const Unconstructed<Vorn::TextBuilder> corruptBuilder;
    const Unconstructed<Vorn::Name> corruptName;

    stopHere();
}

void showObjects() {
    const Vorn::SharedPtr<Panel> nullPointer;
    const Vorn::SharedPtr<Panel> root = Vorn::makeShared<Panel>(1);
    const Vorn::SharedPtr<Panel> child = Vorn::makeShared<Panel>(2);
    root->append(Vorn::makeShared<Panel>(3));
    root->append(child);
    child->append(Vorn::makeShared<Panel>(4));
    Panel& leaf = child->getChild(0);
    const Vorn::WeakPtr<Panel> nullWeak;
    const Vorn::WeakPtr<Panel> weak(child);
    Vorn::SharedPtr<int> number = Vorn::makeSharedThreadsafe<int>(7);
    const Vorn::WeakPtr<int> expired(number);
    const Vorn::SharedPtr<int> moved = std::move(number);
    Vorn::SharedPtr<int> brief = Vorn::makeShared<int>(8);
    const Vorn::WeakPtr<int> gone(brief);
    brief.reset();

    const Unconstructed<Vorn::SharedPtr<Panel>> corruptPointer;
    const Unconstructed<Vorn::WeakPtr<Panel>> corruptWeak;
    const Unconstructed<Vorn::TreeNode<Panel>> corruptNode;

    stopHere();
}

void showEvents() {
    const Vorn::SharedPtr<Panel> panel = Vorn::makeShared<Panel>(5);
    Panel local(6);
    int presses = 0;
    const Vorn::Delegate<void, int> emptyDelegate;
    const auto method = Vorn::Delegate<void, int>::bind<&Panel::onPress>(local);
    const Vorn::Delegate<void, int> function(&logPress);
    const Vorn::Delegate<void, int> callable([&presses](int width) { presses += width; });

    Vorn::Event<int> emptyEvent;
    Vorn::Event<int> pressed;
    Vorn::Connection last;
    Vorn::Connection added;
    pressed.add<&Panel::onPress>(local);
    pressed.add<&Panel::onPress>(Vorn::WeakPtr<Panel>(panel), 3);
    pressed.add(
        [&](int) {
            if (presses++ != 0) return;
            added = pressed.add(&logLast, 9);
            last.disconnect();
            stopHere();
        },
        4);
    last = pressed.add<&logPress>(8);
    const Vorn::Connection once = pressed.once(&logFirst, 7);
    const Vorn::ScopedBlock blocked(once);
    Vorn::ResultEvent<int> asked;
    asked.add<&Panel::onAsk>(panel);
    asked.disable();

    const Unconstructed<Vorn::Delegate<void, int>> corruptDelegate;
    const Unconstructed<Vorn::Event<int>> corruptEvent;
    const Unconstructed<Vorn::Connection> corruptConnection;

    stopHere();
    pressed(1);
}

void showGeometry() {
    const Vorn::Vector2 vector(1.5f, -2.0f);
    const Vorn::ComplexAngle angle(0.0f, 1.0f);
    const Vorn::FloatRect rect(1.0f, 2.0f, 11.0f, 7.5f);
    const Vorn::Matrix3 matrix = Vorn::Matrix3::IDENTITY;
    const Vorn::Vector2CornerRect corners = {{vector, vector, vector, vector}};

    const Unconstructed<Vorn::FloatRect> corruptRect;

    stopHere();
}

int main() {
    showText();
    showObjects();
    showEvents();
    showGeometry();
}
