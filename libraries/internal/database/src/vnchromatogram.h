#pragma once

#include "vndatabase_export.h"

#include <QString>

/// Which chromatogram of an analysis: its total-ion chromatogram, the
/// extracted-ion chromatogram of a mass, one MS/MS transition, or one of its
/// detector channels (an FID, a UV trace...).
struct VNDATABASE_EXPORT VNChromatogram
{
    enum Kind { Tic, Ion, Transition, Channel };

    Kind kind = Tic;
    double mass = 0.0;   ///< Ion: the mass extracted; Transition: the daughter
    double window = 0.5; ///< Ion: half-width of the mass window
    double parent = 0.0; ///< Transition: the parent mass
    QString channel;     ///< Channel: its name

    static VNChromatogram tic() { return VNChromatogram(); }
    static VNChromatogram ion(double mass, double window = 0.5)
    {
        VNChromatogram c;
        c.kind = Ion;
        c.mass = mass;
        c.window = window;
        return c;
    }
    static VNChromatogram transition(double parent, double daughter)
    {
        VNChromatogram c;
        c.kind = Transition;
        c.parent = parent;
        c.mass = daughter;
        return c;
    }
    static VNChromatogram detector(const QString& name)
    {
        VNChromatogram c;
        c.kind = Channel;
        c.channel = name;
        return c;
    }

    /// How the chromatogram is named where its peaks are stored: "TIC",
    /// "ion 57 0.5" (mass and half-width), "transition 370 191", "channel FID".
    QString key() const;
};
