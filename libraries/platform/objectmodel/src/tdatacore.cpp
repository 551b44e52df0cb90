#include "tdatacore.h"

TDataCore::TDataCore(int count, const float* x, const float* y)
{
    if (count <= 0 || !x || !y)
        return;
    m_x = QVector<float>(x, x + count);
    m_y = QVector<float>(y, y + count);
}
