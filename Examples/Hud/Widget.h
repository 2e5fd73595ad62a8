// Widget: one element of the display, a node in the tree of widgets.
#pragma once

#include <Vorn/FloatRect.h>
#include <Vorn/RectPoint.h>
#include <Vorn/SharedObjects/Event.h>
#include <Vorn/SharedObjects/TreeNode.h>
#include <Vorn/String/String.h>
#include <Vorn/Text/Name.h>

#include <optional>

class Widget : public Vorn::TreeNode<Widget> {
public:
    /// Listeners are given the widget. They may close it.
    using Action = Vorn::Event<Widget&>;

    explicit Widget(Vorn::Name name) : id(name) {}

    /// Computes the areas of all widgets below this one.
    void layOut();

    /// Returns the topmost widget at a point, this one included; null if there is none.
    Widget* at(const Vorn::Vector2& point);

    /// Removes this widget with all below it, after their `closed` events, children first. It is destroyed if nobody
    /// else owns it.
    void close();

    const Vorn::Name id;
    Vorn::String label;
    unsigned int pin = Vorn::RectPoint::CENTRE; // the place in the area of the parent
    Vorn::Vector2 size{0.0f};
    Vorn::Vector2 margin{0.0f};
    Vorn::Name fill;            // a colour of the theme; no colour if empty
    std::optional<float> level; // from 0 to 1, of a gauge

    Vorn::FloatRect area{0.0f}; // what `layOut` has computed

    Action hovered;
    Action clicked;
    Action closed;
};
