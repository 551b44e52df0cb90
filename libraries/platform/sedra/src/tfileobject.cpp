#include "tfileobject.h"

namespace Sedra {

TFileObject::TFileObject(VNObject2* object, const QString& relativePath)
    : TPropertyObject(object)
    , m_relativePath(relativePath)
{ }

TFileObject::~TFileObject() = default;

void TFileObject::setRelativePath(const QString& path)
{
    if (path == m_relativePath)
        return;
    m_relativePath = path;
    setModified(true);
}

QString TFileObject::relativeFolderPath() const
{
    const int slash = m_relativePath.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? QString(QLatin1String("")) : m_relativePath.left(slash);
}

} // namespace Sedra
