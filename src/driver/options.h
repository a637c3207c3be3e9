// The command line: from words to the settings.
#pragma once

#include "image/color_type.h"

/// Fills the process-wide settings from the command line. words[0] is the program, words[count] is null.
///
/// An option's value is the word behind it, whatever that is; as the last word an option has the null
/// for a value. Numbers that fail to parse, unknown words and missing values are not reported: see the
/// quirks in options.cpp. Keeps pointers into `words`. Prints nothing but the usage text, once for
/// each "-help" that it meets.
void ReadArgs(int count, const char* const* words);

/// Prints the usage text on standard output.
void printusage();

/// The pixel format named "M08" or "M16"; colour for every other name and for null.
COLOR_TYPE String2Color(const char* name);

/// The bits of one sample: 16 for "M16", else 8.
int Color2BitsUsed(COLOR_TYPE colorType);
