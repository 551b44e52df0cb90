#include "tdescriptionacquisition.h"

#include "tacquisitionrun.h"
#include "tcmfile.h"

#include <messageloggerinterface.h>
#include <txmlmethod.h>

#include <QCoreApplication>
#include <QDomDocument>

#include <cmath>

namespace {

QString text(double value)
{
    return QString::number(value, 'g', 17);
}

// Reads an optional number; an absent or empty key keeps `fallback`.
bool readNumber(const QDomElement& element, const QString& key, double fallback, double* value)
{
    const QString raw = TXMLMethod::getInfoString(element, key).trimmed();
    if (raw.isEmpty()) {
        *value = fallback;
        return true;
    }
    bool ok = false;
    *value = raw.toDouble(&ok);
    return ok && std::isfinite(*value);
}

void refuse(const QString& why)
{
    MessageLoggerInterface::Error(QCoreApplication::translate("TDescriptionAcquisition",
                                                              "The acquisition description is refused: %1",
                                                              "La description de l'acquisition est refusée : %1")
                                      .arg(why));
}

QString badValue(const QString& key, const QString& value)
{
    return QCoreApplication::translate("TDescriptionAcquisition", "the value <b>%1</b> of <b>%2</b> is not valid",
                                       "la valeur <b>%1</b> de <b>%2</b> n'est pas valide")
        .arg(value, key);
}

} // namespace

TDescriptionAcquisition::TDescriptionAcquisition()
    : m_signals(QStringList() << QStringLiteral("TIC"))
{ }

TDescriptionAcquisition TDescriptionAcquisition::fromRun(const TAcquisitionRun& run)
{
    TDescriptionAcquisition d;
    d.m_name = run.name;
    d.m_date = run.date;
    d.m_system = run.acquisitionSystem;
    d.m_scanCount = run.scanCount();
    if (run.scanCount() > 0)
        d.setTimeRange(run.rtimes.first(), run.rtimes.last());
    if (run.pointCount() > 0)
        d.setMassRange(run.minKey() / 100.0, run.maxKey() / 100.0);
    d.m_signals = QStringList() << run.signalName << run.channelNames;
    d.m_transitions = run.transitions;
    return d;
}

TDescriptionAcquisition TDescriptionAcquisition::fromFile(TCMFile& file)
{
    TDescriptionAcquisition d;
    if (!file.isOpen())
        return d;
    d.m_name = file.runName();
    d.m_date = QDateTime::fromString(file.runDate(), Qt::ISODateWithMs);
    d.m_system = file.acquisitionSystem();
    d.m_scanCount = file.nbScans();
    if (file.rtime() && file.nbScans() > 0)
        d.setTimeRange(file.rtime()[0], file.rtime()[file.nbScans() - 1]);
    d.setMassRange(file.lowMass(), file.highMass());
    d.m_signals = QStringList() << file.signalName() << file.channelNames();
    d.m_transitions = file.transitions();
    return d;
}

bool TDescriptionAcquisition::encode(QDomElement& element) const
{
    if (element.isNull())
        return false;
    while (!element.firstChild().isNull())
        element.removeChild(element.firstChild());
    TXMLMethod::addToElement(element, QStringLiteral("version"), QString::number(Version));
    TXMLMethod::addToElement(element, QStringLiteral("name"), m_name);
    TXMLMethod::addToElement(element, QStringLiteral("date"),
                             m_date.isValid() ? m_date.toString(Qt::ISODateWithMs) : QString());
    TXMLMethod::addToElement(element, QStringLiteral("system"), QString::number(m_system));
    TXMLMethod::addToElement(element, QStringLiteral("scans"), QString::number(m_scanCount));
    TXMLMethod::addToElement(element, QStringLiteral("startTime"), text(m_startTime));
    TXMLMethod::addToElement(element, QStringLiteral("endTime"), text(m_endTime));
    TXMLMethod::addToElement(element, QStringLiteral("lowMass"), text(m_lowMass));
    TXMLMethod::addToElement(element, QStringLiteral("highMass"), text(m_highMass));
    QDomElement list = TXMLMethod::createChildElement(element, QStringLiteral("signals"));
    for (const QString& name : m_signals) {
        QDomElement signal = TXMLMethod::createChildElement(list, QStringLiteral("signal"));
        TXMLMethod::addToElement(signal, QStringLiteral("name"), name);
    }
    QDomElement transitions = TXMLMethod::createChildElement(element, QStringLiteral("transitions"));
    for (const auto& pair : m_transitions) {
        QDomElement transition = TXMLMethod::createChildElement(transitions, QStringLiteral("transition"));
        TXMLMethod::addToElement(transition, QStringLiteral("parent"), text(pair.first));
        TXMLMethod::addToElement(transition, QStringLiteral("daughter"), text(pair.second));
    }
    return true;
}

bool TDescriptionAcquisition::decode(const QDomElement& element)
{
    if (element.isNull() || element.tagName() != QLatin1String(rootTag())) {
        refuse(QCoreApplication::translate("TDescriptionAcquisition",
                                           "the document is not an acquisition description (root <b>%1</b>)",
                                           "le document n'est pas une description d'acquisition (racine <b>%1</b>)")
                   .arg(element.tagName()));
        return false;
    }
    double version = 0;
    if (!readNumber(element, QStringLiteral("version"), Version, &version) || version < 1 || version > Version) {
        refuse(QCoreApplication::translate("TDescriptionAcquisition", "the version <b>%1</b> is not supported",
                                           "la version <b>%1</b> n'est pas prise en charge")
                   .arg(TXMLMethod::getInfoString(element, QStringLiteral("version"))));
        return false;
    }
    TDescriptionAcquisition d;
    d.m_signals.clear();
    d.m_name = TXMLMethod::getInfoString(element, QStringLiteral("name"));
    const QString date = TXMLMethod::getInfoString(element, QStringLiteral("date")).trimmed();
    if (!date.isEmpty()) {
        d.m_date = QDateTime::fromString(date, Qt::ISODateWithMs);
        if (!d.m_date.isValid()) {
            refuse(badValue(QStringLiteral("date"), date));
            return false;
        }
    }
    struct Number
    {
        const char* key;
        double* target;
        bool integral;
    };
    double system = 0, scans = 0;
    const Number numbers[]
        = {{"system", &system, true},        {"scans", &scans, true},          {"startTime", &d.m_startTime, false},
           {"endTime", &d.m_endTime, false}, {"lowMass", &d.m_lowMass, false}, {"highMass", &d.m_highMass, false}};
    for (const Number& n : numbers) {
        const QString key = QLatin1String(n.key);
        if (!readNumber(element, key, 0.0, n.target) || *n.target < 0
            || (n.integral && (*n.target != std::floor(*n.target) || *n.target > 2147483647.0))) {
            refuse(badValue(key, TXMLMethod::getInfoString(element, key)));
            return false;
        }
    }
    d.m_system = quint32(system);
    d.m_scanCount = int(scans);
    if (d.m_endTime < d.m_startTime || d.m_highMass < d.m_lowMass) {
        refuse(QCoreApplication::translate("TDescriptionAcquisition", "a range ends before it starts",
                                           "une plage finit avant de commencer"));
        return false;
    }
    const QDomElement signalList = TXMLMethod::getChildElement(element, QStringLiteral("signals"));
    for (QDomElement s = signalList.firstChildElement(QStringLiteral("signal")); !s.isNull();
         s = s.nextSiblingElement(QStringLiteral("signal"))) {
        const QString name = TXMLMethod::getInfoString(s, QStringLiteral("name"));
        if (name.trimmed().isEmpty()) {
            refuse(QCoreApplication::translate("TDescriptionAcquisition", "a signal has no name",
                                               "un signal n'a pas de nom"));
            return false;
        }
        d.m_signals << name;
    }
    if (d.m_signals.isEmpty())
        d.m_signals << QStringLiteral("TIC");
    const QDomElement transitionList = TXMLMethod::getChildElement(element, QStringLiteral("transitions"));
    for (QDomElement t = transitionList.firstChildElement(QStringLiteral("transition")); !t.isNull();
         t = t.nextSiblingElement(QStringLiteral("transition"))) {
        double parent = 0, daughter = 0;
        const bool ok = readNumber(t, QStringLiteral("parent"), -1, &parent)
            && readNumber(t, QStringLiteral("daughter"), -1, &daughter);
        if (!ok || parent <= 0 || daughter <= 0) {
            refuse(badValue(QStringLiteral("transition"),
                            TXMLMethod::getInfoString(t, QStringLiteral("parent")) + QStringLiteral("->")
                                + TXMLMethod::getInfoString(t, QStringLiteral("daughter"))));
            return false;
        }
        d.m_transitions.append(qMakePair(float(parent), float(daughter)));
    }
    *this = d;
    return true;
}

bool TDescriptionAcquisition::save(const QString& path) const
{
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(QStringLiteral("xml"),
                                                              QStringLiteral("version=\"1.0\" encoding=\"UTF-8\"")));
    QDomElement root = document.createElement(QLatin1String(rootTag()));
    document.appendChild(root);
    if (!encode(root))
        return false;
    return TXMLMethod::save(&document, path, true, true);
}

bool TDescriptionAcquisition::load(const QString& path)
{
    QDomDocument document;
    if (!TXMLMethod::load(&document, path, true, false)) {
        refuse(QCoreApplication::translate("TDescriptionAcquisition", "<b>%1</b> cannot be read as XML",
                                           "<b>%1</b> ne peut pas être lu comme du XML")
                   .arg(path));
        return false;
    }
    return decode(document.documentElement());
}

bool TDescriptionAcquisition::operator==(const TDescriptionAcquisition& other) const
{
    return m_name == other.m_name && m_date == other.m_date && m_system == other.m_system
        && m_scanCount == other.m_scanCount && m_startTime == other.m_startTime && m_endTime == other.m_endTime
        && m_lowMass == other.m_lowMass && m_highMass == other.m_highMass && m_signals == other.m_signals
        && m_transitions == other.m_transitions;
}
