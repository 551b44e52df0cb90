#pragma once

#include "vnplavo_export.h"

#include <QColor>

namespace Plavo {

/// The plotting palette: distinct colours for the series or points of a plot.
class VNPLAVO_EXPORT TColor
{
public:
    /// The colour of item `index` among `count` items. Up to paletteSize()
    /// items take the fixed palette in order; beyond that the colours are
    /// spread evenly round the hue circle so that neighbours stay apart.
    /// Any index is accepted (it wraps, negatives included); a non-positive
    /// count reads as the palette size. Always a valid, opaque colour.
    static QColor colorGet(int index, int count);

    static int paletteSize();
    /// Palette entry `index`, wrapped into the palette.
    static QColor paletteColor(int index);
};

} // namespace Plavo
