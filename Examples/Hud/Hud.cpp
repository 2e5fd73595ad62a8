// Hud: a display of widgets that is read from a file, used, saved, loaded and drawn.
//
//     Hud [INPUT [OUTPUT]]
//
// INPUT is a file in the format of HudFile.h, by default the sample beside this source. OUTPUT is the SVG picture of
// the display as it is in the end, by default Hud.svg. The program prints the display, what happens to it, and what is
// saved. It returns 1 if a file cannot be read or written.
#include "HudFile.h"
#include "HudPicture.h"

#include <Vorn/Exception.h>
#include <Vorn/GeometryStreams.h>
#include <Vorn/Vorn.h>

#include <algorithm>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace {

using Vorn::Name;
using Vorn::SharedPtr;
using Vorn::String;
using Vorn::Vector2;

void print(const Hud& hud) {
    for (const Widget& widget : std::as_const(*hud.screen).depthFirst()) {
        const String name = Vorn::repeat("  ", static_cast<unsigned int>(widget.getDepth())) + widget.id;
        std::cout << std::left << std::setw(14) << name << std::setw(30) << widget.area << widget.label << '\n';
    }
}

/// The rules of the game: what widgets do when they are pointed at.
class Game {
public:
    explicit Game(Hud& hud) : m_hud(hud) {
        for (Widget& widget : m_hud.screen->depthFirst())
            widget.closed.add([](Widget& closed) { std::cout << "  closed: " << closed.id << '\n'; });

        // Buttons whose listeners destroy their own widget, and with it the event that is being called.
        if (Widget* const close = get("close")) close->clicked.add([](Widget& button) { button.getParent()->close(); });
        if (Widget* const start = get("start"))
            start->clicked.add([this](Widget& button) {
                m_hasStarted = true;
                button.close();
            });
        if (Widget* const hint = get("hint")) hint->hovered.once(&Widget::close);

        if (Widget* const fire = get("fire")) {
            fire->clicked.add<&Game::fire>(*this);
            m_sound = fire->clicked.add([] { std::cout << "  boom 💥\n"; }, -1);
        }
        if (Widget* const mute = get("mute")) {
            mute->clicked.add([this](Widget& button) {
                m_sound.isBlocked() ? m_sound.unblock() : m_sound.block();
                button.label = m_sound.isBlocked() ? VORN_TEXT("🔇") : VORN_TEXT("🔊");
            });
        }

        // These listeners leave the events when their widgets are destroyed.
        if (Widget* const enemy = get("enemy")) {
            m_fired.addWhileAlive(enemy, [enemy](float damage) {
                *enemy->level = std::max(0.0f, *enemy->level - damage);
                std::cout << "  enemy at " << *enemy->level << '\n';
                if (*enemy->level == 0.0f) enemy->close();
            });
            enemy->closed.add([this] { m_scored(100); });
        }
        if (Widget* const score = get("score")) {
            m_scored.addWhileAlive(score, [this, score](int points) {
                m_score += points;
                score->label = Vorn::concat("得分 ⭐ ", m_score);
            });
        }
    }

    Widget* get(Vorn::TextView name) {
        return m_hud.screen->find([id = Name::lookUp(name)](const Widget& widget) { return widget.id == id; });
    }

    void hover(const Vector2& point) {
        Widget* const widget = m_hud.screen->at(point);
        std::cout << "hover " << point << ": " << (widget ? widget->id : Name()) << '\n';
        if (widget) widget->hovered(*widget);
    }

    void click(const Vector2& point) {
        Widget* const widget = m_hud.screen->at(point);
        std::cout << "click " << point << ": " << (widget ? widget->id : Name()) << '\n';
        if (widget) widget->clicked(*widget);
    }

private:
    void fire() {
        if (!m_hasStarted) return;
        if (Widget* const fuel = get("fuel")) *fuel->level *= 0.9f;
        m_fired(0.11f);
    }

    Hud& m_hud;
    Vorn::Event<float> m_fired;
    Vorn::Event<int> m_scored;
    Vorn::Connection m_sound;
    int m_score = 0;
    bool m_hasStarted = false;
};

bool isSame(const Hud& a, const Hud& b) {
    const auto first = std::as_const(*a.screen).depthFirst();
    const auto second = std::as_const(*b.screen).depthFirst();
    return a.colours == b.colours && std::equal(first.begin(), first.end(), second.begin(), second.end(),
                                                [](const Widget& one, const Widget& other) {
                                                    return one.id == other.id && equals(one.label, other.label) &&
                                                           one.pin == other.pin && one.size == other.size &&
                                                           one.margin == other.margin && one.fill == other.fill &&
                                                           one.level == other.level && one.area == other.area &&
                                                           one.getDepth() == other.getDepth();
                                                });
}

std::string readFile(const char* path) {
    std::ifstream input(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
    if (!input) throw std::runtime_error(std::string("cannot read ") + path);
    return text;
}

void writeFile(const char* path, const String& text) {
    std::ofstream output(path, std::ios::binary);
    output << text;
    output.close();
    if (!output) throw std::runtime_error(std::string("cannot write ") + path);
}

Hud load(Vorn::TextView text) {
    Hud hud = readHud(text);
    hud.screen->layOut();
    return hud;
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount > 3) {
        std::cerr << "Usage: Hud [INPUT [OUTPUT]]\n";
        return 1;
    }
    try {
        const std::string source = readFile(argumentCount > 1 ? arguments[1] : HUD_SAMPLE);
        Hud hud = load(source);
        std::cout << "skipped: " << Vorn::join(hud.problems, "\n         ") << "\n\n";
        print(hud);
        std::cout << '\n';
        writeFile(argumentCount > 2 ? arguments[2] : "Hud.svg", drawPicture(hud));

        Game game(hud);
        game.hover(Vector2(20.0f, 320.0f));  // the hint
        game.hover(Vector2(20.0f, 320.0f));  // the screen behind it
        game.click(Vector2(600.0f, 320.0f)); // fire; the game has not started
        game.click(Vector2(320.0f, 220.0f)); // start
        game.click(Vector2(430.0f, 130.0f)); // close, which closes the dialog around it
        game.click(Vector2(600.0f, 320.0f));
        game.click(Vector2(500.0f, 320.0f)); // mute
        game.click(Vector2(600.0f, 320.0f));
        game.click(Vector2(600.0f, 320.0f)); // the enemy sinks
        game.click(Vector2(600.0f, 320.0f));

        const String saved = writeHud(hud);
        const Hud loaded = load(saved);
        std::cout << "\nsaved:\n"
                  << saved << "\nloaded: " << (isSame(hud, loaded) ? "the same" : "another one") << '\n';
    } catch (const std::exception& exception) {
        std::cerr << "Hud: " << exception.what() << '\n';
        return 1;
    }
    return 0;
}
