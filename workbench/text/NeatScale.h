#pragma once
// Neat scales: interval limits a reader takes in at a glance.
//
// neatScale covers the data range [min, max] with about `wanted` intervals whose step is
// 1, 2 or 5 times a power of ten: the one nearest (max - min) / wanted on a log scale.
// Limits are whole multiples of the step, computed as k * step so they do not drift.
//
// The categories built on a scale hold lower < x <= upper, so:
//   - lo lies strictly below min, also under the tolerant RealLess: a minimum that falls
//     on a multiple of the step gets one more step below it, or a case counted into the
//     first category would fall outside it when the user drills into that category;
//   - hi is not below max, and stepping from lo by repeated addition of the step (as the
//     module does, U = lo + step; while RealLessEqual(U, hi) ...; U += step) ends on a
//     limit near hi that is not below max: when the rounding of that addition would leave
//     max out, hi moves up one step.
// The step is at least 1e-9 of the larger magnitude of min and max (and at least 1e-300),
// so that successive limits stay apart under the tolerant comparisons and the addition
// always moves on.
//
// Degenerate input never loops: min == max gives one interval of a power of ten ending at
// the value ((4, 5] for 5); non-finite input gives (0, 1]; min above max is swapped; a
// range so wide that its limits would overflow gives lo = min, hi = max in two steps.

namespace wb {

struct Scale {
    double lo;
    double hi;
    double step;
};

Scale neatScale(double min, double max, int wanted);

} // namespace wb
