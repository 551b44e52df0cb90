#include "vndatamodeloverlay.h"

#include "vntovidatabaseinterface.h"

#include <txmlmethod.h>
#include <vnobject2tovioverlay.h>

#include <tdatabase.h>
#include <ttovioverlay.h>

namespace {
const QString kInformations = QStringLiteral("informations");
const QString kOverlayName = QStringLiteral("overlayName");
const QString kProcessType = QStringLiteral("processType");
const QString kLiteratureReference = QStringLiteral("literatureReference");
} // namespace

VNDataModelOverlay::VNDataModelOverlay(QObject* parent)
    : VNDataModel(parent)
{
    _init();
}

VNDataModelOverlay::~VNDataModelOverlay() = default;

void VNDataModelOverlay::_init()
{
    m_notify = true;
    m_graph = nullptr;
}

int VNDataModelOverlay::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid() || !isValid())
        return 0;
    return m_rowHeaders.size();
}

int VNDataModelOverlay::columnCount(const QModelIndex& parent) const
{
    if (parent.isValid() || !isValid())
        return 0;
    return m_columnHeaders.size();
}

QVariant VNDataModelOverlay::data(const QModelIndex&, int) const
{
    // The grid carries its content in its headers only: whatever the cell,
    // in range or not, it has no value.
    return QVariant();
}

QVariant VNDataModelOverlay::data(int row, int column, int role) const
{
    return data(index(row, column), role);
}

bool VNDataModelOverlay::setData(const QModelIndex& index, const QVariant&, int role)
{
    if (!index.isValid() || isReadOnly())
        return false;
    if (index.column() < 0 || index.column() >= columnCount() || index.row() < 0 || index.row() >= rowCount())
        return false;
    if (role == Qt::EditRole)
        m_notify = true;
    if (!m_notify)
        return true;
    // The value is deliberately not kept: an edit only tells the views.
    emit dataChanged(index, index, QVector<int>());
    return true;
}

bool VNDataModelOverlay::setData(int row, int column, const QVariant& value, int role)
{
    return setData(index(row, column), value, role);
}

QVariant VNDataModelOverlay::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (!isValid() || section < 0)
        return QVariant();
    if (role != Qt::DisplayRole && role != HeaderTextRole)
        return QVariant();
    if (orientation == Qt::Horizontal) {
        if (section < columnCount())
            return m_columnHeaders.at(section);
        return QAbstractItemModel::headerData(section, orientation, role);
    }
    if (orientation == Qt::Vertical) {
        if (section < rowCount())
            return m_rowHeaders.at(section);
        return QAbstractItemModel::headerData(section, orientation, role);
    }
    return QAbstractItemModel::headerData(section, orientation, role);
}

bool VNDataModelOverlay::setHeaderData(int section, Qt::Orientation orientation, const QVariant& value, int)
{
    if (section < 0)
        return false;
    setValid(true);
    if (orientation == Qt::Horizontal && section < columnCount())
        m_columnHeaders[section] = value.toString();
    // Row labels come only from the table operations; an edit of a vertical
    // header is signalled but not kept. Every accepted edit is announced, a
    // section past the grid included: listeners other than views (an editor
    // that mirrors the labels) learn of each one.
    if (m_notify)
        emit headerDataChanged(orientation, section, section);
    return true;
}

bool VNDataModelOverlay::insertRows(int, int, const QModelIndex&)
{
    return false;
}

bool VNDataModelOverlay::removeRows(int, int, const QModelIndex&)
{
    return false;
}

bool VNDataModelOverlay::removeRows(QList<int>&)
{
    return false;
}

QStringList VNDataModelOverlay::paste(const QModelIndex&, const QString&, bool)
{
    return QStringList();
}

void VNDataModelOverlay::clear()
{ }

bool VNDataModelOverlay::encode(QDomElement& parent) const
{
    QDomElement informations = TXMLMethod::createChildElement(parent, kInformations);
    TXMLMethod::addToElement(informations, kOverlayName, getToVIName());
    TXMLMethod::addToElement(informations, kProcessType, m_processType);
    TXMLMethod::addToElement(informations, kLiteratureReference, m_literatureReference);
    return true;
}

bool VNDataModelOverlay::decode(const QDomElement& element)
{
    if (element.isNull())
        return false;
    const QDomElement informations
        = element.tagName() == kInformations ? element : element.elementsByTagName(kInformations).item(0).toElement();
    if (informations.isNull() || TXMLMethod::getChildElement(informations, kOverlayName).isNull())
        return false;
    setToVIName(TXMLMethod::getInfoString(informations, kOverlayName));
    m_processType = TXMLMethod::getInfoString(informations, kProcessType);
    m_literatureReference = TXMLMethod::getInfoString(informations, kLiteratureReference);
    return true;
}

bool VNDataModelOverlay::decode(const VNObject2* object)
{
    if (!object)
        return false;
    auto* database = dynamic_cast<VNToviDatabaseInterface*>(object->db());
    if (!database)
        return false;
    const Sedra::TToviOverlay* record = database->getOverlay(object);
    const auto* overlay = dynamic_cast<const VNObject2ToviOverlay*>(object);
    if (!record || !overlay)
        return false;
    setToVIName(record->getToVIName());
    m_processType = record->getProcessType();
    m_literatureReference = record->getLiteratureReference();
    m_graph = overlay->graph();
    return true;
}

void VNDataModelOverlay::resetShape(int rows, int columns)
{
    m_rowHeaders = QVector<QString>(rows);
    m_columnHeaders = QVector<QString>(columns);
}

bool VNDataModelOverlay::storeRowHeader(int row, const QString& name)
{
    if (row < 0 || row >= m_rowHeaders.size())
        return false;
    m_rowHeaders[row] = name;
    return true;
}

bool VNDataModelOverlay::storeColumnHeader(int column, const QString& name)
{
    if (column < 0 || column >= m_columnHeaders.size())
        return false;
    m_columnHeaders[column] = name;
    return true;
}

bool VNDataModelOverlay::storeCell(int, int, const QVariant&)
{
    return false;
}
