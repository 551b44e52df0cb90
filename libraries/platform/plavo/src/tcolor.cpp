#include "tcolor.h"

namespace Plavo {

namespace {
// Chosen to be told apart on a white background and when printed in grey.
const QRgb kPalette[] = {
    0xff1f77b4, 0xffd62728, 0xff2ca02c, 0xffff7f0e, 0xff9467bd, 0xff8c564b, 0xffe377c2, 0xff7f7f7f,
    0xffbcbd22, 0xff17becf, 0xff393b79, 0xffad494a, 0xff637939, 0xff8c6d31, 0xff7b4173, 0xff3182bd,
};
constexpr int kPaletteSize = int(sizeof(kPalette) / sizeof(kPalette[0]));

int wrap(qint64 index, qint64 size)
{
    const qint64 r = index % size;
    return int(r < 0 ? r + size : r);
}
} // namespace

int TColor::paletteSize()
{
    return kPaletteSize;
}

QColor TColor::paletteColor(int index)
{
    return QColor::fromRgb(kPalette[wrap(index, kPaletteSize)]);
}

QColor TColor::colorGet(int index, int count)
{
    if (count <= kPaletteSize)
        return paletteColor(index);
    const int position = wrap(index, count);
    const int hue = int(qint64(position) * 360 / count);
    // Alternate the value so that neighbouring hues of a long series differ.
    return QColor::fromHsv(hue, 200, position % 2 ? 170 : 230);
}

} // namespace Plavo
