// Where MagickCore finds the font of all text. A plain installation of it does not know the name "Courier".
#pragma once

/// Names the folder of the program's own font list to MagickCore, through the environment variable
/// MAGICK_CONFIGURE_PATH: in front of what the user has put there, so that a "Courier" of the user's own, or of the
/// system's, still wins. The folder has a fixed place relative to the running program, installed and built alike.
/// To be called before the first look-up of a font, while there is one thread; a second call adds nothing.
/// Returns false, and changes nothing, when there is no such folder or its name holds a colon: text then takes the
/// font that MagickCore falls back to, or none. Throws std::bad_alloc.
bool AddFontFolder();
