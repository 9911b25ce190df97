#pragma once

/// The fonts of the panel: links in the folder that the platform plug-in reads, and their
/// registration with the application. GUI thread only. Nothing is reported when a font is missing;
/// texts then fall back to whatever family there is.
namespace Fonts {

/// Makes the terminal's fonts.conf that of the process, unless the environment names another. To be
/// called before the first window, when the font system reads it.
void configure();
/// Renews the links of the base fonts and registers them.
void installBase();
/// Registers the base fonts as they are linked.
void registerBase();
/// Links and registers the display fonts of the third language.
void installJapanese();
/// Removes the display fonts' files if they are there, to free their space.
void removeJapanese();

}  // namespace Fonts
