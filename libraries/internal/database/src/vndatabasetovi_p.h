#pragma once

#include <QString>

// What a reference database keeps beyond the storage's own state, behind the
// class's private pointer so that adding to it does not change the layout
// other modules were built against.
class VNDatabaseToviPrivate
{
public:
    // What the database had read when it last loaded: its header's
    // connection and file, and that connection's data version (-1: none).
    struct LoadStamp
    {
        QString connection;
        QString file;
        qint64 version = -1;
    };
    LoadStamp loaded;
};
