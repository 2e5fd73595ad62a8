// HudFile: reads and writes a display as text.
//
//     # A comment.
//     screen = 640, 360
//     night = 16213E                the colour "night", red, green and blue as hexadecimal digits
//
//     [crew]                        a widget
//     in = bridge                   its parent, which stands before it; the screen if there is none
//     at = top-left                 the side of the parent, or "centre"
//     size = 160, 24                in pixels
//     margin = 8, 8
//     fill = night
//     level = 0.75                  makes it a gauge, from 0 to 1
//     label = 船员 👩‍✈️
//
// What is written is read back as it was, each number bit for bit.
#pragma once

#include "Widget.h"

#include <Vorn/String/String.h>
#include <Vorn/Text/Name.h>
#include <Vorn/Text/TextView.h>

#include <map>
#include <vector>

struct Hud {
    std::map<Vorn::Name, unsigned int> colours; // red, green and blue from the highest bits
    Vorn::SharedPtr<Widget> screen;
    std::vector<Vorn::String> problems; // lines that were skipped, with the reason
};

/// Reads a display. Lines that cannot be read are skipped; lines that are not valid UTF-8 are read with U+FFFD in place
/// of what is malformed.
Hud readHud(Vorn::TextView source);

/// Writes a display without its problems.
Vorn::String writeHud(const Hud& hud);

/// Returns the text of a colour, six hexadecimal digits.
Vorn::String colourText(unsigned int colour);
