#pragma once

/// The format of the file being edited, by its extension. FormatType{} is neither.
enum class FormatType : int { WAV = 1, MP3 = 2 };
