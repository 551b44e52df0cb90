#pragma once

#include <QDomElement>
#include <QString>

namespace Plavo {
namespace Xml {

// Bounds on what a document may hold. A graph has a handful of axes and a few
// series; anything far beyond is a corrupt or hostile file, refused before it
// can cost memory or time.
constexpr int kMaxAxes = 64;
constexpr int kMaxDataValues = 256;
constexpr int kMaxCurves = 1024;
constexpr int kMaxPoints = 1 << 20;
constexpr int kMaxDepth = 256;
constexpr qint64 kMaxFileSize = qint64(256) * 1024 * 1024;

// Strict readers: the whole text must be the number, and it must fit.
bool readInt(const QString& text, int* value);
bool readFiniteDouble(const QString& text, double* value);
bool readFiniteFloat(const QString& text, float* value);
bool readBool(const QString& text, bool* value);

// Shortest texts that read back to the same binary value.
QString writeDouble(double value);
QString writeFloat(float value);

// The direct child elements of `parent` named `tag`, refused (false) when
// there are more than `limit`, or when another element name is found among
// them and `exclusive` is set.
bool childElements(const QDomElement& parent, const QString& tag, int limit, bool exclusive,
                   QList<QDomElement>* children);

} // namespace Xml
} // namespace Plavo
