#include "tcmfileregistry.h"

#include "tcmfile.h"
#include "vnfileformatslogging.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHash>
#include <map>
#include <memory>

namespace {

struct Entry
{
    std::unique_ptr<TCMFile> file;
    QDateTime modified;
    qint64 size = -1;
};

std::map<QString, Entry>& entries()
{
    static std::map<QString, Entry> s_entries;
    return s_entries;
}

// Kept beside the files: a file reopened after it was replaced keeps the
// holders of its analysis.
QHash<QString, int>& holderCounts()
{
    static QHash<QString, int> s_holders;
    return s_holders;
}

QString keyOf(const QString& path)
{
    return QFileInfo(path).absoluteFilePath();
}

} // namespace

TCMFile* TCMFileRegistry::file(const QString& path)
{
    if (path.isEmpty())
        return nullptr;
    const QString key = keyOf(path);
    const QFileInfo info(key);
    auto& all = entries();
    auto found = all.find(key);
    if (!info.isFile()) {
        if (found != all.end())
            all.erase(found);
        return nullptr;
    }
    if (found != all.end()) {
        // A replaced file must not be read through the map of the old one.
        if (found->second.modified == info.lastModified() && found->second.size == info.size())
            return found->second.file.get();
        all.erase(found);
    }
    Entry entry;
    entry.file = std::make_unique<TCMFile>();
    if (!entry.file->open(key)) {
        qCInfo(vnFileFormats, "%s refused: %s", qUtf8Printable(key), qUtf8Printable(entry.file->errorString()));
        return nullptr;
    }
    entry.modified = info.lastModified();
    entry.size = info.size();
    TCMFile* result = entry.file.get();
    all.emplace(key, std::move(entry));
    return result;
}

void TCMFileRegistry::hold(const QString& path)
{
    if (!path.isEmpty())
        ++holderCounts()[keyOf(path)];
}

void TCMFileRegistry::release(const QString& path)
{
    const QString key = keyOf(path);
    auto counted = holderCounts().find(key);
    if (counted != holderCounts().end()) {
        if (--counted.value() > 0)
            return;
        holderCounts().erase(counted);
    }
    auto& all = entries();
    const auto found = all.find(key);
    if (found != all.end())
        found->second.file->deleteContent();
}

int TCMFileRegistry::holders(const QString& path)
{
    return holderCounts().value(keyOf(path));
}

void TCMFileRegistry::forget(const QString& path)
{
    entries().erase(keyOf(path));
    holderCounts().remove(keyOf(path));
}

void TCMFileRegistry::clear()
{
    entries().clear();
    holderCounts().clear();
}

int TCMFileRegistry::count()
{
    return int(entries().size());
}
