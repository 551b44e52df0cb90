#pragma once

#include "analysisdata.h"

#include <QObject>
#include <QSize>

class QPainter;

/// Draws a chromatogram (a line) or a spectrum (bars with labels on the
/// highest peaks) with its axes, round-number ticks, axis titles and a title,
/// and writes it as a PNG or SVG picture.
class PlotPainter : public QObject
{
    Q_OBJECT
public:
    explicit PlotPainter(const AnalysisSeries& series);

    void setTitle(const QString& title) { m_title = title; }
    QString title() const { return m_title; }
    /// At most this many bars get a label (the highest first, never overlapping).
    void setMaximumLabels(int count) { m_maxLabels = count; }

    void paint(QPainter* painter, const QSize& size) const;

    /// Writes the picture; the format follows the suffix (".png" or ".svg").
    /// The file is complete or untouched. False with a translated reason.
    bool write(const QString& path, const QSize& size, QString* error) const;

private:
    void paintChromatogram(QPainter* painter, const QRectF& area, double x0, double x1, double y1) const;
    void paintSpectrum(QPainter* painter, const QRectF& area, double x0, double x1, double y1) const;

    AnalysisSeries m_series;
    QString m_title;
    int m_maxLabels = 14;
};
