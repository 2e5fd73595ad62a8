// PanelLayout: the positions of the panels of a file on the page.
#pragma once

#include "PanelFile.h"

#include <Vorn/FloatRect.h>

#include <vector>

/// A panel with its position. The areas are those before rotation and scaling, which `toPage` applies.
struct PlacedPanel {
    Vorn::FloatRect area{0.0f};        // of size 0 if there was no space
    Vorn::FloatRect inside{0.0f};      // the area for its own panels
    Vorn::FloatRect share{0.0f};       // `area` as fractions of the area of the outer panel
    Vorn::Matrix3 toPage{0.0f};        // its own rotation and scale, then those of the outer panels
    Vorn::Vector2CornerRect corners{}; // corners of `area` on the page
    Vorn::FloatRect box{0.0f};         // the bounding box of `corners`
    Vorn::FloatRect hidden{0.0f};      // the part beyond each side of the page
    bool holdsPanels = false;          // reserves space for the name above them
    bool hasRoom() const { return area.getWidth() > 0.0f && area.getHeight() > 0.0f; }
};

/// Two panels of the same outer panel whose boxes overlap.
struct Overlap {
    std::size_t first;
    std::size_t second;
    Vorn::FloatRect common;
};

struct PanelLayout {
    Vorn::FloatRect page{0.0f};
    std::vector<PlacedPanel> panels; // in the order of the file
    std::vector<Overlap> overlaps;
};

/// The height of the strip for the name, at the top of a panel that contains others.
inline constexpr float TITLE_HEIGHT = 26.0f;

/// Computes the layout of all panels of a file.
PanelLayout layOut(const PanelFile& file);
