#include "ttovigraph.h"

#include "tabstractmapper.h"

#include <vnobject2tovigraph.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace Sedra {

TToviGraph::TToviGraph(VNObject2ToviGraph* object, const QString& relativePath)
    : TFileObject(object, relativePath)
{ }

TToviGraph::~TToviGraph() = default;

VNObject2ToviGraph* TToviGraph::graph()
{
    return static_cast<VNObject2ToviGraph*>(object());
}

const VNObject2ToviGraph* TToviGraph::graph() const
{
    return static_cast<const VNObject2ToviGraph*>(object());
}

TToviGraph::GraphInformation TToviGraph::getGraphInformation() const
{
    GraphInformation information;
    information.toviName = getToVIName();
    information.number = number();
    information.literatureReference = getLiteratureReference();
    information.comments = getComments();
    information.expectedUnit = getExpectedUnit();
    information.expectedAnalysisType = getExpectedAnalysisType();
    information.studyType = getStudyType();
    information.familyName = getFamilyName();
    information.processType = getProcessType();
    information.isORL = getIsORL();
    return information;
}

void TToviGraph::setGraphInformation(const GraphInformation& information)
{
    setToVIName(information.toviName);
    setLiteratureReference(information.literatureReference);
    setComments(information.comments);
    setExpectedUnit(information.expectedUnit);
    setExpectedAnalysisType(information.expectedAnalysisType);
    setStudyType(information.studyType);
    setFamilyName(information.familyName);
    setProcessType(information.processType);
    setIsORL(information.isORL);
}

void TToviGraph::setToVIName(const QString& name)
{
    setProperty(QLatin1String(KeyMasterName), name);
    graph()->setTitle(name);
}

qint32 TToviGraph::number() const
{
    return property(QLatin1String(KeyNumber)).toInt();
}

void TToviGraph::setNumber(qint32 number)
{
    setProperty(QLatin1String(KeyNumber), QString::number(number));
}

bool TToviGraph::getIsORL() const
{
    return property(QLatin1String(KeyIsORL)) == QLatin1String("true");
}

void TToviGraph::setIsORL(bool delivered)
{
    setProperty(QLatin1String(KeyIsORL), delivered ? QStringLiteral("true") : QStringLiteral("false"));
}

QStringList TToviGraph::ratioUids() const
{
    const QString joined = property(QLatin1String(KeyRatioUID));
    return joined.isEmpty() ? QStringList() : joined.split(QLatin1Char(';'));
}

void TToviGraph::setRatioUids(const QStringList& uids)
{
    setProperty(QLatin1String(KeyRatioUID), uids.join(QLatin1Char(';')));
}

bool TToviGraph::copyDrawing(const TFileObject* source, const TFileObject* target)
{
    if (!source || !target)
        return false;
    const QString from = TAbstractMapper::objectFilePath(source->object(), nullptr);
    const QString to = TAbstractMapper::objectFilePath(target->object(), nullptr);
    if (from.isEmpty() || to.isEmpty())
        return false;
    if (QFileInfo(from).canonicalFilePath() == QFileInfo(to).canonicalFilePath() && QFileInfo(to).isFile())
        return true;
    QFile in(from);
    if (!in.open(QIODevice::ReadOnly))
        return false;
    if (!QDir().mkpath(QFileInfo(to).absolutePath()))
        return false;
    QSaveFile out(to);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    const QByteArray data = in.readAll();
    if (in.error() != QFileDevice::NoError || out.write(data) != data.size())
        return false;
    return out.commit();
}

bool TToviGraph::copyContent(const TToviGraph* source)
{
    if (!source || source == this)
        return false;
    const qint32 kept = number();
    QList<TProperty> properties;
    for (const TProperty& property : source->getPropertyList()) {
        if (property.name() != QLatin1String(KeyNumber))
            properties.append(property);
    }
    properties.append(TProperty(QLatin1String(KeyNumber), QString::number(kept)));
    setPropertyList(properties);
    graph()->setTitle(getToVIName());
    return copyDrawing(source, this);
}

} // namespace Sedra
