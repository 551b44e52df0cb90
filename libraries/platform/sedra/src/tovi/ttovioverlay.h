#pragma once

#include "tfileobject.h"

class VNObject2ToviGraph;
class VNObject2ToviOverlay;

namespace Sedra {

/// The record of an overlay (a reference zone or curve drawn over a graph):
/// the descriptive fields as properties and the drawing as an XML file under
/// the working path. Its parent is its graph's record; its key and its
/// object's name are its identifier.
class VNSEDRA_EXPORT TToviOverlay : public TFileObject
{
public:
    /// Takes ownership of `object`.
    explicit TToviOverlay(VNObject2ToviOverlay* object, const QString& relativePath = QString());
    ~TToviOverlay() override;

    static constexpr const char* KeyEquation = "Equation";
    static constexpr const char* KeyMasterName = "MasterName";
    static constexpr const char* KeyLiteratureReference = "LiteratureReference";
    static constexpr const char* KeyProcessType = "ProcessType";

    VNObject2ToviOverlay* overlay();
    const VNObject2ToviOverlay* overlay() const;
    /// The graph the overlay is drawn over (its object), or null.
    const VNObject2ToviGraph* graph() const;

    QString identifier() const { return key(); }
    QString getEquation() const { return property(QLatin1String(KeyEquation)); }
    void setEquation(const QString& v) { setProperty(QLatin1String(KeyEquation), v); }
    QString getToVIName() const { return property(QLatin1String(KeyMasterName)); }
    void setToVIName(const QString& v) { setProperty(QLatin1String(KeyMasterName), v); }
    QString getLiteratureReference() const { return property(QLatin1String(KeyLiteratureReference)); }
    void setLiteratureReference(const QString& v) { setProperty(QLatin1String(KeyLiteratureReference), v); }
    QString getProcessType() const { return property(QLatin1String(KeyProcessType)); }
    void setProcessType(const QString& v) { setProperty(QLatin1String(KeyProcessType), v); }

    /// Copies the descriptive fields of `source` (not its properties beyond
    /// them) and its drawing file when the two records name different files.
    /// False when the drawing could not be copied.
    bool copyContent(const TToviOverlay* source);
};

} // namespace Sedra
