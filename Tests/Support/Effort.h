// How much of a large set of rows runs. A raised failure costs ten times as much under a sanitizer, so that there a
// part of the rows has to do; the other presets run all of them.
#pragma once

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr unsigned int ROW_STEP = 7;
#else
inline constexpr unsigned int ROW_STEP = 1;
#endif
