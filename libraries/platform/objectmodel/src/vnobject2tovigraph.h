#pragma once

#include "vnobject2tovi.h"

/// A reference graph (a diagram built from parameters). Its drawing is an XML
/// document stored in the graph folder of the database's working folder.
class VNOBJECTMODEL_EXPORT VNObject2ToviGraph : public VNObject2Tovi
{
public:
    explicit VNObject2ToviGraph(const QString& name = QString(), const QString& key = QString());
    ~VNObject2ToviGraph() override;
    int type() const override { return VNObjectTypeGraph; }

    /// The title shown in lists; the name while none is set.
    QString getTitle() const { return m_title.isEmpty() ? name() : m_title; }
    void setTitle(const QString& title) { m_title = title; }

    static QString folderName();

private:
    QString m_title;
};
