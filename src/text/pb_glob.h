// Everything that the reading of a report's text needs, at once.
#pragma once

#include "text/binary_code.h"
#include "text/extract.h"
#include "text/geometry.h"
#include "text/hex.h"
#include "text/image_mode.h"
#include "text/scanner.h"
#include "text/string_value.h"
#include "text/url_code.h"
