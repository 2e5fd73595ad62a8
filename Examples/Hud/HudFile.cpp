#include "HudFile.h"

#include <Vorn/Vorn.h>

#include <stdexcept>
#include <unordered_map>

namespace {

using Vorn::concat;
using Vorn::Name;
using Vorn::String;
using Vorn::TextView;
using Vorn::Vector2;
namespace Pin = Vorn::RectPoint;

constexpr struct {
    const char* name;
    unsigned int pin;
} PINS[] = {{"centre", Pin::CENTRE},
            {"left", Pin::LEFT},
            {"top", Pin::TOP},
            {"right", Pin::RIGHT},
            {"bottom", Pin::BOTTOM},
            {"top-left", Pin::TOP_LEFT},
            {"top-right", Pin::TOP_RIGHT},
            {"bottom-left", Pin::BOTTOM_LEFT},
            {"bottom-right", Pin::BOTTOM_RIGHT}};

/// The reason why a line is skipped.
struct HudError {
    String reason;
};

float readNumber(TextView text, float least, float most) {
    const std::optional<float> value = Vorn::parse<float>(trim(text));
    if (!value || !(*value >= least && *value <= most))
        throw HudError{concat("a number from ", least, " to ", most, " is expected, not \"", text, '"')};
    return *value;
}

Vector2 readVector(TextView text, float least) {
    const auto parts = splitOnce(text, ',');
    if (!parts) throw HudError{concat("two numbers are expected, not \"", text, '"')};
    return {readNumber(parts->first, least, 10000.0f), readNumber(parts->second, least, 10000.0f)};
}

unsigned int readPin(TextView text) {
    for (const auto& known : PINS)
        if (equals(text, known.name)) return known.pin;
    throw HudError{concat("there is no pin \"", text, '"')};
}

const char* nameOfPin(unsigned int pin) {
    for (const auto& known : PINS)
        if (known.pin == pin) return known.name;
    return "";
}

/// Reads a display line by line.
class Reader {
public:
    Reader() {
        m_hud.screen = Vorn::makeShared<Widget>(Name("screen"));
        m_widgets.emplace(m_hud.screen->id, m_hud.screen.get());
    }

    void read(TextView line) {
        if (line.isEmpty() || startsWith(line, '#')) return;
        if (startsWith(line, '[')) return beginWidget(trim(removeSuffix(removePrefix(line, "["), "]")));
        const auto pair = splitOnce(line, '=');
        if (!pair) throw HudError{concat("there is no \"=\" in \"", line, '"')};
        const TextView key = trim(pair->first);
        const TextView value = trim(pair->second);
        if (m_isSkipping) return;
        if (m_widget) {
            readProperty(key, value);
        } else if (equals(key, "screen")) {
            m_hud.screen->size = readVector(value, 1.0f);
            m_hud.screen->area = Vorn::FloatRect(Vector2::ZERO, m_hud.screen->size);
        } else {
            const std::optional<unsigned int> colour = Vorn::parse<unsigned int>(value, 16);
            if (!colour || codePointCount(value) != 6)
                throw HudError{concat("six hexadecimal digits are expected, not \"", value, '"')};
            m_hud.colours[Name(key)] = *colour;
        }
    }

    Hud finish() { return std::move(m_hud); }
    void report(unsigned int line, const String& reason) {
        m_hud.problems.push_back(concat("line ", line, ": ", reason));
    }

private:
    void beginWidget(TextView text) {
        const Name id(text);
        m_isSkipping = id.isEmpty() || m_widgets.count(id);
        if (m_isSkipping) throw HudError{concat("the widget \"", text, "\" is skipped: its name is not new")};
        const auto widget = Vorn::makeShared<Widget>(id);
        m_hud.screen->append(widget);
        m_widget = widget.get();
        m_widgets.emplace(id, m_widget);
    }

    void readProperty(TextView key, TextView value) {
        if (equals(key, "in")) {
            const auto parent = find(value);
            parent->append(Vorn::SharedPtr<Widget>(m_widget));
        } else if (equals(key, "at")) {
            m_widget->pin = readPin(value);
        } else if (equals(key, "size")) {
            m_widget->size = readVector(value, 0.0f);
        } else if (equals(key, "margin")) {
            m_widget->margin = readVector(value, -10000.0f);
        } else if (equals(key, "fill")) {
            const std::optional<Name> colour = Name::lookUp(value);
            if (!colour || !m_hud.colours.count(*colour)) throw HudError{concat("there is no colour \"", value, '"')};
            m_widget->fill = *colour;
        } else if (equals(key, "level")) {
            m_widget->level = readNumber(value, 0.0f, 1.0f);
        } else if (equals(key, "label")) {
            m_widget->label = Vorn::makeString(value);
        } else {
            throw HudError{concat("there is no property \"", key, '"')};
        }
    }

    Widget* find(TextView text) const {
        const auto found = m_widgets.find(Name::lookUp(text).value_or(Name()));
        if (found == m_widgets.end() || found->second == m_widget)
            throw HudError{concat("there is no widget \"", text, "\" before this one")};
        return found->second;
    }

    Hud m_hud;
    std::unordered_map<Name, Widget*> m_widgets;
    Widget* m_widget = nullptr; // null before the first one
    bool m_isSkipping = false;  // until the next widget
};

void write(Vorn::TextBuilder& text, const Widget& widget) {
    text.append("\n[", widget.id, "]\n");
    if (widget.getDepth() > 1) text.append("in = ", widget.getParent()->id, '\n');
    text.append("at = ", nameOfPin(widget.pin), '\n');
    text.append("size = ", widget.size.x, ", ", widget.size.y, '\n');
    text.append("margin = ", widget.margin.x, ", ", widget.margin.y, '\n');
    if (!widget.fill.isEmpty()) text.append("fill = ", widget.fill, '\n');
    if (widget.level) text.append("level = ", *widget.level, '\n');
    if (!widget.label.isEmpty()) text.append("label = ", widget.label, '\n');
}

} // namespace

Hud readHud(TextView source) {
    Reader reader;
    unsigned int number = 0;
    for (const TextView line : lines(source)) {
        ++number;
        try {
            const Vorn::MadeString made = Vorn::tryMakeString(line);
            if (!made) reader.report(number, concat(made.error, " at byte ", made.errorOffset));
            const String replaced = made ? made.text : Vorn::makeStringReplacing(line);
            reader.read(trim(TextView(replaced)));
        } catch (const HudError& error) {
            reader.report(number, error.reason);
        }
    }
    return reader.finish();
}

String writeHud(const Hud& hud) {
    Vorn::TextBuilder text;
    text.append("screen = ", hud.screen->size.x, ", ", hud.screen->size.y, '\n');
    for (const auto& [name, colour] : hud.colours) text.append(name, " = ", colourText(colour), '\n');
    for (const Widget& widget : std::as_const(*hud.screen).depthFirst())
        if (widget.getParent()) write(text, widget);
    return text.take();
}

String colourText(unsigned int colour) { return toUpperASCII(padStart(Vorn::toText(colour, 16), 6, U'0')); }
