#pragma once

// KXWAN_API marks what the shared library exports; everything else is hidden.
// KXWAN_PRINTF(format, first) lets the compiler check a printf-like call: the positions, counted
// from 1, of the text and of its first argument.
#define KXWAN_API __attribute__((visibility("default")))
#define KXWAN_PRINTF(text, first) __attribute__((format(printf, text, first)))
