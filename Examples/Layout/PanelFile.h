// PanelFile: a text file that describes nested panels.
//
//     # a comment
//     page 960 640 fill FAFAFA
//     "Studio" inset 12                                  # fills the page
//       "Tools" share 0 0 0.25 1 gap 4 fill 2F4858        # indented by two blanks: inside "Studio"
//       "Uhr" size 120 60 pin bottom-right turn 8
//
// After the name, in any order:
//
//     share LEFT TOP RIGHT BOTTOM   part of the area of the outer panel, as fractions; 0 0 1 1 by default
//     gap WIDTH                     free space around the panel
//     size WIDTH HEIGHT             its size, with the pin of `pin`
//     pin PLACE                     centre (the default), left, top, right, bottom, top-left, top-right, bottom-left,
//                                   bottom-right: the point that stays where `share` and `gap` put it
//     offset X Y                    moves it right and down
//     inset WIDTH                   free space inside, around its own panels
//     turn DEGREES                  rotates it clockwise about its centre, with its inner panels
//     zoom FACTOR                   scales it about its centre, with its inner panels
//     fill RRGGBB                   its colour
#pragma once

#include <Vorn/FloatRect.h>
#include <Vorn/String/String.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// The description of a panel in its line.
struct Panel {
    unsigned int line = 0;
    std::optional<std::size_t> outer; // index of the outer panel, which is less than its own
    Vorn::String name;                // refers to the text of the file
    Vorn::FloatRect share{0.0f, 0.0f, 1.0f, 1.0f};
    float gap = 0.0f;
    std::optional<Vorn::Vector2> size;
    unsigned int pin = Vorn::RectPoint::CENTRE;
    Vorn::Vector2 offset = Vorn::Vector2::ZERO;
    float inset = 0.0f;
    float turn = 0.0f; // degrees
    float zoom = 1.0f;
    unsigned int fill = 0xFFFFFF; // red, green and blue, 8 bits each
};

/// A line that was skipped, and the reason.
struct SkippedLine {
    unsigned int line;
    std::string reason;
};

/// The contents of a file. It can be moved, but not copied or assigned: the names refer to `text`.
struct PanelFile {
    PanelFile() = default;
    PanelFile(PanelFile&&) = default;

    std::vector<unsigned char> text; // with a terminator
    Vorn::Vector2 pageSize{800.0f, 600.0f};
    unsigned int pageFill = 0xFFFFFF;
    std::vector<Panel> panels; // each after its outer panel
    std::vector<SkippedLine> skipped;
};

/// Reads a file in UTF-8. Malformed lines are skipped, together with the panels inside theirs.
/// Throws `std::runtime_error` if the file cannot be read.
PanelFile readPanelFile(const std::filesystem::path& path);
