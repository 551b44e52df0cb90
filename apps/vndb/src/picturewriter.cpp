#include "picturewriter.h"

#include "cliarguments.h"

#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QStringList>
#include <QSvgGenerator>

#include <algorithm>

const QColor PictureWriter::AxisColor(40, 40, 40);
const QColor PictureWriter::GridColor(225, 228, 232);
const QColor PictureWriter::LineColor(24, 86, 160);

QFont PictureWriter::font(const QSize& size)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(std::max(10, size.height() / 50));
    return font;
}

QFont PictureWriter::titleFont(const QSize& size)
{
    QFont title = font(size);
    title.setPixelSize(title.pixelSize() * 3 / 2);
    title.setBold(true);
    return title;
}

QString PictureWriter::superscript(int value)
{
    static const QString digits = QStringLiteral("\u2070\u00b9\u00b2\u00b3\u2074\u2075\u2076\u2077\u2078\u2079");
    QString text;
    for (const QChar c : QString::number(value))
        text += c.isDigit() ? digits.at(c.digitValue()) : QChar(0x207b);
    return text;
}

bool PictureWriter::isSupportedFile(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("png") || suffix == QLatin1String("svg");
}

bool PictureWriter::readSize(const QString& text, QSize* size)
{
    const QStringList parts = text.toLower().split(QLatin1Char('x'));
    int w = 0, h = 0;
    if (parts.size() != 2 || !CliArguments::toIndex(parts.at(0), &w) || !CliArguments::toIndex(parts.at(1), &h))
        return false;
    *size = QSize(w, h);
    return true;
}

QString PictureWriter::readOutput(const CliArguments& arguments, QString* output, QSize* size)
{
    *output = arguments.value(QStringLiteral("output"));
    if (output->isEmpty())
        return tr("the picture file is missing (-o FILE.png|.svg)", "le fichier image manque (-o FICHIER.png|.svg)");
    if (!isSupportedFile(*output))
        return tr("'%1': the picture must be a .png or .svg file", "'%1' : l'image doit être un fichier .png ou .svg")
            .arg(*output);
    const QString sizeText = arguments.value(QStringLiteral("size"));
    if (arguments.isSet(QStringLiteral("size")) && !readSize(sizeText, size))
        return tr("'%1' is not a size like 1200x700", "'%1' n'est pas une taille comme 1200x700").arg(sizeText);
    return QString();
}

bool PictureWriter::write(const QString& path, const QSize& size, const QString& title, const QString& description,
                          const Paint& paint, QString* error)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (!isSupportedFile(path)) {
        *error = tr("'%1': the picture must be a .png or .svg file", "'%1' : l'image doit être un fichier .png ou .svg")
                     .arg(path);
        return false;
    }
    if (size.width() < 200 || size.height() < 150 || size.width() > 8000 || size.height() > 8000) {
        *error = tr("the picture size must be between 200x150 and 8000x8000",
                    "la taille de l'image doit être comprise entre 200x150 et 8000x8000");
        return false;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = tr("cannot write '%1': %2", "impossible d'écrire '%1' : %2").arg(path, file.errorString());
        return false;
    }
    bool ok = true;
    if (suffix == QLatin1String("png")) {
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        {
            QPainter painter(&image);
            paint(&painter, size);
        }
        ok = image.save(&file, "PNG");
    } else {
        QSvgGenerator generator;
        generator.setOutputDevice(&file);
        generator.setSize(size);
        generator.setViewBox(QRect(QPoint(0, 0), size));
        generator.setTitle(title);
        generator.setDescription(description);
        QPainter painter;
        ok = painter.begin(&generator);
        if (ok) {
            paint(&painter, size);
            ok = painter.end();
        }
    }
    if (!ok || !file.commit()) {
        file.cancelWriting();
        *error = tr("cannot write '%1': %2", "impossible d'écrire '%1' : %2").arg(path, file.errorString());
        return false;
    }
    return true;
}
