// One run of the program.
#pragma once

/// Starts MagickCore, reads the command line, converts, prints the result line. Returns the exit
/// status: 0 when the image was written or help was asked for, 1 otherwise. words[0] is the
/// program, words[count] is null.
int RunConverter(int count, const char* const* words);
