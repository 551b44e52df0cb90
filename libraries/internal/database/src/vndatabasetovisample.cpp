#include "vndatabasetovisample.h"

#include "vntovidatabaseinterface.h"

#include <tdatabase.h>
#include <ttovibatch.h>
#include <ttovicompound.h>
#include <ttovieic.h>
#include <ttovijoint.h>
#include <ttoviratio.h>
#include <vnobject2tovi.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {
QString text(const QJsonObject& object, const char* name)
{
    const QJsonValue value = object.value(QLatin1String(name));
    return value.isDouble() ? QString::number(value.toDouble()) : value.toString();
}

void setError(QString* error, const QString& message)
{
    if (error)
        *error = message;
}
} // namespace

QString VNDatabaseToviSample::defaultFile()
{
    const QString installed
        = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/vndatabase/tovi-sample.json");
    return QFileInfo::exists(installed) ? QFileInfo(installed).canonicalFilePath() : QString();
}

bool VNDatabaseToviSample::load(VNToviDatabaseInterface* db, const QString& file, QString* error, Counts* counts)
{
    Counts made;
    if (counts)
        *counts = made;
    if (!db) {
        setError(error, tr("No reference database to fill", "Aucune base de référence à remplir"));
        return false;
    }
    QFile input(file);
    if (!input.open(QIODevice::ReadOnly)) {
        setError(error,
                 tr("Cannot read the reference content %1", "Impossible de lire le contenu de référence %1").arg(file));
        return false;
    }
    QJsonParseError parse;
    const QJsonDocument document = QJsonDocument::fromJson(input.readAll(), &parse);
    const QJsonObject root = document.object();
    if (parse.error != QJsonParseError::NoError || !root.value(QStringLiteral("compounds")).isArray()) {
        setError(error, tr("%1 is not reference content", "%1 n'est pas un contenu de référence").arg(file));
        return false;
    }

    auto* storage = dynamic_cast<Sedra::TDatabase*>(db);
    Sedra::TToviBatch batch(storage);

    for (const QJsonValue& value : root.value(QStringLiteral("ions")).toArray()) {
        const QJsonObject ion = value.toObject();
        if (db->createEIC(text(ion, "name"), text(ion, "value")))
            ++made.ions;
    }
    for (const QJsonValue& value : root.value(QStringLiteral("compounds")).toArray()) {
        const QJsonObject c = value.toObject();
        Sedra::TToviCompound model;
        model.setToviKey(text(c, "toviKey"));
        model.setMasterName(text(c, "name"));
        model.setOrlName(text(c, "shortName"));
        model.setFormula(text(c, "formula"));
        model.setCas(text(c, "cas"));
        model.setInChI(text(c, "inchi"));
        model.setInChIKey(text(c, "inchiKey"));
        model.setFamily(text(c, "family"));
        model.setCarbons(text(c, "carbons"));
        model.setAnalysisType(text(c, "analysisType"));
        model.setStudyType(text(c, "studyType"));
        model.setFamilyName(text(c, "familyName"));
        model.setExpectedIons(text(c, "expectedIons"));
        model.setRetentionIndex(text(c, "retentionIndex"));
        // The reference key names the compound in joints and aliases.
        if (db->createCompound(&model, text(c, "toviKey")))
            ++made.compounds;
    }
    for (const QJsonValue& value : root.value(QStringLiteral("joints")).toArray()) {
        const QJsonObject joint = value.toObject();
        if (db->createJoint(text(joint, "compound"), text(joint, "ion"), QString()))
            ++made.joints;
    }
    for (const QJsonValue& value : root.value(QStringLiteral("parameters")).toArray()) {
        const QJsonObject p = value.toObject();
        if (db->createRatio(text(p, "ratioId"), text(p, "name"), text(p, "displayFormula"), text(p, "formula"),
                            p.value(QStringLiteral("displayOrder")).toInt(-1), text(p, "studyType"),
                            text(p, "analysisType"), text(p, "processType"), text(p, "familyName"),
                            text(p, "expectedIons"), text(p, "literature")))
            ++made.parameters;
    }
    for (const QJsonValue& value : root.value(QStringLiteral("aliases")).toArray()) {
        const QJsonObject a = value.toObject();
        const QString kind = text(a, "kind");
        const VNObject2* named
            = kind == QLatin1String("ratio") ? db->getRatio(text(a, "ref")) : db->getCompound(text(a, "ref"));
        const auto* object = dynamic_cast<const VNObject2Tovi*>(named);
        if (object && db->aliasCreate(object, text(a, "field"), text(a, "vendor"), text(a, "value")))
            ++made.aliases;
    }

    const bool written = batch.commit();
    if (counts)
        *counts = made;
    if (!written || made.compounds + made.ions + made.parameters == 0) {
        setError(error,
                 tr("Nothing could be written to the reference database",
                    "Rien n'a pu être écrit dans la base de référence"));
        return false;
    }
    return true;
}
