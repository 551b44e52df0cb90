#pragma once

#include <QColor>
#include <QCoreApplication>
#include <QFont>
#include <QSize>
#include <QString>

#include <functional>

class CliArguments;
class QPainter;

/// What every picture of vndb shares: its look (fonts sized on the picture,
/// the colours of axes and grid), the reading of a size, and the writing of a
/// PNG or SVG file that is complete or untouched.
class PictureWriter
{
    Q_DECLARE_TR_FUNCTIONS(PictureWriter)
public:
    static const QColor AxisColor;
    static const QColor GridColor;
    static const QColor LineColor;

    /// The text font of a picture of that size, and its title font.
    static QFont font(const QSize& size);
    static QFont titleFont(const QSize& size);
    /// A number as a superscript ("⁻³"), for axis titles.
    static QString superscript(int value);

    static bool isSupportedFile(const QString& path);
    /// Reads "WxH"; false when the text is not a size.
    static bool readSize(const QString& text, QSize* size);
    /// Reads a picture command's "-o" file and "--size" (`size` keeps its
    /// default when none is given): empty when both are usable, else the usage
    /// error to show (translated).
    static QString readOutput(const CliArguments& arguments, QString* output, QSize* size);

    using Paint = std::function<void(QPainter*, const QSize&)>;
    /// Writes what `paint` draws; the format follows the suffix (".png" or
    /// ".svg"). The file is complete or untouched. False with a translated reason.
    static bool write(const QString& path, const QSize& size, const QString& title, const QString& description,
                      const Paint& paint, QString* error);
};
