#pragma once

#include "vncore_export.h"

#include <QAbstractItemModel>

/// The base of the application's table models: an item model that knows
/// whether it may be edited and whether its content is valid.
class VNCORE_EXPORT TDataModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    explicit TDataModel(QObject* parent = nullptr);
    ~TDataModel() override;

    virtual bool isReadOnly() const;
    virtual void setReadOnly(bool readOnly);
    bool isValid() const;
    void setValid(bool valid);

signals:
    void validityChanged(bool valid);

private:
    bool m_readOnly = false;
    bool m_valid = false;
};
