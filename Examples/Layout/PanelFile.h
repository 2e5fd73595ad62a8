// PanelFile: a text file that describes nested panels.
//
//     # a comment
//     page 960 640 fill FAFAFA
//     "Studio" inset 12                                  # fills the page
//       "Tools" share 0 0 0.25 1 gap 4 fill 2F4858        # two blanks further right: inside "Studio"
//       "Uhr" size 120 60 pin bottom-right turn 8
//
// Behind the name, in any order:
//
//     share LEFT TOP RIGHT BOTTOM   fractions of the outer panel's area that the panel takes, 0 0 1 1 unless told
//     gap WIDTH                     space to keep free around the panel
//     size WIDTH HEIGHT             its size instead, pinned as told by `pin`
//     pin PLACE                     centre (if not told), left, top, right, bottom, top-left, top-right, bottom-left,
//                                   bottom-right: what stays where `share` and `gap` put it
//     offset X Y                    moves it right and down
//     inset WIDTH                   space to keep free inside, around its own panels
//     turn DEGREES                  turns it clockwise about its centre, with all that it holds
//     zoom FACTOR                   enlarges it about its centre, with all that it holds
//     fill RRGGBB                   its colour
#pragma once

#include <Vorn/FloatRect.h>
#include <Vorn/String/String.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// A panel as its line describes it.
struct Panel {
    unsigned int line = 0;
    std::optional<std::size_t> outer; // index of the panel around it, which is lower than its own
    Vorn::String name;                // points into the file's text
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

/// A line that was skipped, and why.
struct SkippedLine {
    unsigned int line;
    std::string reason;
};

/// What a file holds. It can be handed on, but neither copied nor assigned: the names point into `text`.
struct PanelFile {
    PanelFile() = default;
    PanelFile(PanelFile&&) = default;

    std::vector<unsigned char> text; // with a zero byte at the end
    Vorn::Vector2 pageSize{800.0f, 600.0f};
    unsigned int pageFill = 0xFFFFFF;
    std::vector<Panel> panels; // each behind the panel around it
    std::vector<SkippedLine> skipped;
};

/// Reads a file in UTF-8. Throws `std::runtime_error` if it cannot be read; lines that make no sense are skipped, and
/// the panels inside theirs with them.
PanelFile readPanelFile(const std::filesystem::path& path);
