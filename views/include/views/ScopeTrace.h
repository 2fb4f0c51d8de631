// The line through single samples, where the scope shows so few that columns no longer stand for
// a range of them.
#pragma once

#include "analysis/ScopeDataProvider.h"

#include <span>
#include <vector>

namespace Sorel {

/// 0: only the band between lowest and highest counts; 1: only the line. In between both are drawn,
/// so that zooming never switches from one to the other.
double traceStrength(double samplesPerColumn);

/// One amplitude a column. Below one sample a column the table holds each sample for several
/// columns; the line then runs straight from the middle of one sample to that of the next. Else it
/// lies halfway between lowest and highest.
void traceSamples(std::span<const ScopeColumn> columns,
                  double samplesPerColumn,
                  std::vector<float>& amplitudes);

} // namespace Sorel
