#include "devices/HidMarkers.h"

// The paths hold the words themselves; made-up ones could contradict them.
void HidMarkers::fill(QVector<HidInterface> & /*interfaces*/) {}
