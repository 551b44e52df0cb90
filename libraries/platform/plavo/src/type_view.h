#pragma once

namespace Plavo {

/// The kinds of plot a graph viewer draws. The numbers are stored in documents
/// and records, so they never change. Any stored number, known or not, is a
/// valid value of the type (it has a fixed underlying int).
enum TYPE_VIEW : int { VIEW_NONE = 0, VIEW_ORTHOGONAL = 1, VIEW_POLAR = 2, VIEW_TERNARY = 3 };

/// True for the numbers of the kinds above that are real plots (1 to 3).
inline bool isKnownTypeView(int type)
{
    return type >= VIEW_ORTHOGONAL && type <= VIEW_TERNARY;
}

} // namespace Plavo
