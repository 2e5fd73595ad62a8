#include "Widget.h"

#include <Vorn/Geometry.h>

void Widget::layOut() {
    for (Widget& widget : depthFirst())
        if (&widget != this)
            widget.area = Vorn::anchored(widget.getParent()->area, widget.size, widget.pin, widget.margin);
}

Widget* Widget::at(const Vorn::Vector2& point) {
    Widget* topmost = nullptr;
    for (Widget& widget : depthFirst()) // later widgets cover earlier ones
        if (widget.area.isInside(point)) topmost = &widget;
    return topmost;
}

void Widget::close() {
    const Vorn::SharedPtr<Widget> held(this); // a listener may close it as well
    for (Widget& widget : postOrder()) widget.closed(widget);
    detach();
}
