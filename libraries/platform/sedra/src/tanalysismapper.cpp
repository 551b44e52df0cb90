#include "tanalysismapper.h"

#include "tdatabase.h"
#include "tfileobject.h"
#include "theaderdatabase.h"

#include <vnobject2analysis.h>

namespace Sedra {

namespace {
const QString ModulationProperty = QStringLiteral("Modulation");
}

TAnalysisMapper::TAnalysisMapper(const QString& fileSuffix)
    : TAbstractMapper(VNObjectTypeAnalysis)
    , m_fileSuffix(fileSuffix)
{ }

TAnalysisMapper::~TAnalysisMapper() = default;

VNObject2* TAnalysisMapper::newObject(const QString& name) const
{
    return new VNObject2Analysis(name);
}

TDatabaseObject* TAnalysisMapper::newRecord(VNObject2* object) const
{
    return new TFileObject(object);
}

QString TAnalysisMapper::folderTag(const QString& relativeFolder)
{
    // Folders that differ only by case are one folder on some systems.
    return relativeFolder.toLower();
}

QString TAnalysisMapper::uniqueFolder(const QString& name) const
{
    // Two names may give the same safe form ("a/b" and "a_b"): the second
    // analysis gets a numbered folder. The folders in use are the records'
    // tags, so no list of analyses is walked.
    const QString base = VNObject2Analysis::folderName() + QLatin1Char('/') + TDatabase::safeFileName(name);
    QString folder = base;
    for (int n = 2; header() && !header()->findByTag(type(), folderTag(folder)).isEmpty(); ++n)
        folder = base + QStringLiteral("_%1").arg(n);
    return folder;
}

TFileObject* TAnalysisMapper::createAnalysisInFolder(const QString& name, const QString& relativeFolder,
                                                     bool flush) const
{
    if (name.isEmpty() || !database() || exists(name) || relativeFolder.isEmpty())
        return nullptr;
    auto* made = new TFileObject(newObject(name));
    const QString stem = relativeFolder.section(QLatin1Char('/'), -1);
    made->setRelativePath(relativeFolder + QLatin1Char('/')
                          + (m_fileSuffix.isEmpty() ? stem : stem + QLatin1Char('.') + m_fileSuffix));
    made->setTag(folderTag(relativeFolder));
    return static_cast<TFileObject*>(insertRecord(made, flush));
}

TFileObject* TAnalysisMapper::createAnalysis(const QString& name, bool flush) const
{
    if (name.isEmpty() || !database() || exists(name))
        return nullptr;
    return createAnalysisInFolder(name, uniqueFolder(name), flush);
}

TDatabaseObject* TAnalysisMapper::create(const QString& name, bool flush) const
{
    return createAnalysis(name, flush);
}

TDatabaseObject* TAnalysisMapper::recordFromRow(const THeaderRow& row) const
{
    TDatabaseObject* made = TAbstractMapper::recordFromRow(row);
    if (const auto* file = dynamic_cast<const TFileObject*>(made))
        made->setTag(folderTag(file->relativeFolderPath()));
    return made;
}

const VNObject2Analysis* TAnalysisMapper::getAnalysis(const QString& name) const
{
    return dynamic_cast<const VNObject2Analysis*>(get(name));
}

QList<const VNObject2Analysis*> TAnalysisMapper::analyses() const
{
    QList<const VNObject2Analysis*> all;
    for (const TDatabaseObject* r : records())
        all.append(static_cast<const VNObject2Analysis*>(r->object()));
    return all;
}

bool TAnalysisMapper::setModulation(const VNObject2Analysis* analysis, double modulation, bool flush) const
{
    if (!record(analysis))
        return false;
    return database()->setObjectProperty(analysis, ModulationProperty, QString::number(modulation, 'g', 17), flush);
}

double TAnalysisMapper::modulation(const VNObject2Analysis* analysis) const
{
    bool found = false;
    const TProperty value = database() && record(analysis)
        ? database()->getObjectProperties(analysis, ModulationProperty, &found)
        : TProperty();
    bool ok = false;
    const double result = found ? value.value().toDouble(&ok) : 0.0;
    return ok ? result : -9999.0;
}

} // namespace Sedra
