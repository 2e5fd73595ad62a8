// PanelLayout: where the panels of a file come to lie on the page.
#pragma once

#include "PanelFile.h"

#include <Vorn/FloatRect.h>

#include <vector>

/// A panel in its place. The areas are those that it has before anything is turned or zoomed; `toPage` does that.
struct PlacedPanel {
    Vorn::FloatRect area{0.0f};        // without any size if there was no room
    Vorn::FloatRect inside{0.0f};      // where its own panels may go
    Vorn::FloatRect share{0.0f};       // `area` in fractions of the area that it was given from
    Vorn::Matrix3 toPage{0.0f};        // its own turn and zoom, then those of the panels around it
    Vorn::Vector2CornerRect corners{}; // of `area`, on the page
    Vorn::FloatRect box{0.0f};         // the upright rectangle around `corners`
    Vorn::FloatRect hidden{0.0f};      // what the page cuts off on each side
    bool holdsPanels = false;          // leaves room for the name above them
    bool hasRoom() const { return area.getWidth() > 0.0f && area.getHeight() > 0.0f; }
};

/// Two panels of the same outer one whose boxes overlap.
struct Overlap {
    std::size_t first;
    std::size_t second;
    Vorn::FloatRect common;
};

struct PanelLayout {
    Vorn::FloatRect page{0.0f};
    std::vector<PlacedPanel> panels; // in the order of the file's
    std::vector<Overlap> overlaps;
};

/// Height of the strip at the top of a panel that holds others, where its name stands.
inline constexpr float TITLE_HEIGHT = 26.0f;

/// Lays out all panels of a file.
PanelLayout layOut(const PanelFile& file);
