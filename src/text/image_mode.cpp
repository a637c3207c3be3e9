#include "text/image_mode.h"

int ImageMode2Int(IMAGE_MODE mode) {
  switch (mode) {
    case IMAGE_FIT:
      return 1;
    case IMAGE_ZOOM:
      return 0;
    case IMAGE_ZOOM_ACTUAL:
      return 2;
    default:
      return 3;
  }
}

IMAGE_MODE Int2ImageMode(int code) {
  switch (code) {
    case 0:
      return IMAGE_ZOOM;
    case 2:
      return IMAGE_ZOOM_ACTUAL;
    case 3:
      return IMAGE_FIT_ACTUAL;
    default:
      return IMAGE_FIT;
  }
}

bool IsImageModeFit(IMAGE_MODE mode) { return mode == IMAGE_FIT || mode == IMAGE_FIT_ACTUAL; }
bool IsImageModeZoom(IMAGE_MODE mode) { return !IsImageModeFit(mode); }
bool IsImageModeActual(IMAGE_MODE mode) { return mode == IMAGE_FIT_ACTUAL || mode == IMAGE_ZOOM_ACTUAL; }
