#include "ttovicompound.h"

#include "tdatabase.h"
#include "theaderdatabase.h"

#include <vnobject2tovicompound.h>

namespace Sedra {

TToviCompound::TToviCompound()
    : TPropertyObject(new VNObject2ToviCompound)
{ }

TToviCompound::TToviCompound(VNObject2ToviCompound* object)
    : TPropertyObject(object)
{ }

TToviCompound::~TToviCompound() = default;

VNObject2ToviCompound* TToviCompound::compound()
{
    return static_cast<VNObject2ToviCompound*>(object());
}

const VNObject2ToviCompound* TToviCompound::compound() const
{
    return static_cast<const VNObject2ToviCompound*>(object());
}

void TToviCompound::setMasterName(const QString& name)
{
    setProperty(QLatin1String(KeyMasterName), name);
    const QString objectName = name.isEmpty() ? key() : name;
    if (objectName.isEmpty() || objectName == compound()->name())
        return;
    // A stored record is renamed through its header, so that the name index
    // follows; a free record simply takes the name.
    TDatabase* db = compound()->db();
    if (db && db->headerDb()->findByObject(compound()) == this)
        db->headerDb()->renameRecord(this, objectName, key(), false);
    else
        compound()->setName(objectName);
}

bool TToviCompound::setToviKey(const QString& keys)
{
    TDatabase* db = compound()->db();
    if (db && db->headerDb()->findByObject(compound()) == this)
        return keys == toviKey();
    setProperty(QLatin1String(KeyToVIKey), keys);
    compound()->setToviKey(keys);
    return true;
}

QString TToviCompound::description() const
{
    const QString name = masterName();
    return name.isEmpty() ? key() : name;
}

} // namespace Sedra
