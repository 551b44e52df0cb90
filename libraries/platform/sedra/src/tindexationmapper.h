#pragma once

#include "tabstractmapper.h"
#include "tpropertyobject.h"

#include <QStringList>

class VNObject2Indexation;

namespace Sedra {

/// Indexations (kind 256) and, through the subclasses, peak detections (264)
/// and global indexations (528), which share their object class. Each one
/// records the names of the analyses it was computed on.
class VNSEDRA_EXPORT TIndexationMapper : public TAbstractMapper
{
public:
    TIndexationMapper();
    ~TIndexationMapper() override;

    TPropertyObject* createIndexation(const QString& name, const QStringList& analyses = QStringList(),
                                      bool flush = true) const;
    const VNObject2Indexation* getIndexation(const QString& name) const;
    QStringList analyses(const VNObject2* indexation) const;
    bool setAnalyses(const VNObject2* indexation, const QStringList& analyses, bool flush = true) const;

protected:
    explicit TIndexationMapper(int type);
    VNObject2* newObject(const QString& name) const override;
};

} // namespace Sedra
