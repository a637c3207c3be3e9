// The report's text file.
#pragma once

#include "types/types.h"

class CAnnotationSet;

/// Reads the report file `path` into `set`, whose annotations measure themselves.
/// sizeImg  size of the picture that the report is about, pixels
/// Returns 1 when the file could be read, its view is complete and it passes no limit (see
/// SetAnnotationSetReport). Returns 0 for a null path, a file that is missing, empty, no regular file or larger
/// than kMostReportBytes (annotation/report_limits.h), and when memory for the text runs short. Throws
/// std::bad_alloc only, from the reading of the text.
int ReadAnnotation(CAnnotationSet& set, const char* path, CSize sizeImg);
