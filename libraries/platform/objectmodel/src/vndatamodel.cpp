#include "vndatamodel.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTextStream>

#include <algorithm>

namespace {
// A table file is read whole; beyond this it is not a table the user meant.
constexpr qint64 kMaxFileSize = 256 * 1024 * 1024;

QStringList splitLines(const QString& text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString& line : lines) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
    }
    // A final line break does not start a row.
    while (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}
} // namespace

VNDataModel::VNDataModel(QObject* parent)
    : TDataModel(parent)
{ }

VNDataModel::~VNDataModel() = default;

QModelIndex VNDataModel::index(int row, int column, const QModelIndex& parent) const
{
    if (parent.isValid() || row < 0 || column < 0 || row >= rowCount() || column >= columnCount())
        return QModelIndex();
    return createIndex(row, column);
}

QModelIndex VNDataModel::parent(const QModelIndex&) const
{
    return QModelIndex();
}

int VNDataModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rowHeaders.size();
}

int VNDataModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_columnHeaders.size();
}

Qt::ItemFlags VNDataModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags result = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (!isReadOnly())
        result |= Qt::ItemIsEditable;
    return result;
}

bool VNDataModel::isCell(int row, int column) const
{
    return row >= 0 && column >= 0 && row < rowCount() && column < columnCount();
}

QVariant VNDataModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.model() != this || !isCell(index.row(), index.column()))
        return QVariant();
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return QVariant();
    const qint64 at = qint64(index.row()) * m_columnHeaders.size() + index.column();
    return at < m_cells.size() ? m_cells.at(int(at)) : QVariant();
}

QVariant VNDataModel::data(int row, int column, int role) const
{
    return data(index(row, column), role);
}

bool VNDataModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || index.model() != this || isReadOnly() || !isCell(index.row(), index.column()))
        return false;
    if (role != Qt::EditRole && role != Qt::DisplayRole)
        return false;
    if (!storeCell(index.row(), index.column(), value))
        return false;
    emit dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
    return true;
}

bool VNDataModel::setData(int row, int column, const QVariant& value, int role)
{
    return setData(index(row, column), value, role);
}

QVariant VNDataModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole && role != HeaderTextRole)
        return QAbstractItemModel::headerData(section, orientation, role);
    if (orientation == Qt::Horizontal && section >= 0 && section < m_columnHeaders.size())
        return m_columnHeaders.at(section);
    if (orientation == Qt::Vertical && section >= 0 && section < m_rowHeaders.size())
        return m_rowHeaders.at(section);
    return QAbstractItemModel::headerData(section, orientation, role);
}

bool VNDataModel::setHeaderData(int section, Qt::Orientation orientation, const QVariant& value, int role)
{
    if (isReadOnly() || (role != Qt::EditRole && role != Qt::DisplayRole && role != HeaderTextRole))
        return false;
    return orientation == Qt::Horizontal ? renameColumn(section, value.toString())
                                         : renameRow(section, value.toString());
}

bool VNDataModel::insertRows(int row, int count, const QModelIndex& parent)
{
    if (parent.isValid() || isReadOnly() || count <= 0 || row < 0 || row > m_rowHeaders.size()
        || qint64(m_rowHeaders.size()) + count > kMaxRows
        || (qint64(m_rowHeaders.size()) + count) * m_columnHeaders.size() > kMaxCells)
        return false;
    beginResetModel();
    const int columns = m_columnHeaders.size();
    for (int i = 0; i < count; ++i)
        m_rowHeaders.insert(row, QString());
    m_cells.insert(row * columns, count * columns, QVariant());
    endResetModel();
    return true;
}

bool VNDataModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (parent.isValid() || isReadOnly() || count <= 0 || row < 0 || qint64(row) + count > m_rowHeaders.size())
        return false;
    beginResetModel();
    const int columns = m_columnHeaders.size();
    m_rowHeaders.erase(m_rowHeaders.begin() + row, m_rowHeaders.begin() + row + count);
    m_cells.remove(row * columns, count * columns);
    endResetModel();
    return true;
}

bool VNDataModel::removeRows(QList<int>& rows)
{
    if (isReadOnly() || rows.isEmpty())
        return false;
    QList<int> sorted = QSet<int>(rows.begin(), rows.end()).values();
    std::sort(sorted.begin(), sorted.end());
    if (sorted.first() < 0 || sorted.last() >= m_rowHeaders.size())
        return false;
    beginResetModel();
    const int columns = m_columnHeaders.size();
    for (int i = sorted.size() - 1; i >= 0; --i) {
        m_rowHeaders.removeAt(sorted.at(i));
        m_cells.remove(sorted.at(i) * columns, columns);
    }
    endResetModel();
    rows = sorted;
    return true;
}

QStringList VNDataModel::paste(const QModelIndex& at, const QString& text, bool grow)
{
    const QStringList lines = splitLines(text);
    QVector<QStringList> values;
    int widest = 0;
    for (const QString& line : lines) {
        values.append(line.split(QLatin1Char('\t')));
        widest = std::max(widest, int(values.last().size()));
    }
    const int top = at.isValid() ? at.row() : 0;
    const int left = at.isValid() ? at.column() : 0;
    if (isReadOnly() || (at.isValid() && at.model() != this)) {
        QStringList all;
        for (const QStringList& row : values)
            all += row;
        return all;
    }

    if (grow) {
        const qint64 rows = std::max<qint64>(rowCount(), qint64(top) + values.size());
        const qint64 columns = std::max<qint64>(columnCount(), qint64(left) + widest);
        if ((rows > rowCount() || columns > columnCount()) && rows <= kMaxRows && columns <= kMaxColumns
            && rows * columns <= kMaxCells) {
            QStringList columnNames;
            QStringList rowNames;
            QVector<QStringList> cells;
            for (int c = 0; c < columns; ++c)
                columnNames << (c < columnCount() ? headerData(c, Qt::Horizontal, HeaderTextRole).toString()
                                                  : QString());
            for (int r = 0; r < rows; ++r) {
                rowNames << (r < rowCount() ? headerData(r, Qt::Vertical, HeaderTextRole).toString() : QString());
                QStringList row;
                for (int c = 0; c < columns; ++c)
                    row << (isCell(r, c) ? data(r, c, Qt::EditRole).toString() : QString());
                cells.append(row);
            }
            applyTable(columnNames, rowNames, cells);
        }
    }

    QStringList rejected;
    for (int r = 0; r < values.size(); ++r) {
        for (int c = 0; c < values.at(r).size(); ++c) {
            const int row = top + r;
            const int column = left + c;
            if (!isCell(row, column) || !setData(index(row, column), values.at(r).at(c), Qt::EditRole))
                rejected << values.at(r).at(c);
        }
    }
    return rejected;
}

void VNDataModel::clear()
{
    beginResetModel();
    resetShape(0, 0);
    endResetModel();
}

bool VNDataModel::setHeadersData(const QStringList& columnHeaders, const QStringList& rowHeaders)
{
    if (rowHeaders.size() > kMaxRows || columnHeaders.size() > kMaxColumns
        || qint64(rowHeaders.size()) * columnHeaders.size() > kMaxCells)
        return false;
    return applyTable(columnHeaders, rowHeaders, {});
}

bool VNDataModel::renameRow(int row, const QString& name)
{
    if (row < 0 || row >= rowCount() || !storeRowHeader(row, name))
        return false;
    emit headerDataChanged(Qt::Vertical, row, row);
    return true;
}

bool VNDataModel::renameColumn(int column, const QString& name)
{
    if (column < 0 || column >= columnCount() || !storeColumnHeader(column, name))
        return false;
    emit headerDataChanged(Qt::Horizontal, column, column);
    return true;
}

bool VNDataModel::open(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        m_error = tr("Cannot read the table %1", "Impossible de lire le tableau %1").arg(path);
        return false;
    }
    if (file.size() > kMaxFileSize) {
        m_error = tr("The table %1 is too large", "Le tableau %1 est trop grand").arg(path);
        return false;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    const QStringList lines = splitLines(stream.readAll());
    if (lines.isEmpty()) {
        m_error = tr("The table %1 is empty", "Le tableau %1 est vide").arg(path);
        return false;
    }
    const QChar separator = lines.first().contains(QLatin1Char('\t')) ? QLatin1Char('\t') : QLatin1Char(';');
    QStringList columns = lines.first().split(separator);
    columns.removeFirst(); // the corner cell
    if (lines.size() - 1 > kMaxRows || columns.size() > kMaxColumns
        || qint64(lines.size() - 1) * columns.size() > kMaxCells) {
        m_error = tr("The table %1 is too large", "Le tableau %1 est trop grand").arg(path);
        return false;
    }
    QStringList rows;
    QVector<QStringList> cells;
    for (int i = 1; i < lines.size(); ++i) {
        QStringList values = lines.at(i).split(separator);
        if (values.size() > columns.size() + 1) {
            m_error = tr("Line %1 of the table %2 has more values than columns",
                         "La ligne %1 du tableau %2 a plus de valeurs que de colonnes")
                          .arg(i + 1)
                          .arg(path);
            return false;
        }
        rows << values.takeFirst();
        cells.append(values);
    }
    m_error.clear();
    return applyTable(columns, rows, cells);
}

bool VNDataModel::applyTable(const QStringList& columns, const QStringList& rows, const QVector<QStringList>& cells)
{
    beginResetModel();
    resetShape(rows.size(), columns.size());
    for (int c = 0; c < columns.size(); ++c)
        storeColumnHeader(c, columns.at(c));
    for (int r = 0; r < rows.size(); ++r) {
        storeRowHeader(r, rows.at(r));
        if (r >= cells.size())
            continue;
        for (int c = 0; c < cells.at(r).size() && c < columns.size(); ++c) {
            if (!cells.at(r).at(c).isEmpty())
                storeCell(r, c, cells.at(r).at(c));
        }
    }
    // Valid before the reset ends: a model that shows nothing until it is
    // valid must give a view attached before its first fill the new grid.
    setValid(true);
    endResetModel();
    return true;
}

void VNDataModel::resetShape(int rows, int columns)
{
    m_rowHeaders = QStringList();
    m_columnHeaders = QStringList();
    m_rowHeaders.reserve(rows);
    m_columnHeaders.reserve(columns);
    for (int r = 0; r < rows; ++r)
        m_rowHeaders << QString();
    for (int c = 0; c < columns; ++c)
        m_columnHeaders << QString();
    m_cells = QVector<QVariant>(rows * columns);
}

bool VNDataModel::storeRowHeader(int row, const QString& name)
{
    if (row < 0 || row >= m_rowHeaders.size())
        return false;
    m_rowHeaders[row] = name;
    return true;
}

bool VNDataModel::storeColumnHeader(int column, const QString& name)
{
    if (column < 0 || column >= m_columnHeaders.size())
        return false;
    m_columnHeaders[column] = name;
    return true;
}

bool VNDataModel::storeCell(int row, int column, const QVariant& value)
{
    if (row < 0 || column < 0 || row >= m_rowHeaders.size() || column >= m_columnHeaders.size())
        return false;
    m_cells[row * m_columnHeaders.size() + column] = value;
    return true;
}
