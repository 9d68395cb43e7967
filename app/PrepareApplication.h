#pragma once

/// Gives the application object, which must exist, what is the same for every window: name and
/// icon, Japanese texts of the toolkit's own dialogs, a font that holds Japanese characters.
void PrepareApplication();
