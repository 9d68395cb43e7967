#pragma once

/// Gives the application object, which must exist, what is the same for every window: name and
/// icon, the language to begin with, a font that holds Japanese characters.
void PrepareApplication();
