// The rows of Documentation/Surprises.md as code: one table for each area of the page, one entry for each row, in
// order.
#pragma once

#include "Support/Report.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// A row of the page.
struct Surprise {
    const char* operation; ///< its first cell, as written
    void (*does)();        ///< runs the cell "What it does"
    void (*instead)();     ///< runs the cell "What to write instead"; null if that names nothing to write
};

using Surprises = std::vector<Surprise>;

extern const Surprises FAILURE_REPORTING_SURPRISES;
extern const Surprises CODE_POINT_SURPRISES;
extern const Surprises CONVERSION_SURPRISES;
extern const Surprises STRING_SURPRISES;
extern const Surprises QUERY_SURPRISES;
extern const Surprises EDITING_SURPRISES;
extern const Surprises INTERNING_SURPRISES;
extern const Surprises NUMBER_SURPRISES;
extern const Surprises GEOMETRY_SURPRISES;
extern const Surprises SHARED_OBJECT_SURPRISES;
