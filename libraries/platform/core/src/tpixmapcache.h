#pragma once

#include "vncore_export.h"

#include <QImage>
#include <QPixmap>
#include <QStringList>

/// The application's named icons ("graphIcon", "ratioIcon", "compound",
/// "analysis", "grapheditor_overlay", ...), drawn once and cached.
class VNCORE_EXPORT TPixmapCache
{
public:
    /// The icon `name`; a null pixmap for an unknown name or when no
    /// QGuiApplication runs (pixmaps need one).
    static QPixmap find(const QString& name);
    /// The same icon as an image, usable without a GUI application.
    static QImage image(const QString& name);
    static QStringList names();
    static constexpr int size() { return 32; }
};
