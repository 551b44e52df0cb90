#pragma once

#include "tpropertyobject.h"

namespace Sedra {

/// A record whose content is a file under the database's working path (a
/// graph or overlay document, ...). The relative path is stored with the record.
class VNSEDRA_EXPORT TFileObject : public TPropertyObject
{
public:
    explicit TFileObject(VNObject2* object, const QString& relativePath = QString());
    ~TFileObject() override;

    /// The file, relative to the working path, with '/' separators.
    const QString& relativePath() const { return m_relativePath; }
    void setRelativePath(const QString& path);
    /// The folder of that file, relative to the working path ("" for a file
    /// at the top of the working folder).
    QString relativeFolderPath() const;

private:
    QString m_relativePath;
};

} // namespace Sedra
