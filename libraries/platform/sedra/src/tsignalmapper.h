#pragma once

#include "tabstractmapper.h"
#include "tpropertyobject.h"

class VNObject2Analysis;
class VNObject2Signal;

namespace Sedra {

/// Signals (kind 2). A signal belongs to an analysis: its key is
/// "<analysis key>/<signal name>", so that every analysis may have its own
/// "TIC", and it goes when its analysis goes.
class VNSEDRA_EXPORT TSignalMapper : public TAbstractMapper
{
public:
    TSignalMapper();
    ~TSignalMapper() override;

    static QString signalKey(const QString& analysisKey, const QString& signalName);
    /// The hash that getSignalByHash() compares: the hash of the analysis key.
    static unsigned int analysisHash(const QString& analysisKey);

    /// A new signal of `analysis` (which must be an analysis of this
    /// database). Null when refused or when the analysis already has one of
    /// that name.
    TPropertyObject* createSignal(const VNObject2Analysis* analysis, const QString& name, bool flush = true) const;
    /// Signals need their analysis: always refused here.
    TDatabaseObject* create(const QString& name, bool flush = true) const override;

    bool signalExists(const QString& analysisName, const QString& signalName) const;
    const VNObject2Signal* getSignal(const QString& analysisName, const QString& signalName) const;
    /// The signal called `name` whose analysis key has the hash `hash`.
    const VNObject2Signal* getSignalByHash(const QString& name, unsigned int hash) const;
    QList<const VNObject2Signal*> signalList(const VNObject2Analysis* analysis) const;

    /// The ions (masses) of a signal; empty when it has none.
    QList<float> signalIonList(const VNObject2Signal* signal) const;
    bool setSignalIonList(const VNObject2Signal* signal, const QList<float>& ions, bool flush = true) const;

    TDatabaseObject* recordFromRow(const THeaderRow& row) const override;

protected:
    VNObject2* newObject(const QString& name) const override;

private:
    static QString hashTag(unsigned int hash, const QString& name);
};

} // namespace Sedra
