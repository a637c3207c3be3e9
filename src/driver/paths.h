// What a path's extension says about the file. Nothing is opened.
#pragma once

/// Each returns 1 when `path` is not null and the text from its last '.' on is exactly ".jpg", ".ei4" or
/// ".raw"; else 0. Case matters: "scan.JPG" is no ".jpg".
int IsJpg(const char* path);
int IsEI4(const char* path);
int IsRAW(const char* path);
