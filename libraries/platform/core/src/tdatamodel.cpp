#include "tdatamodel.h"

TDataModel::TDataModel(QObject* parent)
    : QAbstractItemModel(parent)
{ }

TDataModel::~TDataModel() = default;

bool TDataModel::isReadOnly() const
{
    return m_readOnly;
}

void TDataModel::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
}

bool TDataModel::isValid() const
{
    return m_valid;
}

void TDataModel::setValid(bool valid)
{
    if (m_valid == valid)
        return;
    m_valid = valid;
    emit validityChanged(valid);
}
