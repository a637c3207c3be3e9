#include "draw/drawing_globals.h"

CString FONT_NAME("Courier");
long FONT_WIDTH = 0;
long FONT_HEIGHT = 0;
int iVerbose = 0;
