#include "ttovioverlay.h"

#include "ttovigraph.h"

#include <vnobject2tovioverlay.h>

namespace Sedra {

TToviOverlay::TToviOverlay(VNObject2ToviOverlay* object, const QString& relativePath)
    : TFileObject(object, relativePath)
{ }

TToviOverlay::~TToviOverlay() = default;

VNObject2ToviOverlay* TToviOverlay::overlay()
{
    return static_cast<VNObject2ToviOverlay*>(object());
}

const VNObject2ToviOverlay* TToviOverlay::overlay() const
{
    return static_cast<const VNObject2ToviOverlay*>(object());
}

const VNObject2ToviGraph* TToviOverlay::graph() const
{
    return overlay()->graph();
}

bool TToviOverlay::copyContent(const TToviOverlay* source)
{
    if (!source || source == this)
        return false;
    setEquation(source->getEquation());
    setToVIName(source->getToVIName());
    setLiteratureReference(source->getLiteratureReference());
    setProcessType(source->getProcessType());
    return TToviGraph::copyDrawing(source, this);
}

} // namespace Sedra
