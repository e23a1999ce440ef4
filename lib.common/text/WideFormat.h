#pragma once

#include <cstdarg>

// printf for UTF-16 formats, with the wide-format conventions of the
// platform the library was first written for: %s and %c take wide
// arguments, %hs and %hc narrow (UTF-8) ones, %ls, %ws, %S and %C as well.
// Numbers go through the C library. Writes at most size - 1 characters and
// a terminator; returns the characters written. Internal to the library.
int WideVFormat(char16_t* target, int size, char16_t const* format, va_list arguments);
