#include "vndatabaseinfo.h"

#include "vndatabase_version_p.h"

QString VNDatabaseInfo::version()
{
    return QStringLiteral(VNDATABASE_VERSION_STRING);
}

QString VNDatabaseInfo::qtVersion()
{
    return QString::fromLatin1(qVersion());
}
