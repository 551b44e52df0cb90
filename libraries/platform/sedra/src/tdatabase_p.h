#pragma once

namespace Sedra {

/// Tells the user that a read-only database refused a change (both languages).
void logReadOnly();

} // namespace Sedra
