#pragma once

#include <QList>

class VNObject2;

// What a project database keeps beyond the storage's own state. It lives
// behind the class's private pointer, so that adding to it does not change
// the layout other modules were built against.
class VNDatabasePrivate
{
public:
    // Reserved for the subclasses' bookkeeping; initialised and released here only.
    bool flag = false;
    QList<const VNObject2*> list;
};
