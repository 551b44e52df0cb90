#include "vnobject2signal.h"

VNObject2Signal::VNObject2Signal(const QString& name, const VNObject2Analysis* analysis)
    : VNObject2Analysis(name)
    , m_analysis(analysis)
{ }

VNObject2Signal::~VNObject2Signal() = default;
