#pragma once

#include <QIcon>

/// An icon of a single colour, that of the palette's button text: right on a light and on a dark
/// background, greyed where it is disabled, sharp at every size.
/// @param path  of an SVG, only whose opacity counts
QIcon MakeTintedIcon(const QString& path);
