#pragma once

#include "taxis.h"
#include "tdata.h"
#include "tviewer.h"
#include "vnplavo_export.h"

#include <QList>

namespace Plavo {

/// The viewer of a two-dimensional graph: an orthogonal cross-plot (two
/// axes), a polar diagram (any number of axes, at most a few dozen) or a
/// ternary diagram (three axes), with the series drawn on it.
///
/// Element: <Viewer2DGraph version="1" typeView="n"><title/>
///          <axes><axis/>...</axes><curves><curve/>...</curves></Viewer2DGraph>
class VNPLAVO_EXPORT VNViewer2DGraph : public TViewer
{
public:
    /// A viewer of that kind with its default axes (X and Y; 1 and 2; X, Y, Z).
    explicit VNViewer2DGraph(TYPE_VIEW type = VIEW_ORTHOGONAL);
    VNViewer2DGraph(const VNViewer2DGraph&) = default;
    VNViewer2DGraph& operator=(const VNViewer2DGraph&) = default;
    ~VNViewer2DGraph() override;

    static QString elementTag();
    QString tagName() const override;

    /// Number of axes a view of that kind must have; -1 for any (polar).
    static int axisCountFor(TYPE_VIEW type);
    static int maxAxisCount();

    const QList<TAxis>& getAxesData() const { return m_axes; }
    /// Replaces the axes; refused when their number does not suit the view.
    bool setAxesData(const QList<TAxis>& axes);
    /// Replaces axis `index`; false when there is no such axis.
    bool setAxis(int index, const TAxis& axis);
    /// Inserts an axis into a polar view (a position out of range appends).
    bool insertPolarAxis(int position, const TAxis& axis);
    bool removePolarAxis(int position);

    const QList<TData>& getCurves() const { return m_curves; }
    bool addCurve(const TData& curve);
    void clearCurves() { m_curves.clear(); }

    bool operator==(const VNViewer2DGraph& other) const;
    bool operator!=(const VNViewer2DGraph& other) const { return !(*this == other); }

protected:
    bool canEncode() const override;
    void encodeContent(QDomElement& element) const override;
    bool decodeContent(const QDomElement& element, TYPE_VIEW type) override;

private:
    static bool axisCountFits(TYPE_VIEW type, int count);

    QList<TAxis> m_axes;
    QList<TData> m_curves;
};

} // namespace Plavo
